#include "simulator/command/unit.h"

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

}  // namespace

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

void requireFolder(const Unit& unit, const std::string& folder) {
    std::error_code error;
    if (!fs::is_directory(hostPath(unit, folder), error)) {
        throw Failure("there is no folder " + folder +
                      " on the unit; if that is meant, say --missing");
    }
}

}  // namespace headunit
