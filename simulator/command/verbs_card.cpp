// Storage: cards and sticks that arrive, go away, and are changed for a folder of the PC.
//
// A slot is a folder at the unit's root. The card that belongs to it is a folder there; a folder of
// the PC is a link. `.unit/slot-NAME` tells which folder of the PC the slot shows or showed last
// (empty: its own card), for the next `insert` and for the panel.
#include <cstdio>

#include "simulator/command/verbs.h"

namespace headunit {
namespace {

struct Volume {
    const char* name;
    const char* message;
    int index;  // the message's lParam
};
constexpr Volume kVolumes[] = {
    {"SDMMCDisk", "ZEL_BSP_WMUSER_SDCARD", 0}, {"SDMMCDisk2", "ZEL_BSP_WMUSER_SDCARD", 1},
    {"USB", "ZEL_BSP_WMUSER_MNT_USB", 0},      {"USB2", "ZEL_BSP_WMUSER_MNT_USB", 1},
    {"USB3", "ZEL_BSP_WMUSER_MNT_USB", 2},     {"USB4", "ZEL_BSP_WMUSER_MNT_USB", 3},
};
constexpr char kOwn[] = "--own";

int post(const Unit& unit, const Volume& volume, int arrived) {
    std::string answer;
    if (!ask(unit, {"await", "Video", "0"}, answer) && isRunning(unit)) {
        return 0;  // nobody is there to be told
    }
    return ask(unit,
               {"message", "post", volume.message, std::to_string(arrived),
                std::to_string(volume.index)},
               answer)
               ? 0
               : fail(answer);
}

std::string slotFile(const Volume& volume) {
    return std::string("slot-") + volume.name;
}

// Where the slot's own card is kept while it is not in.
fs::path ownCard(const Unit& unit, const Volume& volume) {
    return unit.run() / "pulled" / volume.name;
}

bool isThere(const fs::path& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

// Nothing that was on a card is lost: one that would be in the way keeps a name of its own.
void makeRoom(const fs::path& path) {
    std::error_code error;
    for (int number = 1; isThere(path); ++number) {
        const fs::path other = path.string() + "." + std::to_string(number);
        if (!isThere(other)) {
            fs::rename(path, other, error);
            return;
        }
    }
}

bool pull(const Unit& unit, const Volume& volume, std::string& why) {
    std::error_code error;
    const fs::path slot = unit.device / volume.name;
    if (fs::is_symlink(fs::symlink_status(slot, error))) {
        writeRunFile(unit, slotFile(volume).c_str(), fs::read_symlink(slot, error).string());
        fs::remove(slot, error);
    } else if (isThere(slot)) {
        const fs::path kept = ownCard(unit, volume);
        fs::create_directories(kept.parent_path(), error);
        makeRoom(kept);
        error.clear();
        fs::rename(slot, kept, error);
        writeRunFile(unit, slotFile(volume).c_str(), "");
    }
    why = error ? "the card cannot be pulled out of " + slot.string() + ": " + error.message() : "";
    return !error;
}

// The folder of the PC that is meant: by its own path, or by the unit's path of it. Empty when
// there is none.
fs::path folderOf(const Unit& unit, const std::string& name) {
    std::error_code error;
    const fs::path here = fs::absolute(name, error).lexically_normal();
    if (fs::is_directory(here, error)) {
        return here;
    }
    const fs::path there = hostPath(unit, name);
    return fs::is_directory(there, error) ? there : fs::path();
}

// Puts a folder of the PC, or without one the slot's own card, into the empty slot.
bool fill(const Unit& unit, const Volume& volume, const fs::path& folder, std::string& why) {
    std::error_code error;
    const fs::path slot = unit.device / volume.name;
    const fs::path own = ownCard(unit, volume);
    if (!folder.empty()) {
        fs::create_directory_symlink(folder, slot, error);
    } else if (isThere(own)) {
        fs::rename(own, slot, error);
    } else {
        fs::create_directories(slot, error);
    }
    writeRunFile(unit, slotFile(volume).c_str(), folder.string());
    why = error ? "the card cannot be put into " + slot.string() + ": " + error.message() : "";
    return !error;
}

int insertCard(const Unit& unit, const Volume& volume, const std::string& wanted, bool change) {
    if (isCheckOnly()) {
        return 0;
    }
    std::string why;
    const bool isIn = isThere(unit.device / volume.name);
    if (isIn && !change) {
        // What is in is announced once more.
        return wanted.empty() ? post(unit, volume, 1)
                              : fail("a card is in " + std::string(volume.name) +
                                     "; first: headunit card remove " + volume.name +
                                     ", or: headunit card change " + volume.name + " FOLDER");
    }
    const bool named = !wanted.empty() && wanted != kOwn;
    if (named && folderOf(unit, wanted).empty()) {
        return fail("there is no folder " + wanted);
    }
    if (isIn && (!pull(unit, volume, why) || post(unit, volume, 0) != 0)) {
        return why.empty() ? 1 : fail(why);
    }
    const std::string last = readRunFile(unit, slotFile(volume).c_str());
    const std::string folder = wanted == kOwn ? "" : (named ? wanted : last);
    const fs::path from = folder.empty() ? fs::path() : folderOf(unit, folder);
    return fill(unit, volume, from, why) ? post(unit, volume, 1) : fail(why);
}

int removeCard(const Unit& unit, const Volume& volume) {
    std::string why;
    if (isCheckOnly()) {
        return 0;
    }
    return pull(unit, volume, why) ? post(unit, volume, 0) : fail(why);
}

}  // namespace

int cardVerb(const Unit& unit, const Words& words) {
    if (!words.empty() && words[0] == "make") {
        return makeCard({words.begin() + 1, words.end()});
    }
    if (words.size() < 2 || words.size() > 3) {
        return wrongUse("card");
    }
    const bool change = words[0] == "change";
    for (const Volume& volume : kVolumes) {
        if (words[1] == volume.name && (change || words[0] == "insert")) {
            return insertCard(unit, volume, words.size() == 3 ? words[2] : "", change);
        }
        if (words[1] == volume.name && words[0] == "remove" && words.size() == 2) {
            return removeCard(unit, volume);
        }
    }
    return wrongUse("card");
}

}  // namespace headunit
