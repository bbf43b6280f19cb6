// The unit's file system: what is on its resident flash before anybody uses it.
#include <fstream>

#include "simulator/command/boot.h"

namespace headunit {
namespace {

struct Installed {
    const char* from;  // below the checkout
    const char* to;    // below the unit's folder
};
constexpr Installed kInstalled[] = {
    {"out/build/device/shell/movie.exe", "ResidentFlash/apps/movie.exe"},
    {"out/build/device/simulator/coredll/coredll.dll", "ResidentFlash/apps/coredll.dll"},
    {"out/build/device/simulator/board/Zel_MessageBox.dll",
     "ResidentFlash/apps/Zel_MessageBox.dll"},
    {"out/build/device/simulator/board/BoardCommon.dll", "ResidentFlash/apps/BoardCommon.dll"},
    {"out/skin/home.bmp", ".unit/home.bmp"},
    {"out/build/device/simulator/tape/tap.dll", ".unit/bin/tap.dll"},
    {"out/build/device/simulator/hub/hub.exe", ".unit/bin/hub.exe"},
    {"out/build/device/simulator/processes/processmanager.exe", ".unit/bin/processmanager.exe"},
    {"out/build/device/simulator/processes/orvi.exe", ".unit/bin/orvi.exe"},
    {"out/build/device/simulator/processes/ani_waiting.exe", ".unit/bin/ani_waiting.exe"},
};
constexpr const char* kFolders[] = {"ResidentFlash2/Data", "ResidentFlash/Image/Movie",
                                    "ResidentFlash/apps", ".unit/bin"};
constexpr char kConfig[] = "[MISC]\nDMB=0\n[Sound]\nMUTE=0\n";

// A hard link where possible, so that nothing is copied; the old file is replaced, not written
// over. What could not be copied whole is not left there.
bool place(const fs::path& from, const fs::path& to, std::string& why) {
    std::error_code error;
    if (fs::equivalent(from, to, error)) {
        return true;
    }
    fs::remove(to, error);
    fs::create_hard_link(from, to, error);
    if (!error) {
        return true;
    }
    std::string said;
    const bool good =
        process::runReading({"cp", from.string(), to.string()}, {.errorsToo = true}, said) == 0;
    if (!good) {
        why = from.string() + " cannot be copied to " + to.string() + ": " +
              said.substr(0, said.find('\n'));
        fs::remove(to, error);
    }
    return good;
}

bool install(const Unit& unit, const Installed& file, std::string& why) {
    std::error_code error;
    const fs::path from = projectRoot() / file.from;
    if (!fs::exists(from, error)) {
        why = "there is no " + std::string(file.from) +
              "; build it with: cmake --preset device && cmake --build --preset device";
        return false;
    }
    return place(from, unit.device / file.to, why);
}

// Left as it is when it is there already.
bool writeConfig(const Unit& unit, std::string& why) {
    std::error_code error;
    const fs::path config = unit.device / "ResidentFlash2/Data/Config.ini";
    if (fs::exists(config, error)) {
        return true;
    }
    std::ofstream stream(config, std::ios::binary);
    stream << kConfig;
    stream.close();
    if (stream.fail()) {
        fs::remove(config, error);
        why = config.string() + " cannot be written; is the disk full?";
        return false;
    }
    return true;
}

// Time of the skin's last rendering, as a text.
std::string skinStamp() {
    std::error_code error;
    const auto time = fs::last_write_time(projectRoot() / "out/skin/.built", error);
    return error ? "none" : std::to_string(time.time_since_epoch().count());
}

// Once for every rendering of the skin: what somebody has changed on the unit since then stays.
bool placeSkin(const Unit& unit, std::string& why) {
    const std::string stamp = skinStamp();
    if (stamp == readRunFile(unit, "skin")) {
        return true;
    }
    std::error_code error;
    const fs::path skin = projectRoot() / "out" / "skin";
    for (const char* set : {"A", "B", "C", "D"}) {
        const fs::path to = unit.device / "ResidentFlash/Image/Movie" / set;
        fs::create_directories(to, error);
        for (const auto& entry : fs::directory_iterator(skin / set, error)) {
            if (!place(entry.path(), to / entry.path().filename(), why)) {
                return false;
            }
        }
    }
    writeRunFile(unit, "skin", stamp);
    return true;
}

}  // namespace

bool prepareDevice(const Unit& unit, std::string& why) {
    std::error_code error;
    for (const char* folder : kFolders) {
        fs::create_directories(unit.device / folder, error);
        if (error) {
            why = "cannot make " + (unit.device / folder).string() + ": " + error.message();
            return false;
        }
    }
    if (!writeConfig(unit, why)) {
        return false;
    }
    for (const Installed& file : kInstalled) {
        if (!install(unit, file, why)) {
            return false;
        }
    }
    return placeSkin(unit, why);
}

}  // namespace headunit
