#include "simulator/command/unit.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <sstream>

#include "simulator/command/hearing.h"

namespace headunit {
namespace {

int quietDepth = 0;
int checkDepth = 0;
std::string lastErrorText;

constexpr char kWine64[] = "/usr/lib/wine/wine64";

fs::path findProjectRoot() {
    std::error_code error;
    fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
    while (!folder.empty() && folder != folder.root_path()) {
        if (fs::exists(folder / "CMakePresets.json", error)) {
            return folder;
        }
        folder = folder.parent_path();
    }
    return fs::current_path(error);
}

bool hasSoundDevice() {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator("/dev/snd", error)) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with("pcm") && name.ends_with("p")) {
            return true;
        }
    }
    return false;
}

// Without a sound device Wine's audio renderer needs a null one to work at all.
std::string nullSoundConfiguration() {
    const fs::path file = projectRoot() / "out" / "null-sound.conf";
    std::error_code error;
    if (!fs::exists(file, error)) {
        fs::create_directories(file.parent_path(), error);
        std::ofstream(file) << "pcm.!default { type null }\nctl.!default { type null }\n";
    }
    return file.string();
}

int connectTo(int port) {
    const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connection >= 0 &&
        connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
        close(connection);
        return -1;
    }
    return connection;
}

bool exchange(int connection, const std::string& request, std::string& answer) {
    std::size_t sent = 0;
    while (sent < request.size()) {
        const ssize_t count =
            send(connection, request.data() + sent, request.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        sent += static_cast<std::size_t>(count);
    }
    char bytes[4096];
    for (;;) {
        const ssize_t count = recv(connection, bytes, sizeof(bytes), 0);
        if (count <= 0) {
            return !answer.empty();
        }
        answer.append(bytes, static_cast<std::size_t>(count));
    }
}

std::string joined(const std::vector<std::string>& words) {
    std::string request;
    for (const std::string& word : words) {
        request += (request.empty() ? "" : "\t") + word;
    }
    return request + "\n";
}

}  // namespace

int fail(const std::string& text) {
    lastErrorText = text;
    if (quietDepth == 0) {
        std::fprintf(stderr, "headunit: %s\n", text.c_str());
    }
    return 1;
}

const std::string& lastError() {
    return lastErrorText;
}

Quiet::Quiet() {
    ++quietDepth;
}

Quiet::~Quiet() {
    --quietDepth;
}

bool isQuiet() {
    return quietDepth > 0;
}

CheckOnly::CheckOnly() {
    ++checkDepth;
}

CheckOnly::~CheckOnly() {
    --checkDepth;
}

bool isCheckOnly() {
    return checkDepth > 0;
}

const fs::path& projectRoot() {
    static const fs::path root = findProjectRoot();
    return root;
}

std::string Unit::desktopName() const {
    char name[40];
    std::snprintf(name, sizeof(name), "headunit-%08zx",
                  std::hash<std::string>()(device.string()) & 0xFFFFFFFFU);
    return name;
}

std::string readRunFile(const Unit& unit, const char* name) {
    std::ifstream file(unit.run() / name);
    std::string value;
    std::getline(file, value);
    while (!value.empty() && (value.back() == '\r' || value.back() == '\n')) {
        value.pop_back();
    }
    return value;
}

void writeRunFile(const Unit& unit, const char* name, const std::string& value) {
    std::ofstream(unit.run() / name, std::ios::trunc) << value << '\n';
}

std::string wineLoader() {
    return access(kWine64, X_OK) == 0 ? kWine64 : "wine";
}

std::vector<std::string> wineEnvironment(const fs::path& prefix, const std::string& display) {
    std::vector<std::string> environment = {
        "WINEPREFIX=" + prefix.string(),
        "WINEARCH=win64",
        "WINELOADER=" + wineLoader(),
        "WINEDEBUG=-all",
        "WINEDLLOVERRIDES=mscoree,mshtml,winemenubuilder.exe=",
        "LC_ALL=C.UTF-8",
        "DISPLAY=" + display,
        "GST_REGISTRY=" + (projectRoot() / "out" / "gstreamer-registry.bin").string(),
    };
    // A unit that is listened to has a sound device of its own, see hearing.h.
    std::error_code error;
    const fs::path heard = prefix.parent_path() / kHearingConfiguration;
    if (fs::exists(heard, error)) {
        environment.push_back("ALSA_CONFIG_PATH=" + heard.string());
    } else if (!hasSoundDevice()) {
        environment.push_back("ALSA_CONFIG_PATH=" + nullSoundConfiguration());
    }
    return environment;
}

bool ask(const Unit& unit, const std::vector<std::string>& words, std::string& answer) {
    if (isCheckOnly()) {
        return true;
    }
    const int port = std::atoi(readRunFile(unit, "port").c_str());
    const int connection = port > 0 ? connectTo(port) : -1;
    if (connection < 0) {
        answer = "no unit runs in " + unit.device.string() + "; start one with: headunit boot";
        return false;
    }
    std::string text;
    const bool answered = exchange(connection, joined(words), text);
    close(connection);
    if (!answered) {
        answer = "the unit ended before it answered";
        return false;
    }
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    const bool good = text.starts_with("ok");
    const std::size_t head = good ? 2 : std::string_view("error: ").size();
    answer = text.size() > head ? text.substr(head) : "";
    if (good && !answer.empty()) {
        answer.erase(0, 1);
    }
    return good;
}

bool isRunning(const Unit& unit) {
    std::string answer;
    return ask(unit, {"ping"}, answer);
}

pid_t helperProcess(const Unit& unit, const char* name) {
    const auto number = static_cast<pid_t>(std::atoi(readRunFile(unit, name).c_str()));
    if (number <= 1 || !process::isAlive(number)) {
        return 0;
    }
    std::ifstream environment("/proc/" + std::to_string(number) + "/environ");
    std::stringstream text;
    text << environment.rdbuf();
    // The entries end with zeros.
    const std::string entry = "HEADUNIT=" + unit.device.string() + '\0';
    return text.str().find(entry) != std::string::npos ? number : 0;
}

void endHelper(const Unit& unit, const char* name) {
    if (const pid_t helper = helperProcess(unit, name)) {
        process::end(helper, 2000);
    }
    std::error_code error;
    fs::remove(unit.run() / name, error);
}

void endUnit(const Unit& unit) {
    std::error_code error;
    if (fs::exists(unit.prefix() / "system.reg", error) ||
        fs::exists(unit.prefix() / "dosdevices", error)) {
        const process::Options options{.environment = wineEnvironment(unit.prefix(), "")};
        process::run({"wineserver", "-k"}, options);
        process::run({"wineserver", "-w"}, options);
    }
    for (const char* name : {"record.pid", "view-web.pid", "view.pid", "film.pid", "xvfb.pid"}) {
        endHelper(unit, name);
    }
    fs::remove(unit.run() / "port", error);
    fs::remove(unit.run() / "display", error);
    fs::remove(unit.run() / "view.url", error);
}

std::string unitPath(const Unit& unit, const fs::path& path) {
    const std::string root = unit.device.string() + "/";
    const std::string text = path.string();
    if (!text.starts_with(root)) {
        return {};
    }
    std::string out = "\\" + text.substr(root.size());
    std::replace(out.begin(), out.end(), '/', '\\');
    return out;
}

fs::path hostPath(const Unit& unit, std::string_view path) {
    std::string text(path);
    std::replace(text.begin(), text.end(), '\\', '/');
    while (text.starts_with("/")) {
        text.erase(0, 1);
    }
    return unit.device / text;
}

}  // namespace headunit
