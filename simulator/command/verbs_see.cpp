// What is seen of the unit: pictures, films, the tape, the state, the skin.
#include <cstdio>

#include "simulator/command/screen.h"
#include "simulator/command/state.h"
#include "simulator/command/verbs.h"
#include "simulator/shared/describe.h"
#include "simulator/shared/tape_reader.h"

namespace headunit {
namespace {

constexpr int kLongestFilm = 3600;  // seconds

void requireBooted(const Unit& unit) {
    std::error_code error;
    if (!fs::exists(unit.run(), error)) {
        throw Failure("there is no unit in" + noUnit(unit).substr(15));
    }
}

}  // namespace

Run stateVerb(Parser& parser) {
    const auto asJson = parser.flag("--json", "one line of JSON");
    return [asJson](const Call& call) -> Outcome {
        requireBooted(call.unit);
        Json state = unitState(call.unit);
        state["loudness"] = loudnessOf(call.unit);
        return {true, *asJson ? oneLine(state) : describeState(call.unit, state)};
    };
}

Run logVerb(Parser& parser) {
    const auto follow = parser.flag("--follow", "go on until the unit ends");
    const auto asJson = parser.flag("--json", "one object of JSON a line");
    return [follow, asJson](const Call& call) -> Outcome {
        requireBooted(call.unit);
        TapeReader reader(call.unit.tape());
        for (;;) {
            while (const auto line = reader.next()) {
                std::puts(*asJson ? line->raw.c_str() : describe(line->value).c_str());
            }
            if (std::fflush(stdout) != 0 || !*follow || !isRunning(call.unit)) {
                return {};
            }
            process::sleepMilliseconds(100);
        }
    };
}

Run shotVerb(Parser& parser) {
    const auto file = parser.word("FILE.png", "where to", Needed::Yes, endingIn(".png"));
    return [file](const Call& call) -> Outcome {
        std::string why;
        return outcome(takePicture(call.unit, *file, why), why);
    };
}

Run filmVerb(Parser& parser) {
    const auto file = parser.word("FILE.mp4", "where to", Needed::Yes, endingIn(".mp4"));
    const auto seconds = parser.word("SECONDS", "how long", Needed::Yes, between(1, kLongestFilm));
    return [file, seconds](const Call& call) -> Outcome {
        Screen screen;
        std::string why;
        if (!screen.open(call.unit, why)) {
            return failed(why);
        }
        const std::string input = readRunFile(call.unit, "display") + "+" +
                                  std::to_string(screen.left()) + "," +
                                  std::to_string(screen.top());
        const std::string log = (call.unit.run() / "film.log").string();
        const int status = process::run(
            {"ffmpeg",  "-nostdin",    "-v",        "error",       "-y",      "-f",
             "x11grab", "-draw_mouse", "0",         "-video_size", "800x480", "-framerate",
             "25",      "-i",          input,       "-t",          *seconds,  "-c:v",
             "libx264", "-preset",     "ultrafast", "-pix_fmt",    "yuv420p", *file},
            {.logFile = log});
        return outcome(status == 0, "the film was not made; see " + log);
    };
}

// What it finds is printed by the script; its exit status is the verb's.
Run skinVerb(Parser& parser) {
    Parser& check = parser.sub("check", "list what is missing or has a wrong size");
    const auto folder = check.word("DIR", "the skin; else the one that was drawn last", Needed::No);
    return [folder](const Call&) -> Outcome {
        const std::string where =
            folder->empty() ? (projectRoot() / "out" / "skin").string() : *folder;
        const int status = process::run({(projectRoot() / "skin" / "check.sh").string(), where},
                                        {.keepOutput = true});
        return outcome(status == 0, "the skin in " + where + " is not as it should be");
    };
}

}  // namespace headunit
