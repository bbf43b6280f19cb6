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
void place(const fs::path& from, const fs::path& to) {
    std::error_code error;
    if (fs::equivalent(from, to, error)) {
        return;
    }
    fs::remove(to, error);
    fs::create_hard_link(from, to, error);
    std::string said;
    if (error &&
        process::runReading({"cp", from.string(), to.string()}, {.errorsToo = true}, said) != 0) {
        fs::remove(to, error);
        throw Failure(from.string() + " cannot be copied to " + to.string() + ": " +
                      said.substr(0, said.find('\n')));
    }
}

// Left as it is when it is there already.
void writeConfig(const Unit& unit) {
    std::error_code error;
    const fs::path config = unit.device / "ResidentFlash2/Data/Config.ini";
    if (fs::exists(config, error)) {
        return;
    }
    std::ofstream stream(config, std::ios::binary);
    stream << kConfig;
    stream.close();
    if (stream.fail()) {
        fs::remove(config, error);
        throw Failure(config.string() + " cannot be written; is the disk full?");
    }
}

// Once for every rendering of the skin: what somebody has changed on the unit since then stays.
void placeSkin(const Unit& unit) {
    std::error_code error;
    const fs::path skin = projectRoot() / "out" / "skin";
    const auto time = fs::last_write_time(skin / ".built", error);
    const std::string stamp = error ? "none" : std::to_string(time.time_since_epoch().count());
    if (stamp == readRunFile(unit, "skin")) {
        return;
    }
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

void makeFolder(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        throw Failure("cannot make " + folder.string() + ": " + error.message());
    }
}

void prepareDevice(const Unit& unit) {
    for (const char* folder : kFolders) {
        makeFolder(unit.device / folder);
    }
    writeConfig(unit);
    for (const Installed& file : kInstalled) {
        std::error_code error;
        const fs::path from = projectRoot() / file.from;
        if (!fs::exists(from, error)) {
            throw Failure(
                "there is no " + std::string(file.from) +
                "; build it with: cmake --preset device && cmake --build --preset device");
        }
        place(from, unit.device / file.to);
    }
    placeSkin(unit);
}

}  // namespace headunit
