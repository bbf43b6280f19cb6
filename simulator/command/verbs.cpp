// The table of the verbs.
#include "simulator/command/verbs.h"

#include <array>

#include "simulator/command/display.h"
#include "simulator/shared/named.h"

namespace headunit {
namespace {

using enum Tape;
using Sc = Scenario;

constexpr auto kVerbs = std::to_array<Verb>({
    {"boot", "Start everything; returns when the player shows its first frame or a message box.",
     &bootVerb, ByItself, Sc::Yes, Way::Other},
    {"restart", "End the player at once and start it again in the running unit.", &restartVerb,
     Noted, Sc::Yes, Way::Other},
    {"start", "Start the player once more while it runs; returns at once.", &startVerb, Noted,
     Sc::Yes, Way::Other},
    {"send", "Post a registered message to the player.", &sendVerb, Noted, Sc::Yes, Way::Message},
    {"touch", "Press, (drag,) release with the real pointer.", &touchVerb, Noted, Sc::Yes,
     Way::Pointer},
    {"hold", "Press with the real pointer and stay.", &holdVerb, Noted, Sc::Yes, Way::Pointer},
    {"release", "Release the pointer's button, after moving there.", &releaseVerb, Noted, Sc::Yes,
     Way::Pointer},
    {"key", "A key of the infrared remote.", &keyVerb, Noted, Sc::Yes, Way::Message},
    {"gesture", "A gesture in front of the unit.", &gestureVerb, Noted, Sc::Yes, Way::Message},
    {"card", "A card or stick arrives, is changed or goes away.", &cardVerb, Noted, Sc::Yes,
     Way::Card},
    {"record", "The dash camera records into a file of the unit, which grows in real time.",
     &recordVerb, Noted, Sc::Yes, Way::Other},
    {"drive", "Vehicle speed, or the loss of its signal.", &driveVerb, Noted, Sc::Yes, Way::Other},
    {"mute", "The board's mute notification.", &muteVerb, Noted, Sc::Yes, Way::Message},
    {"connect", "Hand a folder of the unit over as the dash camera does, or take it back.",
     &connectVerb, Noted, Sc::Yes, Way::Other},
    {"close", "Close the player's window, as a task manager does.", &closeVerb, Noted, Sc::Yes,
     Way::Message},
    {"box", "Answer the message box that is open.", &boxVerb, Noted, Sc::Yes, Way::Other},
    {"fault", "Make the unit misbehave; faults of the filters hold from the next file on.",
     &faultVerb, Noted, Sc::Yes, Way::Other},
    {"press", "Keys of the PC's keyboard, for the panel.", &pressVerb, Silent, Sc::Yes, Way::Other},
    {"type", "A text on the PC's keyboard, for the panel.", &typeVerb, Silent, Sc::Yes, Way::Other},
    {"cut", "Cut the unit's power.", &cutVerb, Noted, Sc::Yes, Way::Other},
    {"shot", "A picture of the unit's 800 x 480 screen.", &shotVerb, Silent, Sc::Yes, Way::None},
    {"film", "A film of the unit's screen.", &filmVerb, Silent, Sc::No, Way::None},
    {"view", "The screen in a web browser of this machine; prints the address.", &viewVerb, Silent,
     Sc::No, Way::None},
    {"log", "The tape: everything that passed between the processes.", &logVerb, Silent, Sc::No,
     Way::None},
    {"state", "Windows, storage, speed, sound, faults, Movie.dat, Config.ini, hand-over.",
     &stateVerb, Silent, Sc::Yes, Way::None},
    {"skin", "List what a skin lacks, what has a wrong size, and on which screen it shows.",
     &skinVerb, Silent, Sc::No, Way::None},
    {"scenario", "Run scenario scripts, each in a unit of its own, and print PASS or FAIL.",
     &scenarioVerb, Silent, Sc::No, Way::None},
    {"replay", "Do again what was done to a unit, at the same times.", &replayVerb, Silent, Sc::No,
     Way::None},
    {"prepare", "Make the Wine prefix ready, and with PREFIX a copy of it whose drive H: is DIR.",
     &prepareVerb, Silent, Sc::No, Way::None},
    {"shutdown", "The process manager asks the player to exit, then the unit is switched off.",
     &shutdownVerb, Noted, Sc::Yes, Way::Other},
    {"kill", "End all processes of the unit at once.", &killVerb, Noted, Sc::Yes, Way::Other},
});

// What is pressed on the panel is put on the tape by the verb that the panel runs.
bool isOnPanel(const Deed& deed) {
    return deed.verb->way == Way::Pointer && !deed.words.empty() &&
           number(deed.words[0]) >= kScreenWidth;
}

}  // namespace

Outcome failed(const std::string& why) {
    return {false, why};
}

Outcome outcome(bool good, const std::string& why) {
    return good ? Outcome() : failed(why);
}

std::span<const Verb> verbs() {
    return kVerbs;
}

const Verb* findVerb(const std::string& name) {
    return findNamed(kVerbs, name);
}

Deed parseDeed(const Words& line) {
    Deed deed{findVerb(line[0]), {line.begin() + 1, line.end()}, nullptr};
    if (deed.verb == nullptr) {
        throw Failure("there is no verb \"" + line[0] + "\"; see: ./headunit --help");
    }
    Parser parser(deed.verb->name, deed.verb->help);
    deed.run = deed.verb->declare(parser);
    parser.parse(deed.words);
    return deed;
}

Outcome perform(const Deed& deed, const Unit& unit) {
    if (deed.verb->tape == Noted && !isOnPanel(deed)) {
        Words all = {deed.verb->name};
        all.insert(all.end(), deed.words.begin(), deed.words.end());
        std::string unused;
        ask(unit, {"note", joinWords(all)}, unused);
    }
    try {
        return deed.run({unit, deed.words});
    } catch (const Failure& failure) {
        return failed(failure.what());
    }
}

std::string overview() {
    std::string text =
        "usage: headunit VERB [--device DIR] ...\n"
        "Drives the simulated head unit in the folder DIR (default out/device).\n\n";
    for (const Verb& verb : kVerbs) {
        Parser parser(verb.name, verb.help);
        verb.declare(parser);
        text += "  " + parser.usage() + "\n      " + verb.help + "\n";
    }
    return text + "\nExit status: 0 done, 1 failed, 2 wrong use.\n";
}

std::string helpOf(const Verb& verb) {
    Parser parser(verb.name, verb.help);
    verb.declare(parser);
    return parser.help();
}

Words completions(const Words& words) {
    if (const Verb* verb = words.empty() ? nullptr : findVerb(words[0])) {
        Parser parser(verb->name, verb->help);
        verb->declare(parser);
        return parser.complete({words.begin() + 1, words.end()});
    }
    Words names;
    for (const Verb& verb : kVerbs) {
        names.emplace_back(verb.name);
    }
    return names;
}

}  // namespace headunit
