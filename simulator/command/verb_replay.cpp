// headunit replay: what was done to a unit, once more from its tape.
#include <algorithm>
#include <cstdio>
#include <fstream>

#include "simulator/command/verbs.h"
#include "simulator/shared/tape_reader.h"

namespace headunit {
namespace {

struct Action {
    long long at;  // milliseconds since the boot
    Deed deed;
};

// Every "command" line of the tape; throws when the file is no tape.
std::vector<Action> readActions(const fs::path& file) {
    std::vector<Action> actions;
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw Failure("there is no tape " + file.string());
    }
    std::string line;
    for (int number = 1; std::getline(stream, line); ++number) {
        const Json value = parseJson(line);
        if (!value.is_object()) {
            throw Failure(file.string() + ":" + std::to_string(number) +
                          ": this is no line of a tape");
        }
        Words words;
        if (textOf(value, "kind") != "command" || !splitWords(textOf(value, "text"), words) ||
            words.empty()) {
            continue;
        }
        // What stands there of another kind ("power cut") was done by the unit.
        try {
            const Deed deed = parseDeed(words);
            if (deed.verb->tape != Tape::Silent) {
                actions.push_back({numberOf(value, "ms", 0), deed});
            }
        } catch (const Failure&) {
        }
    }
    if (actions.empty()) {
        throw Failure("nothing was done on the tape " + file.string());
    }
    return actions;
}

// False when it fails.
bool act(const Action& action, const Unit& unit) {
    std::printf("%9.3f  %s %s\n", static_cast<double>(action.at) / 1000.0, action.deed.verb->name,
                joinWords(action.deed.words).c_str());
    std::fflush(stdout);
    const Outcome told = perform(action.deed, unit);
    if (!told.good) {
        std::fprintf(stderr, "headunit: %s\n", told.text.c_str());
    }
    return told.good;
}

Outcome replay(const Unit& unit, const std::string& tape) {
    std::vector<Action> actions = readActions(tape);
    const std::size_t all = actions.size();
    const bool boots = actions.front().deed.verb == findVerb("boot");
    if (!boots) {
        requireRunning(unit);
    }
    long long taped = 0;
    std::size_t wrong = 0;
    if (boots) {
        // Of a unit that is there already only what came after its boot is done again.
        if (!isRunning(unit)) {
            if (!act(actions.front(), unit)) {
                throw Failure("the unit of the tape could not be booted");
            }
            TapeReader reader(unit.tape());
            while (const auto line = reader.next()) {
                taped = numberOf(line->value, "ms", taped);
            }
        }
        actions.erase(actions.begin());
    }
    const long long start = process::nowMilliseconds();
    for (const Action& action : actions) {
        // Due counts from the end of the boot: that takes its own time.
        const long long wait = start + action.at - taped - process::nowMilliseconds();
        process::sleepMilliseconds(static_cast<int>(std::max(wait, 0LL)));
        wrong += act(action, unit) ? 0 : 1;
    }
    return outcome(wrong == 0, std::to_string(wrong) + " of the " + std::to_string(all) +
                                   " things done on the tape failed this time");
}

}  // namespace

Run replayVerb(Parser& parser) {
    const auto tape = parser.word("TAPE", ".unit/log.jsonl of a unit, or what log --json prints");
    return [tape](const Call& call) { return replay(call.unit, *tape); };
}

}  // namespace headunit
