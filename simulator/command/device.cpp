// The unit's file system: what is on its resident flash before anybody uses it.
#include <fstream>

#include "simulator/command/boot.h"

namespace headunit {
namespace {

struct Installed {
    const char* from;  // below the checkout
    const char* to;    // below the unit's folder
    bool required;
};
constexpr Installed kInstalled[] = {
    {"out/build/device/shell/movie.exe", "ResidentFlash/apps/movie.exe", true},
    {"out/build/device/simulator/board/Zel_MessageBox.dll", "ResidentFlash/apps/Zel_MessageBox.dll",
     true},
    {"out/build/device/simulator/board/BoardCommon.dll", "ResidentFlash/apps/BoardCommon.dll",
     true},
    {"out/build/device/simulator/tape/tap.dll", ".unit/bin/tap.dll", true},
    {"out/build/device/simulator/console/unit.exe", ".unit/bin/unit.exe", true},
    {"out/build/device/simulator/processes/processmanager.exe", ".unit/bin/processmanager.exe",
     true},
    {"out/build/device/simulator/processes/orvi.exe", ".unit/bin/orvi.exe", true},
    {"out/build/device/simulator/processes/ani_waiting.exe", ".unit/bin/ani_waiting.exe", true},
};
constexpr const char* kFolders[] = {"ResidentFlash2/Data", "ResidentFlash/Image/Movie",
                                    "ResidentFlash/apps", ".unit/bin"};
constexpr char kConfig[] = "[MISC]\nDMB=0\n[Sound]\nMUTE=0\n";

// A hard link where possible, so that nothing is copied; the old file is replaced, not written
// over.
bool place(const fs::path& from, const fs::path& to) {
    std::error_code error;
    if (fs::equivalent(from, to, error)) {
        return true;
    }
    fs::remove(to, error);
    fs::create_hard_link(from, to, error);
    if (error) {
        error.clear();
        fs::copy_file(from, to, error);
    }
    return !error;
}

// Time of the skin's last rendering, as a text.
std::string skinStamp() {
    std::error_code error;
    const auto time = fs::last_write_time(projectRoot() / "out/skin/.built", error);
    return error ? "none" : std::to_string(time.time_since_epoch().count());
}

// Once for every rendering of the skin: what somebody has changed on the unit since then stays.
void placeSkin(const Unit& unit) {
    const std::string stamp = skinStamp();
    if (stamp == readRunFile(unit, "skin")) {
        return;
    }
    std::error_code error;
    const fs::path skin = projectRoot() / "out" / "skin";
    for (const char* set : {"A", "B", "C", "D"}) {
        const fs::path to = unit.device / "ResidentFlash/Image/Movie" / set;
        fs::create_directories(to, error);
        for (const auto& entry : fs::directory_iterator(skin / set, error)) {
            place(entry.path(), to / entry.path().filename());
        }
    }
    writeRunFile(unit, "skin", stamp);
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
    const fs::path config = unit.device / "ResidentFlash2/Data/Config.ini";
    if (!fs::exists(config, error)) {
        std::ofstream(config, std::ios::binary) << kConfig;
    }
    for (const Installed& file : kInstalled) {
        if (!place(projectRoot() / file.from, unit.device / file.to) && file.required) {
            why = "cannot install " + std::string(file.from) +
                  "; build it with: cmake --preset device && cmake --build --preset device";
            return false;
        }
    }
    placeSkin(unit);
    return true;
}

}  // namespace headunit
