#include "simulator/command/boot.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "platform/text.h"
#include "simulator/command/display.h"
#include "simulator/command/hearing.h"
#include "simulator/command/movie_dat.h"
#include "simulator/command/prefix.h"
#include "simulator/command/tape_reader.h"

namespace headunit {
namespace {

constexpr int kHubPatience = 60000;  // milliseconds; the first start of a prefix is slow
constexpr int kHubAttempts = 2;
constexpr int kPeerPatience = 15000;
constexpr int kFramePatience = 60000;
constexpr char kCard[] = "SDMMCDisk";

struct PeerProgram {
    const char* name;    // as the user names it
    const char* window;  // title of its window
};
constexpr PeerProgram kPeers[] = {
    {"processmanager", "Processmanager"}, {"orvi", "Orvi"}, {"ani_waiting", "ani_waiting"}};

// Two commands that boot one unit at the same time take turns; the second finds it running.
class BootLock {
public:
    explicit BootLock(const Unit& unit) {
        handle_ = open((unit.run() / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
        flock(handle_, LOCK_EX);
    }
    ~BootLock() { close(handle_); }
    BootLock(const BootLock&) = delete;
    BootLock& operator=(const BootLock&) = delete;

private:
    int handle_ = -1;
};

int screenWidth(const BootOptions& options) {
    return kScreenWidth + (options.panel ? kPanelWidth : 0);
}

bool startDisplay(const Unit& unit, const BootOptions& options, std::string& why) {
    const char* display = std::getenv("DISPLAY");
    if (options.headless || display == nullptr || *display == '\0') {
        return startOwnDisplay(unit, screenWidth(options), why);
    }
    useDesktop(unit, display);
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

bool startHub(const Unit& unit, const BootOptions& options, std::string& why) {
    const std::string desktop = "/desktop=" + unit.desktopName() + "," +
                                std::to_string(screenWidth(options)) + "x" +
                                std::to_string(kScreenHeight);
    auto environment = wineEnvironment(unit.prefix(), readRunFile(unit, "display"));
    // With this the panel does what only the PC can.
    std::error_code error;
    environment.push_back("HEADUNIT_COMMAND=" + fs::read_symlink("/proc/self/exe", error).string());
    environment.push_back("HEADUNIT_DEVICE=" + unit.device.string());
    writeRunFile(unit, "panel", options.panel ? "open" : "");
    const std::string log = (unit.run() / "wine.log").string();
    for (int attempt = 1;; ++attempt) {
        const pid_t hub = process::startDetached(
            {wineLoader(), "explorer", desktop, "H:\\.unit\\bin\\unit.exe",
             options.panel ? "--panel" : "--no-panel"},
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
bool isShown(const json::Value& line) {
    return line.textOf("kind") == "post" && line.textOf("message") == "MSG_MovietoProcessManager" &&
           line.numberOf("wParam", -1) == 5;
}

bool playerIsVisible(const Unit& unit) {
    std::string answer;
    if (!ask(unit, {"state"}, answer)) {
        return false;
    }
    const auto state = json::parse(answer);
    const json::Value* windows = state ? state->find("windows") : nullptr;
    for (const json::Value& window : windows ? windows->items : std::vector<json::Value>()) {
        const json::Value* visible = window.find("visible");
        if (window.textOf("title") == "Video" && visible != nullptr && visible->truth) {
            return true;
        }
    }
    return false;
}

// One that was ended just before may still be reported; only the number tells them apart.
bool hasEnded(const json::Value& line, long long process) {
    return line.textOf("kind") == "process" && line.textOf("text") == "ended" &&
           line.numberOf("process", -1) == process;
}

// `why` brings the player's process number, as the unit has answered, and takes the reason.
bool waitForFirstFrame(const Unit& unit, std::uint64_t from, bool managed, std::string& why) {
    const long long process = std::atoll(why.c_str());
    TapeReader reader(unit, from);
    const long long end = process::nowMilliseconds() + kFramePatience;
    while (process::nowMilliseconds() < end) {
        while (const auto line = reader.next()) {
            if (isShown(line->value)) {
                return true;
            }
            if (hasEnded(line->value, process)) {
                why = "the player ended at once with exit value " +
                      std::to_string(line->value.numberOf("exit", 0)) +
                      "; see: headunit log --device " + unit.device.string();
                return false;
            }
            if (line->value.textOf("kind") == "box" && line->value.find("text") != nullptr) {
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
    if (!prepareHearing(unit, options.hear, why) || !copyPrefix(unit.device, unit.prefix(), why) ||
        !startDisplay(unit, options, why) || !startHub(unit, options, why) ||
        !ask(unit, {"note", "boot" + options.words}, why) || !startPeers(unit, options, why)) {
        return false;
    }
    if (!options.play.empty() && !choose(unit, options.play, why)) {
        return false;
    }
    return options.noPlayer || startPlayer(unit, options, why);
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> out(1);
    for (const char c : text) {
        if (c == '\n') {
            out.emplace_back();
        } else {
            out.back() += c;
        }
    }
    return out;
}

void setPath(char16_t (&to)[platform::kPathCapacity], const std::string& path) {
    const std::u16string text = platform::toUtf16(path);
    const std::size_t length = std::min(text.size(), platform::kPathCapacity - 1);
    std::copy_n(text.begin(), length, to);
}

// A link on the unit's own card. Nothing but a link is replaced: the card may be a folder of the
// PC, and what is on it is the user's.
bool linkOntoCard(const Unit& unit, const fs::path& host, const fs::path& link, std::string& why) {
    std::error_code error;
    if (fs::equivalent(link, host, error)) {
        return true;
    }
    const fs::path card = unit.device / kCard;
    if (fs::is_symlink(fs::symlink_status(card, error))) {
        why = std::string("a folder of the PC is in ") + kCard + "; first: headunit card change " +
              kCard + " --own";
        return false;
    }
    fs::create_directories(card, error);
    const fs::file_status there = fs::symlink_status(link, error);
    if (fs::exists(there) && !fs::is_symlink(there)) {
        why = "the card has another " + host.filename().string() + "; take that one away first";
        return false;
    }
    fs::remove(link, error);
    error.clear();
    fs::create_symlink(host, link, error);
    why = error ? "cannot put " + host.string() + " on the card: " + error.message() : "";
    return !error;
}

// Where the file or folder stands on the unit; what lies outside is linked onto the card first.
bool putOnUnit(const Unit& unit, const fs::path& path, std::string& onUnit, std::string& why) {
    std::error_code error;
    fs::path host = fs::exists(path, error) ? fs::absolute(path, error).lexically_normal()
                                            : hostPath(unit, path.string());
    if (!host.has_filename()) {
        host = host.parent_path();
    }
    if (!fs::exists(host, error)) {
        why = "there is no file " + path.string() + ", neither here nor on the unit";
        return false;
    }
    onUnit = unitPath(unit, host);
    if (!onUnit.empty()) {
        return true;
    }
    const fs::path link = unit.device / kCard / host.filename();
    onUnit = unitPath(unit, link);
    return linkOntoCard(unit, host, link, why);
}

}  // namespace

bool choose(const Unit& unit, const fs::path& file, std::string& why) {
    std::string onUnit;
    if (!putOnUnit(unit, file, onUnit, why)) {
        return false;
    }
    std::error_code error;
    const bool isFolder = fs::is_directory(hostPath(unit, onUnit), error);
    const std::string folder = isFolder ? onUnit : onUnit.substr(0, onUnit.rfind('\\'));
    std::string answer;
    if (!ask(unit, {"listing", folder}, answer)) {
        why = answer;
        return false;
    }
    const std::vector<std::string> paths = lines(answer);
    settings::PersistedState state;
    const auto found = isFolder ? paths.begin() : std::find(paths.begin(), paths.end(), onUnit);
    if (found == paths.end() || found->empty()) {
        why = isFolder ? "there is no recording in " + file.string()
                       : "the player lists no such recording: " + file.string();
        return false;
    }
    state.playState = settings::kPlaying;
    state.fileIndex = static_cast<std::int32_t>(found - paths.begin());
    setPath(state.folder, folder);
    setPath(state.file, *found);
    if (!writeMovieDat(unit, state)) {
        why = "Movie.dat cannot be written; is the disk full?";
        return false;
    }
    return true;
}

std::string playerCommandLine(bool pip) {
    return std::string("H:\\ResidentFlash\\apps\\movie.exe") + (pip ? " PIP" : "");
}

bool startPlayer(const Unit& unit, const BootOptions& options, std::string& why) {
    if (!options.connectFolder.empty() && !ask(unit, {"connect", options.connectFolder}, why)) {
        return false;
    }
    const std::uint64_t from = tapeEnd(unit);
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
    const BootLock lock(unit);
    if (isRunning(unit)) {
        why = "a unit runs in " + unit.device.string() + " already; end it with: headunit kill";
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
