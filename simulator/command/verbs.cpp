// The table of the verbs, and what they share.
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "simulator/command/display.h"
#include "simulator/command/verbs.h"

namespace headunit {
namespace {

constexpr Verb kVerbs[] = {
    {Does::Look, "boot",
     "[--pip] [--connect FOLDER] [--headless] [--panel] [--passive] [--without NAME]... [--late MS]"
     " [--hear] [--no-player] [PATH]",
     "start everything; returns when the player shows its first frame", &bootVerb},
    {Does::Act, "restart", "[--pip] [--connect FOLDER] [PATH]",
     "end the player at once and start it again in the running unit", &restartVerb},
    {Does::Act, "start", "[--pip]", "start the player once more while it runs; returns at once",
     &startVerb},
    {Does::Act, "send", "[--sync] [--to TITLE] NAME WPARAM LPARAM",
     "post a registered message to the player; --sync sends it and prints the result", &sendVerb},
    {Does::Act, "touch", "X Y [X2 Y2]", "press, (drag,) release with the real pointer", &touchVerb},
    {Does::Act, "hold", "X Y", "press and stay", &holdVerb},
    {Does::Act, "release", "[X Y]", "release, after moving there", &releaseVerb},
    {Does::Act, "key", "play|next|prev", "a key of the infrared remote", &keyVerb},
    {Does::Act, "gesture", "next|prev", "a gesture in front of the unit", &gestureVerb},
    {Does::Act, "card",
     "insert VOLUME [FOLDER|--own] | change VOLUME [FOLDER|--own] | remove VOLUME | make DIR "
     "[FILES]",
     "SDMMCDisk, SDMMCDisk2, USB, USB2, USB3 or USB4 arrives, is changed or goes away;"
     " make a dash camera card in an empty folder",
     &cardVerb},
    {Does::Act, "record", "FILE.avi SECONDS | off",
     "the dash camera records into a file of the unit, which grows in real time; the camera is "
     "switched off",
     &recordVerb},
    {Does::Act, "drive", "KMH|off|--chart",
     "vehicle speed, or the loss of its signal; when it blocks the picture", &driveVerb},
    {Does::Act, "mute", "on|off", "the board's mute notification", &muteVerb},
    {Does::Act, "connect", "FOLDER|off",
     "hand a folder of the unit over as the dash camera does, or take it back", &connectVerb},
    {Does::Act, "close", "", "close the player's window, as a task manager does", &closeVerb},
    {Does::Act, "box", "ok|yes|no", "answer the message box that is open", &boxVerb},
    {Does::Act, "fault", "NAME NUMBER|off",
     "make the vendor's filters misbehave from the next file on", &faultVerb},
    {Does::Look, "press", "KEY...", "keys of the PC's keyboard, for the panel: F2, Tab, Return",
     &pressVerb},
    {Does::Look, "type", "TEXT", "a text of ASCII letters on the PC's keyboard, for the panel",
     &typeVerb},
    {Does::Act, "cut", "[MESSAGES|--stay|--player]",
     "cut the unit's power at once, or after that many messages of every later start until "
     "fault CutAfterMessages off; --stay leaves the screen and the panel, restart powers on "
     "again; --player ends the player alone, as a crash does",
     &cutVerb},
    {Does::Look, "shot", "FILE.png", "a picture of the unit's 800 x 480 screen", &shotVerb},
    {Does::Look, "film", "FILE.mp4 SECONDS", "a film of the unit's screen", &filmVerb},
    {Does::Look, "view", "[PORT]",
     "the screen in a web browser of this machine; prints the address", &viewVerb},
    {Does::Look, "log", "[--follow] [--json]",
     "the tape: everything that passed between the processes", &logVerb},
    {Does::Look, "state", "[--json]",
     "windows, Movie.dat, Config.ini, hand-over, thread priorities", &stateVerb},
    {Does::Look, "skin", "check [DIR]",
     "list what a skin lacks, what has a wrong size, and on which screen it shows", &skinVerb},
    {Does::Look, "scenario", "[-j N] [--verbose] [--keep] [--junit FILE] [--update-golden] FILE...",
     "run scenario scripts, each in a unit of its own, and print PASS or FAIL", &scenarioVerb},
    {Does::Look, "replay", "TAPE",
     "do again what was done to a unit, at the same times, in a unit that runs or is booted",
     &replayVerb},
    {Does::Look, "prepare", "[PREFIX]",
     "make the Wine prefix ready, and with PREFIX a copy of it whose drive H: is DIR",
     &prepareVerb},
    {Does::Act, "shutdown", "[--stay]",
     "the process manager asks the player to exit, then the unit is switched off; --stay leaves "
     "it on",
     &shutdownVerb},
    {Does::Act, "kill", "", "end all processes of the unit at once", &killVerb},
};

// What is pressed on the panel is put on the tape by the panel, as the verb that does the same.
bool isOnPanel(const Words& words) {
    long long x = 0;
    return words.size() >= 2 && parseNumber(words[0], x) && x >= kScreenWidth;
}

}  // namespace

std::string joinWords(const Words& words) {
    std::string line;
    for (const std::string& word : words) {
        line += line.empty() ? "" : " ";
        if (!word.empty() && word.find_first_of(" \t\"\\#\n\r") == std::string::npos) {
            line += word;
            continue;
        }
        line += '"';
        for (const char c : word) {
            constexpr std::string_view kMeant = "\n\r\t\"\\";
            const auto at = kMeant.find(c);
            line += at == std::string_view::npos ? std::string(1, c)
                                                 : std::string("\\") + "nrt\"\\"[at];
        }
        line += '"';
    }
    return line;
}

int perform(const Verb& verb, const Unit& unit, const Words& words) {
    if (verb.does == Does::Act && !isCheckOnly() && !isOnPanel(words)) {
        Words all = {verb.name};
        all.insert(all.end(), words.begin(), words.end());
        std::string unused;
        ask(unit, {"note", joinWords(all)}, unused);
    }
    return verb.run(unit, words);
}

const Verb* findVerb(const std::string& name) {
    for (const Verb& verb : kVerbs) {
        if (name == verb.name) {
            return &verb;
        }
    }
    return nullptr;
}

void printHelp() {
    std::puts(
        "usage: headunit VERB [--device DIR] ...\n"
        "Drives the simulated head unit in the folder DIR (default out/device).\n");
    for (const Verb& verb : kVerbs) {
        std::printf("  %s %s\n      %s\n", verb.name, verb.usage, verb.help);
    }
    std::puts("\nExit status: 0 done, 1 failed, 2 wrong use.");
}

int wrongUse(const char* verb) {
    const Verb* known = findVerb(verb);
    fail("usage: headunit " + std::string(verb) + " " + (known == nullptr ? "" : known->usage));
    return 2;
}

bool takeFlag(Words& words, const char* option) {
    return std::erase(words, option) > 0;
}

bool takeValue(Words& words, const char* option, std::string& value) {
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (*word == option && word + 1 != words.end()) {
            value = *(word + 1);
            words.erase(word, word + 2);
            return true;
        }
    }
    return false;
}

bool parseNumber(const std::string& text, long long& number) {
    char* end = nullptr;
    errno = 0;
    number = std::strtoll(text.c_str(), &end, 0);
    return !text.empty() && *end == '\0' && errno == 0;
}

}  // namespace headunit
