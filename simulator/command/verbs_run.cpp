// Starting and ending: boot, restart, connect, shutdown, cut, kill.
#include <signal.h>

#include <cstdio>

#include "simulator/command/boot.h"
#include "simulator/command/prefix.h"
#include "simulator/command/tape_reader.h"
#include "simulator/command/verbs.h"

namespace headunit {
namespace {

constexpr int kExitPatience = 15000;  // milliseconds

// What is left of the words must be one path or nothing.
bool takeOptions(Words& words, BootOptions& options) {
    std::string value;
    options.pip = takeFlag(words, "--pip");
    takeValue(words, "--connect", options.connectFolder);
    options.headless = takeFlag(words, "--headless");
    options.panel = takeFlag(words, "--panel");
    options.passive = takeFlag(words, "--passive");
    options.hear = takeFlag(words, "--hear");
    options.noPlayer = takeFlag(words, "--no-player");
    while (takeValue(words, "--without", value)) {
        if (value != "processmanager" && value != "orvi" && value != "ani_waiting") {
            return false;
        }
        options.without.push_back(value);
    }
    if (takeValue(words, "--late", value)) {
        long long late = 0;
        if (!parseNumber(value, late) || late < 0 || late > 60000) {
            return false;
        }
        options.lateMilliseconds = static_cast<int>(late);
    }
    if (words.size() > 1 || (words.size() == 1 && words[0].starts_with("--"))) {
        return false;
    }
    options.play = words.empty() ? fs::path() : fs::path(words[0]);
    return true;
}

}  // namespace

int bootVerb(const Unit& unit, const Words& given) {
    Words words = given;
    BootOptions options;
    if (!takeOptions(words, options)) {
        return wrongUse("boot");
    }
    options.words = given.empty() ? "" : " " + joinWords(given);
    std::string why;
    return isCheckOnly() || boot(unit, options, why) ? 0 : fail(why);
}

int restartVerb(const Unit& unit, const Words& given) {
    Words words = given;
    BootOptions options;
    if (!takeOptions(words, options)) {
        return wrongUse("restart");
    }
    std::string why;
    if (isCheckOnly()) {
        return 0;
    }
    if (!isRunning(unit)) {
        return fail("no unit runs in " + unit.device.string() + "; start one with: headunit boot");
    }
    if (ask(unit, {"kill", "movie.exe"}, why)) {
        for (int waited = 0; waited < kExitPatience; waited += 10) {
            if (!ask(unit, {"running", "movie.exe"}, why) || why == "no") {
                break;
            }
            process::sleepMilliseconds(10);
        }
    }
    // After a cut that left the screen the other processes are started first.
    if (!ask(unit, {"power"}, why)) {
        return fail(why);
    }
    if (!options.play.empty() && !choose(unit, options.play, why)) {
        return fail(why);
    }
    return startPlayer(unit, options, why) ? 0 : fail(why);
}

int startVerb(const Unit& unit, const Words& given) {
    Words words = given;
    const bool pip = takeFlag(words, "--pip");
    if (!words.empty()) {
        return wrongUse("start");
    }
    std::string answer;
    return ask(unit, {"start", "movie.exe", "H:\\", playerCommandLine(pip), "output"}, answer)
               ? 0
               : fail(answer);
}

int cutVerb(const Unit& unit, const Words& words) {
    long long messages = 0;
    const bool stay = words == Words{"--stay"};
    const bool player = words == Words{"--player"};
    if (words.size() > 1 || (words.size() == 1 && !stay && !player &&
                             (!parseNumber(words[0], messages) || messages < 1))) {
        return wrongUse("cut");
    }
    if (isCheckOnly()) {
        return 0;
    }
    if (words.empty() || stay) {
        // The camera has the same power: what it records is cut off.
        if (const pid_t camera = helperProcess(unit, "record.pid")) {
            kill(camera, SIGKILL);
        }
    }
    if (words.empty()) {
        endUnit(unit);
        return 0;
    }
    std::string answer;
    const Words request = stay     ? Words{"cut"}
                          : player ? Words{"kill", "movie.exe"}
                                   : Words{"fault", "CutAfterMessages", words[0]};
    return ask(unit, request, answer) ? 0 : fail(answer);
}

int connectVerb(const Unit& unit, const Words& words) {
    if (words.size() != 1 || words[0].empty()) {
        return wrongUse("connect");
    }
    std::string answer;
    return ask(unit, {"connect", words[0] == "off" ? "" : words[0]}, answer) ? 0 : fail(answer);
}

int prepareVerb(const Unit& unit, const Words& words) {
    std::string why;
    if (words.size() > 1) {
        return wrongUse("prepare");
    }
    const bool good = preparePrefix(why) &&
                      (words.empty() || copyPrefix(unit.device, fs::absolute(words[0]), why));
    return good ? 0 : fail(why);
}

int shutdownVerb(const Unit& unit, const Words& words) {
    const bool stay = words == Words{"--stay"};
    if (!words.empty() && !stay) {
        return wrongUse("shutdown");
    }
    std::string answer;
    if (isCheckOnly()) {
        return 0;
    }
    if (!ask(unit, {"shutdown"}, answer)) {
        return fail(answer);
    }
    const long long end = process::nowMilliseconds() + kExitPatience;
    while (process::nowMilliseconds() < end) {
        if (ask(unit, {"running", "movie.exe"}, answer) && answer == "no") {
            if (!stay) {
                endUnit(unit);
            }
            return 0;
        }
        process::sleepMilliseconds(20);
    }
    return fail("the player did not exit within " + std::to_string(kExitPatience / 1000) +
                " s (a message box may be open); end it with: headunit kill");
}

int killVerb(const Unit& unit, const Words& words) {
    if (!words.empty()) {
        return wrongUse("kill");
    }
    if (!isCheckOnly()) {
        endUnit(unit);
    }
    return 0;
}

}  // namespace headunit
