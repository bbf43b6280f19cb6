// headunit card: cards and sticks that arrive, go away, and are changed for a folder of the PC.
#include "simulator/command/cards.h"
#include "simulator/command/verbs.h"
#include "simulator/shared/named.h"

namespace headunit {
namespace {

constexpr char kOwn[] = "--own";
constexpr char kSlotNames[] = "SDMMCDisk, SDMMCDisk2, USB, USB2, USB3 or USB4";

void announce(const Unit& unit, const Slot& slot, int arrived) {
    std::string unused;
    // Without a player nobody is there to be told.
    if (ask(unit, {"await", "Video", "0"}, unused) || !isRunning(unit)) {
        demand(unit, {"message", "post", slot.message, std::to_string(arrived),
                      std::to_string(slot.index)});
    }
}

// The folder that is meant; throws when it is not there.
fs::path wantedFolder(const Unit& unit, const std::string& wanted) {
    const fs::path folder = folderOf(unit, wanted);
    if (folder.empty()) {
        throw Failure("there is no folder " + wanted);
    }
    return folder;
}

// What the slot shall have: `wanted` as the user gave it, or kOwn; empty what it had last.
void put(const Unit& unit, const Slot& slot, const std::string& wanted) {
    const std::string folder =
        wanted == kOwn ? "" : (wanted.empty() ? shownFolder(unit, slot) : wanted);
    fillSlot(unit, slot, folder.empty() ? fs::path() : wantedFolder(unit, folder));
    announce(unit, slot, 1);
}

void insertCard(const Unit& unit, const Slot& slot, const std::string& wanted) {
    if (!hasCard(unit, slot)) {
        put(unit, slot, wanted);
    } else if (wanted.empty()) {
        announce(unit, slot, 1);  // what is in is announced once more
    } else {
        throw Failure("a card is in " + std::string(slot.name) + "; first: " +
                      commandFor(unit, std::string("card remove ") + slot.name) + ", or: " +
                      commandFor(unit, std::string("card change ") + slot.name + " FOLDER"));
    }
}

void removeCard(const Unit& unit, const Slot& slot, const std::string&) {
    pullCard(unit, slot);
    announce(unit, slot, 0);
}

void changeCard(const Unit& unit, const Slot& slot, const std::string& wanted) {
    if (!wanted.empty() && wanted != kOwn) {
        wantedFolder(unit, wanted);
    }
    if (hasCard(unit, slot)) {
        removeCard(unit, slot, {});
    }
    put(unit, slot, wanted);
}

Outcome makeCard(const std::string& folder, const std::string& files) {
    const std::string script = (projectRoot() / "simulator/samples/card.sh").string();
    const int status =
        process::run({script, folder, files.empty() ? "20" : files}, {.keepOutput = true});
    return outcome(status == 0, "the card in " + folder + " was not made");
}

using Do = void (*)(const Unit& unit, const Slot& slot, const std::string& wanted);

struct Part {
    std::shared_ptr<std::string> slot;
    std::shared_ptr<std::string> folder;
    std::shared_ptr<bool> own;
    Do act;
};

Part part(Parser& card, const char* name, const char* help, bool folder, Do act) {
    Parser& parser = card.sub(name, help);
    Part made{nullptr, nullptr, nullptr, act};
    made.slot = parser.word("VOLUME", kSlotNames, Needed::Yes, [](const std::string& word) {
        return findNamed(kSlots, word) != nullptr ? std::string()
                                                  : std::string("must be ") + kSlotNames;
    });
    if (folder) {
        made.folder =
            parser.word("FOLDER", "of the PC or of the unit; else what was there last", Needed::No);
        made.own = parser.flag(kOwn, "the slot's own card");
    }
    return made;
}

}  // namespace

Run cardVerb(Parser& parser) {
    const std::vector<Part> parts = {
        part(parser, "insert", "the volume appears, then the board tells so", true, &insertCard),
        part(parser, "change", "one card is pulled and the other put in", true, &changeCard),
        part(parser, "remove", "the volume vanishes, then the board tells so", false, &removeCard)};
    Parser& make = parser.sub("make", "make a dash camera card in an empty folder");
    const auto folder = make.word("DIR", "the folder");
    const auto files = make.word("FILES", "how many recordings", Needed::No, between(1, 999999999));
    return [=](const Call& call) -> Outcome {
        for (const Part& one : parts) {
            if (!one.slot->empty()) {
                const bool own = one.own != nullptr && *one.own;
                const std::string wanted = own ? kOwn : (one.folder ? *one.folder : "");
                one.act(call.unit, *findNamed(kSlots, *one.slot), wanted);
                return {};
            }
        }
        return makeCard(*folder, *files);
    };
}

}  // namespace headunit
