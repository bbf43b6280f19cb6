// Starting and ending: boot, restart, start, shutdown, cut, kill, prepare.
#include <signal.h>

#include "simulator/command/boot.h"
#include "simulator/command/choice.h"
#include "simulator/command/prefix.h"
#include "simulator/command/verbs.h"

namespace headunit {
namespace {

constexpr int kExitPatience = 15000;  // milliseconds
constexpr int kLatest = 60000;

// The words that boot and restart have in common.
struct Common {
    std::shared_ptr<bool> pip;
    std::shared_ptr<std::string> connect;
    std::shared_ptr<bool> missing;
    std::shared_ptr<std::string> path;

    [[nodiscard]] BootOptions options() const {
        BootOptions options;
        options.pip = *pip;
        options.connectFolder = *connect;
        options.play = *path;
        return options;
    }
    // The hand-over's folder may be on a card that is yet to come.
    void check(const Unit& unit) const {
        if (!connect->empty() && !*missing) {
            requireFolder(unit, *connect);
        }
    }
};

Common declareCommon(Parser& parser) {
    return {parser.flag("--pip", "the player in half width"),
            parser.option("--connect", "FOLDER", "the dash camera hands this folder over"),
            parser.flag("--missing", "that folder need not be there"),
            parser.word("PATH", "a recording or folder of the PC or of the unit to go on with",
                        Needed::No)};
}

// Until the player runs no more; false when patience has ended.
bool awaitEnd(const Unit& unit) {
    return process::waitUntil(kExitPatience, [&unit] {
        std::string answer;
        return !ask(unit, {"running", "movie.exe"}, answer) || answer != "true";
    });
}

Outcome restart(const Unit& unit, const Common& words) {
    const BootOptions options = words.options();
    std::string unused;
    requireRunning(unit);
    // What is wrong is found while the player still runs.
    words.check(unit);
    const Choice choice = choose(unit, options.play);
    if (ask(unit, {"kill", "movie.exe"}, unused)) {
        awaitEnd(unit);
    }
    // After a cut that left the screen the other processes are started first.
    demand(unit, {"power"});
    remember(unit, choice);
    startPlayer(unit, options);
    return {};
}

}  // namespace

Run bootVerb(Parser& parser) {
    const Common common = declareCommon(parser);
    const auto headless = parser.flag("--headless", "no window on the desktop");
    const auto panel = parser.flag("--panel", "with the panel beside the screen");
    const auto passive = parser.flag("--passive", "the process manager only records");
    const auto without = parser.options("--without", "NAME", "processmanager, orvi or ani_waiting",
                                        oneOf("processmanager|orvi|ani_waiting"));
    const auto late = parser.option("--late", "MS", "the peers answer sent messages that late",
                                    between(0, kLatest));
    const auto hear = parser.flag("--hear", "keep what is played, for expect loud and silence");
    const auto noPlayer = parser.flag("--no-player", "everything but the player");
    return [=](const Call& call) -> Outcome {
        BootOptions options = common.options();
        options.headless = *headless;
        options.panel = *panel;
        options.passive = *passive;
        options.without = *without;
        options.lateMilliseconds = static_cast<int>(number(*late));
        options.hear = *hear;
        options.noPlayer = *noPlayer;
        options.words = call.words.empty() ? "" : " " + joinWords(call.words);
        common.check(call.unit);
        boot(call.unit, options);
        return {};
    };
}

Run restartVerb(Parser& parser) {
    const Common common = declareCommon(parser);
    return [common](const Call& call) { return restart(call.unit, common); };
}

Run startVerb(Parser& parser) {
    const auto pip = parser.flag("--pip", "the player in half width");
    return [pip](const Call& call) -> Outcome {
        launchPlayer(call.unit, *pip);
        return {};
    };
}

Run cutVerb(Parser& parser) {
    const auto stay = parser.flag("--stay", "leave the screen and the panel; restart powers on");
    const auto player = parser.flag("--player", "the player alone, as a crash does");
    const auto messages =
        parser.word("MESSAGES",
                    "not now but after so many messages of every later start, until fault "
                    "CutAfterMessages off",
                    Needed::No, between(1, 1000000));
    return [=](const Call& call) -> Outcome {
        if (*player) {
            demand(call.unit, {"kill", "movie.exe"});
            return {};
        }
        if (!messages->empty()) {
            demand(call.unit, {"fault", "CutAfterMessages", *messages});
            return {};
        }
        // The camera has the same power: what it records is cut off.
        if (const pid_t camera = helperProcess(call.unit, "record.pid")) {
            kill(camera, SIGKILL);
        }
        if (*stay) {
            demand(call.unit, {"cut"});
        } else {
            endUnit(call.unit);
        }
        return {};
    };
}

Run prepareVerb(Parser& parser) {
    const auto prefix = parser.word("PREFIX", "where the copy is made", Needed::No);
    return [prefix](const Call& call) -> Outcome {
        preparePrefix();
        if (!prefix->empty()) {
            copyPrefix(call.unit.device, fs::absolute(*prefix));
        }
        return {};
    };
}

Run shutdownVerb(Parser& parser) {
    const auto stay = parser.flag("--stay", "the unit stays on");
    return [stay](const Call& call) -> Outcome {
        demand(call.unit, {"shutdown"});
        if (!awaitEnd(call.unit)) {
            return failed(
                "the player did not exit within " + std::to_string(kExitPatience / 1000) +
                " s (a message box may be open); end it with: " + commandFor(call.unit, "kill"));
        }
        if (!*stay) {
            endUnit(call.unit);
        }
        return {};
    };
}

Run killVerb(Parser&) {
    return [](const Call& call) -> Outcome {
        endUnit(call.unit);
        return {};
    };
}

}  // namespace headunit
