// The unit's file system: what is on its resident flash before anybody uses it.
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
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

// 0 or the error's number; the library's own copying says of a full disk only that it failed.
int copyFile(const fs::path& from, const fs::path& to) {
    const int source = open(from.c_str(), O_RDONLY | O_CLOEXEC);
    const int target = source < 0 ? -1 : open(to.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0755);
    int failure = target < 0 ? errno : 0;
    std::array<char, 65536> bytes;
    ssize_t count = 0;
    while (failure == 0 && (count = read(source, bytes.data(), bytes.size())) != 0) {
        for (ssize_t done = 0; count > 0 && done < count;) {
            const ssize_t written =
                write(target, bytes.data() + done, static_cast<std::size_t>(count - done));
            count = written < 0 ? -1 : count;
            done += written;
        }
        failure = count < 0 ? errno : 0;
    }
    close(source);
    if (target >= 0 && close(target) != 0 && failure == 0) {
        failure = errno;
    }
    return failure;
}

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
    const int failure = copyFile(from, to);
    if (failure != 0) {
        why = from.string() + " cannot be copied to " + to.string() + ": " +
              std::generic_category().message(failure);
        fs::remove(to, error);
    }
    return failure == 0;
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
