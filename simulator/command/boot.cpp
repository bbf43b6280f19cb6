#include "simulator/command/boot.h"

#include <sys/file.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>

#include "simulator/command/choice.h"
#include "simulator/command/display.h"
#include "simulator/command/hearing.h"
#include "simulator/command/prefix.h"
#include "simulator/command/screen.h"
#include "simulator/shared/json.h"
#include "simulator/shared/messages.h"
#include "simulator/shared/tape_reader.h"

namespace headunit {
namespace {

constexpr int kHubPatience = 60000;  // milliseconds; the first start of a prefix is slow
constexpr int kHubAttempts = 2;
constexpr int kPeerPatience = 15000;
constexpr int kFramePatience = 60000;

struct PeerProgram {
    const char* name;    // as the user names it
    const char* window;  // title of its window
};
constexpr PeerProgram kPeers[] = {
    {"processmanager", "Processmanager"}, {"orvi", "Orvi"}, {"ani_waiting", "ani_waiting"}};

// Gives how many pixels the panel has beside the screen.
int startDisplay(const Unit& unit, const BootOptions& options) {
    const char* display = std::getenv("DISPLAY");
    const int panel = options.panel ? kPanelWidth : 0;
    if (options.headless || display == nullptr || *display == '\0') {
        startOwnDisplay(unit, kScreenWidth + panel);
        return panel;
    }
    const int width = useDesktop(unit, display);
    return options.panel ? std::clamp(width - kScreenWidth, kNarrowestPanel, kPanelWidth) : 0;
}

std::string lastLineOf(const std::string& path) {
    std::ifstream file(path);
    std::string line;
    std::string last;
    while (std::getline(file, line)) {
        last = line.empty() ? last : line;
    }
    return last;
}

void startHub(const Unit& unit, int panel) {
    const std::string desktop = "/desktop=" + unit.desktopName() + "," +
                                std::to_string(kScreenWidth + panel) + "x" +
                                std::to_string(kScreenHeight);
    writeToken(unit);
    auto environment = wineEnvironment(unit.prefix(), readRunFile(unit, "display"));
    // With this the panel does what only the PC can.
    std::error_code error;
    environment.push_back("HEADUNIT_COMMAND=" + fs::read_symlink("/proc/self/exe", error).string());
    environment.push_back("HEADUNIT_DEVICE=" + unit.device.string());
    writeRunFile(unit, "panel", panel > 0 ? "open" : "");
    const std::string log = (unit.run() / "wine.log").string();
    for (int attempt = 1;; ++attempt) {
        const pid_t hub = process::startDetached(
            // By its path: Wine would find it by its name with the help of one more process.
            {wineLoader(), "C:\\windows\\system32\\explorer.exe", desktop,
             "H:\\.unit\\bin\\hub.exe", panel > 0 ? "--panel" : "--no-panel",
             std::to_string(panel)},
            {.environment = environment, .folder = unit.device.string(), .logFile = log});
        if (hub < 0) {
            throw Failure("Wine is missing; install it with: apt-get install wine wine64");
        }
        process::waitUntil(kHubPatience, [&] { return isRunning(unit) || !process::isAlive(hub); });
        if (isRunning(unit)) {
            return;
        }
        // Seen once in some thousand boots: Wine's desktop ends as soon as it has begun.
        if (process::isAlive(hub) || attempt == kHubAttempts) {
            const std::string last = lastLineOf(log);
            throw Failure("the unit did not start inside Wine; see " + log +
                          (last.empty() ? std::string() : ", which ends with: " + last));
        }
    }
}

bool isWanted(const BootOptions& options, const std::string& peer) {
    return std::ranges::find(options.without, peer) == options.without.end();
}

void startPeers(const Unit& unit, const BootOptions& options) {
    const std::string late =
        options.lateMilliseconds > 0 ? " --late " + std::to_string(options.lateMilliseconds) : "";
    for (const PeerProgram& peer : kPeers) {
        const std::string passive =
            options.passive && peer.name == std::string("processmanager") ? " --passive" : "";
        if (isWanted(options, peer.name)) {
            demand(unit, {"start", peer.window, "H:\\",
                          "H:\\.unit\\bin\\" + std::string(peer.name) + ".exe" + passive + late});
        }
    }
    for (const PeerProgram& peer : kPeers) {
        if (isWanted(options, peer.name)) {
            demand(unit, {"await", peer.window, std::to_string(kPeerPatience)});
        }
    }
}

// The process manager is told when the player has painted and loaded the rest; without a process
// manager a visible window must do.
bool isShown(const Json& line) {
    return textOf(line, "kind") == "post" &&
           textOf(line, "message") == "MSG_MovietoProcessManager" &&
           numberOf(line, "wParam", -1) == 5;
}

bool playerIsVisible(const Unit& unit) {
    std::string answer;
    if (!ask(unit, {"state"}, answer)) {
        return false;
    }
    const Json state = parseJson(answer);
    for (const Json& window : state.value("windows", Json::array())) {
        if (textOf(window, "title") == "Video" && window.value("visible", false)) {
            return true;
        }
    }
    return false;
}

// One that was ended just before may still be reported; only the number tells them apart.
bool hasEnded(const Json& line, long long process) {
    return textOf(line, "kind") == "process" && textOf(line, "text") == "ended" &&
           numberOf(line, "process", -1) == process;
}

void awaitFirstFrame(const Unit& unit, std::uint64_t from, bool managed, long long process) {
    TapeReader reader(unit.tape(), from);
    const long long end = process::nowMilliseconds() + kFramePatience;
    while (process::nowMilliseconds() < end) {
        while (const auto line = reader.next()) {
            // A box waits for the user before anything can be shown; that is up to the user.
            if (isShown(line->value) ||
                (textOf(line->value, "kind") == "box" && line->value.contains("text"))) {
                return;
            }
            if (hasEnded(line->value, process)) {
                throw Failure("the player ended at once with exit value " +
                              std::to_string(numberOf(line->value, "exit", 0)) +
                              "; see: " + commandFor(unit, "log"));
            }
        }
        if (!managed && playerIsVisible(unit)) {
            return;
        }
        process::sleepMilliseconds(10);
    }
    throw Failure("the player showed no frame within " + std::to_string(kFramePatience / 1000) +
                  " s");
}

void startEverything(const Unit& unit, const BootOptions& options) {
    prepareDevice(unit);
    preparePrefix();
    prepareHearing(unit, options.hear);
    const int panel = startDisplay(unit, options);
    copyPrefix(unit.device, unit.prefix());
    startHub(unit, panel);
    demand(unit, {"note", "boot" + options.words});
    startPeers(unit, options);
    remember(unit, choose(unit, options.play));
    if (!options.noPlayer) {
        startPlayer(unit, options);
    }
}

}  // namespace

long long launchPlayer(const Unit& unit, bool pip) {
    const std::string line =
        std::string("H:\\ResidentFlash\\apps\\movie.exe") + (pip ? " PIP" : "");
    return std::atoll(demand(unit, {"start", "movie.exe", "H:\\", line, "output"}).c_str());
}

void startPlayer(const Unit& unit, const BootOptions& options) {
    Screen screen;
    if (std::string why; !screen.open(unit, why)) {
        throw Failure(why);
    }
    screen.letThrough(tape::kWaitingSign);
    if (!options.connectFolder.empty()) {
        demand(unit, {"connect", options.connectFolder});
    }
    const std::uint64_t from = tapeEnd(unit.tape());
    awaitFirstFrame(unit, from, isWanted(options, "processmanager"),
                    launchPlayer(unit, options.pip));
}

void boot(const Unit& unit, const BootOptions& options) {
    makeFolder(unit.run());
    // Of two commands that boot one unit at the same time the second finds it running.
    const process::FileLock lock((unit.run() / "lock").string(), LOCK_EX);
    if (isRunning(unit)) {
        throw Failure("a unit runs in " + unit.device.string() +
                      " already; end it with: " + commandFor(unit, "kill"));
    }
    const EndsOnInterrupt guard(unit);
    endUnit(unit);
    try {
        startEverything(unit, options);
    } catch (const Failure&) {
        endUnit(unit);
        throw;
    }
}

}  // namespace headunit
