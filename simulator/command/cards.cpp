#include "simulator/command/cards.h"

#include <algorithm>
#include <vector>

namespace headunit {
namespace {

std::string slotFile(const Slot& slot) {
    return std::string("slot-") + slot.name;
}

// Where the slot's own card is kept while it is not in.
fs::path ownCard(const Unit& unit, const Slot& slot) {
    return unit.run() / "pulled" / slot.name;
}

// Files that a unit made on a copy of a folder of the PC are listed nowhere: all that are not as
// old and large as the PC's stay.
bool isTheUnits(const fs::path& file, const fs::path& ofPc) {
    std::error_code error;
    return !fs::exists(ofPc, error) || fs::file_size(file, error) != fs::file_size(ofPc, error) ||
           fs::last_write_time(file, error) != fs::last_write_time(ofPc, error);
}

bool holdsOwnFiles(const fs::path& card, const fs::path& folder) {
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(card, error)) {
        if (entry.is_regular_file(error) &&
            isTheUnits(entry.path(), folder / entry.path().lexically_relative(card))) {
            return true;
        }
    }
    return false;
}

// Nothing that was on a card is lost: one that would be in the way keeps a name of its own.
bool keep(const fs::path& card, const fs::path& place) {
    std::error_code error;
    fs::create_directories(place.parent_path(), error);
    for (int number = 1; fs::exists(place, error); ++number) {
        const fs::path other = place.string() + "." + std::to_string(number);
        if (!fs::exists(other, error)) {
            fs::rename(place, other, error);
            break;
        }
    }
    error.clear();
    fs::rename(card, place, error);
    return !error;
}

}  // namespace

void putFromPc(const fs::path& from, const fs::path& to) {
    // -L: a link among the user's files is followed, or the unit would reach through it.
    const std::vector<process::Arguments> kWays = {
        {"cp", "-rLT", "--preserve=timestamps", "--reflink=always"},
        {"cp", "-rLTl"},
        {"cp", "-rLT", "--preserve=timestamps", "--reflink=auto"}};
    std::error_code error;
    fs::create_directories(to.parent_path(), error);
    std::string said;
    for (process::Arguments copy : kWays) {
        copy.insert(copy.end(), {"--", from.string(), to.string()});
        said.clear();
        if (process::runReading(copy, {.errorsToo = true}, said) == 0) {
            return;
        }
        fs::remove_all(to, error);
    }
    throw Failure(from.string() + " cannot be put on the card: " + said.substr(0, said.find('\n')));
}

fs::path folderOf(const Unit& unit, const std::string& name) {
    std::error_code error;
    const fs::path here = fs::absolute(name, error).lexically_normal();
    if (fs::is_directory(here, error)) {
        return here;
    }
    const fs::path there = hostPath(unit, name);
    return fs::is_directory(there, error) ? there : fs::path();
}

bool hasCard(const Unit& unit, const Slot& slot) {
    std::error_code error;
    return fs::exists(fs::symlink_status(unit.device / slot.name, error));
}

std::string shownFolder(const Unit& unit, const Slot& slot) {
    return readRunFile(unit, slotFile(slot).c_str());
}

void pullCard(const Unit& unit, const Slot& slot) {
    if (!hasCard(unit, slot)) {
        return;
    }
    std::error_code error;
    const fs::path card = unit.device / slot.name;
    const std::string folder = shownFolder(unit, slot);
    // Out in one step, whatever is on it.
    const fs::path out = unit.run() / (std::string("out-") + slot.name);
    fs::remove_all(out, error);
    fs::rename(card, out, error);
    if (error) {
        throw Failure("the card cannot be pulled out of " + card.string() + ": " + error.message());
    }
    if (!folder.empty() && !holdsOwnFiles(out, folder)) {
        fs::remove_all(out, error);
        return;
    }
    const fs::path place =
        folder.empty() ? ownCard(unit, slot) : fs::path(ownCard(unit, slot).string() + "-of-pc");
    if (!keep(out, place)) {
        throw Failure("the card of " + card.string() + " cannot be kept in " + place.string());
    }
}

void fillSlot(const Unit& unit, const Slot& slot, const fs::path& folder) {
    std::error_code error;
    const fs::path card = unit.device / slot.name;
    const fs::path own = ownCard(unit, slot);
    // A copy appears in one step too.
    const fs::path in = unit.run() / (std::string("in-") + slot.name);
    fs::remove_all(in, error);
    if (!folder.empty()) {
        putFromPc(folder, in);
        fs::rename(in, card, error);
    } else if (fs::exists(own, error)) {
        fs::rename(own, card, error);
    } else {
        fs::create_directories(card, error);
    }
    writeRunFile(unit, slotFile(slot).c_str(), folder.string());
    if (error) {
        throw Failure("the card cannot be put into " + card.string() + ": " + error.message());
    }
}

}  // namespace headunit
