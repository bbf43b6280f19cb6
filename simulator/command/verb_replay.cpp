// headunit replay: what was done to a unit, once more from its tape.
#include <cstdio>
#include <fstream>

#include "simulator/command/scenario.h"
#include "simulator/command/tape_reader.h"
#include "simulator/command/verbs.h"

namespace headunit {
namespace {

struct Action {
    long long at;  // milliseconds since the boot
    Words words;
};

// Every "command" line of the tape. False when the file is no tape.
bool readActions(const fs::path& file, std::vector<Action>& actions, std::string& why) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        why = "there is no tape " + file.string();
        return false;
    }
    std::string line;
    for (int number = 1; std::getline(stream, line); ++number) {
        const auto value = json::parse(line);
        if (!value) {
            why = file.string() + ":" + std::to_string(number) + ": this is no line of a tape";
            return false;
        }
        Action action{value->numberOf("ms", 0), {}};
        if (value->textOf("kind") == "command" && splitWords(value->textOf("text"), action.words) &&
            !action.words.empty() && findVerb(action.words[0]) != nullptr) {
            actions.push_back(action);
        }
    }
    if (actions.empty()) {
        why = "nothing was done on the tape " + file.string();
    }
    return !actions.empty();
}

}  // namespace

int replayVerb(const Unit& unit, const Words& words) {
    if (words.size() != 1) {
        return wrongUse("replay");
    }
    std::vector<Action> actions;
    std::string why;
    if (!readActions(words[0], actions, why)) {
        return fail(why);
    }
    const bool boots = actions.front().words[0] == "boot";
    if (boots && isRunning(unit)) {
        // The unit is there already: only what came after its boot is done again.
        actions.erase(actions.begin());
    } else if (!boots && !isRunning(unit)) {
        return fail("no unit runs in " + unit.device.string() + "; start one with: headunit boot");
    }
    // Offsets count from the end of the boot, which takes its own time.
    long long taped = 0;
    std::size_t failed = 0;
    long long start = process::nowMilliseconds();
    for (const Action& action : actions) {
        const bool isBoot = action.words[0] == "boot";
        const long long wait = start + (action.at - taped) - process::nowMilliseconds();
        if (!isBoot && wait > 0) {
            process::sleepMilliseconds(static_cast<int>(wait));
        }
        std::printf("%9.3f  %s\n", static_cast<double>(action.at) / 1000.0,
                    joinWords(action.words).c_str());
        std::fflush(stdout);
        const int status = perform(*findVerb(action.words[0]), unit,
                                   {action.words.begin() + 1, action.words.end()});
        failed += status != 0 ? 1 : 0;
        if (status != 0 && isBoot) {
            return status;
        }
        if (isBoot) {
            TapeReader reader(unit);
            while (const auto line = reader.next()) {
                taped = line->value.numberOf("ms", taped);
            }
            start = process::nowMilliseconds();
        }
    }
    return failed == 0 ? 0
                       : fail(std::to_string(failed) + " of the " + std::to_string(actions.size()) +
                              " things done on the tape failed this time");
}

}  // namespace headunit
