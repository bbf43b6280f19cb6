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

// `panel` is how many pixels the panel has beside the screen.
bool startDisplay(const Unit& unit, const BootOptions& options, int& panel, std::string& why) {
    const char* display = std::getenv("DISPLAY");
    panel = options.panel ? kPanelWidth : 0;
    if (options.headless || display == nullptr || *display == '\0') {
        return startOwnDisplay(unit, kScreenWidth + panel, why);
    }
    int width = 0;
    if (!useDesktop(unit, display, width, why)) {
        return false;
    }
    if (options.panel) {
        panel = std::clamp(width - kScreenWidth, kNarrowestPanel, kPanelWidth);
    }
    return true;
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

// Until the unit answers; false when its process has ended or patience has.
bool awaitHub(const Unit& unit, pid_t hub) {
    const long long end = process::nowMilliseconds() + kHubPatience;
    while (!isRunning(unit)) {
        if (process::nowMilliseconds() > end || !process::isAlive(hub)) {
            return false;
        }
        process::sleepMilliseconds(10);
    }
    return true;
}

bool startHub(const Unit& unit, int panel, std::string& why) {
    const std::string desktop = "/desktop=" + unit.desktopName() + "," +
                                std::to_string(kScreenWidth + panel) + "x" +
                                std::to_string(kScreenHeight);
    if (!writeToken(unit, why)) {
        return false;
    }
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
            why = "Wine is missing; install it with: apt-get install wine wine64";
            return false;
        }
        if (awaitHub(unit, hub)) {
            return true;
        }
        // Seen once in some thousand boots: Wine's desktop ends as soon as it has begun.
        if (process::isAlive(hub) || attempt == kHubAttempts) {
            const std::string last = lastLineOf(log);
            why = "the unit did not start inside Wine; see " + log +
                  (last.empty() ? std::string() : ", which ends with: " + last);
            return false;
        }
    }
}

bool startPeers(const Unit& unit, const BootOptions& options, std::string& why) {
    const auto wanted = [&options](const PeerProgram& peer) {
        return std::find(options.without.begin(), options.without.end(), peer.name) ==
               options.without.end();
    };
    const std::string late =
        options.lateMilliseconds > 0 ? " --late " + std::to_string(options.lateMilliseconds) : "";
    for (const PeerProgram& peer : kPeers) {
        const std::string passive =
            options.passive && peer.name == std::string("processmanager") ? " --passive" : "";
        const std::string commandLine =
            "H:\\.unit\\bin\\" + std::string(peer.name) + ".exe" + passive + late;
        if (wanted(peer) && !ask(unit, {"start", peer.window, "H:\\", commandLine}, why)) {
            return false;
        }
    }
    for (const PeerProgram& peer : kPeers) {
        if (wanted(peer) &&
            !ask(unit, {"await", peer.window, std::to_string(kPeerPatience)}, why)) {
            return false;
        }
    }
    return true;
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

// `why` brings the player's process number, as the unit has answered, and takes the reason.
bool waitForFirstFrame(const Unit& unit, std::uint64_t from, bool managed, std::string& why) {
    const long long process = std::atoll(why.c_str());
    TapeReader reader(unit.tape(), from);
    const long long end = process::nowMilliseconds() + kFramePatience;
    while (process::nowMilliseconds() < end) {
        while (const auto line = reader.next()) {
            if (isShown(line->value)) {
                return true;
            }
            if (hasEnded(line->value, process)) {
                why = "the player ended at once with exit value " +
                      std::to_string(numberOf(line->value, "exit", 0)) +
                      "; see: " + commandFor(unit, "log");
                return false;
            }
            if (textOf(line->value, "kind") == "box" && line->value.contains("text")) {
                // It waits for the user before it can show anything; that is up to the user.
                return true;
            }
        }
        if (!managed && playerIsVisible(unit)) {
            return true;
        }
        process::sleepMilliseconds(10);
    }
    why = "the player showed no frame within " + std::to_string(kFramePatience / 1000) + " s";
    return false;
}

bool startEverything(const Unit& unit, const BootOptions& options, std::string& why) {
    int panel = 0;
    Choice choice;
    return prepareHearing(unit, options.hear, why) && startDisplay(unit, options, panel, why) &&
           copyPrefix(unit.device, unit.prefix(), why) && startHub(unit, panel, why) &&
           ask(unit, {"note", "boot" + options.words}, why) && startPeers(unit, options, why) &&
           choose(unit, options.play, choice, why) && remember(unit, choice, why) &&
           (options.noPlayer || startPlayer(unit, options, why));
}

}  // namespace

std::string playerCommandLine(bool pip) {
    return std::string("H:\\ResidentFlash\\apps\\movie.exe") + (pip ? " PIP" : "");
}

bool startPlayer(const Unit& unit, const BootOptions& options, std::string& why) {
    Screen screen;
    if (!screen.open(unit, why)) {
        return false;
    }
    screen.letThrough(tape::kWaitingSign);
    if (!options.connectFolder.empty() && !ask(unit, {"connect", options.connectFolder}, why)) {
        return false;
    }
    const std::uint64_t from = tapeEnd(unit.tape());
    const bool managed = std::find(options.without.begin(), options.without.end(),
                                   "processmanager") == options.without.end();
    return ask(unit, {"start", "movie.exe", "H:\\", playerCommandLine(options.pip), "output"},
               why) &&
           waitForFirstFrame(unit, from, managed, why);
}

bool boot(const Unit& unit, const BootOptions& options, std::string& why) {
    std::error_code error;
    fs::create_directories(unit.run(), error);
    if (error) {
        why = "cannot make " + unit.run().string() + ": " + error.message();
        return false;
    }
    // Of two commands that boot one unit at the same time the second finds it running.
    const process::FileLock lock((unit.run() / "lock").string(), LOCK_EX);
    if (isRunning(unit)) {
        why = "a unit runs in " + unit.device.string() +
              " already; end it with: " + commandFor(unit, "kill");
        return false;
    }
    const EndsOnInterrupt guard(unit);
    endUnit(unit);
    if (!prepareDevice(unit, why) || !preparePrefix(why)) {
        return false;
    }
    if (startEverything(unit, options, why)) {
        return true;
    }
    endUnit(unit);
    return false;
}

}  // namespace headunit
