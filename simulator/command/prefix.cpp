#include "simulator/command/prefix.h"

#include <sys/file.h>

#include <algorithm>
#include <array>
#include <fstream>

namespace headunit {
namespace {

constexpr char kFilters[] = "out/build/device/simulator/filters/headunit_filters.dll";
// Inside the prefix.
constexpr char kFiltersCopy[] = "drive_c/headunit/headunit_filters.dll";
constexpr char kFiltersName[] = "C:\\headunit\\headunit_filters.dll";

fs::path registryFile() {
    return projectRoot() / "simulator" / "command" / "prefix.reg";
}

// Only one command at a time prepares the prefix, and none copies it meanwhile.
std::string lockFile() {
    std::error_code error;
    fs::create_directories(projectRoot() / "out", error);
    return (projectRoot() / "out" / "prefix.lock").string();
}

fs::path prepared() {
    return projectRoot() / "out" / "prefix";
}

// What identifies one build of the filters: size and time of change.
std::string stampOf(const fs::path& file) {
    std::error_code error;
    const auto bytes = fs::file_size(file, error);
    const auto time = fs::last_write_time(file, error);
    return error ? "none"
                 : std::to_string(bytes) + " " + std::to_string(time.time_since_epoch().count());
}

std::string readLine(const fs::path& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line;
}

// `program` below C:\windows; throws `failure` when it does not end well. By its name alone Wine
// would ask one more program to find and start it, and on a busy machine that one has failed. No
// display: nothing of this needs one.
void wine(const std::string& program, const process::Arguments& arguments,
          const std::string& failure) {
    process::Arguments all = {wineLoader(), "C:\\windows\\" + program};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const int status =
        process::run(all, {.environment = wineEnvironment(prepared(), ""),
                           .logFile = (projectRoot() / "out" / "prefix.log").string()});
    if (status != 0) {
        throw Failure(failure + "; see out/prefix.log");
    }
}

void installFilters() {
    std::error_code error;
    const fs::path source = projectRoot() / kFilters;
    const fs::path target = prepared() / kFiltersCopy;
    if (!fs::exists(source, error)) {
        return;
    }
    fs::create_directories(target.parent_path(), error);
    // Copies of the prefix share this file by hard link: the old one is left to them.
    fs::remove(target, error);
    if (!fs::copy_file(source, target, error)) {
        throw Failure("the vendor's filters could not be copied: " + error.message());
    }
    wine("system32\\regsvr32.exe", {"/s", kFiltersName},
         "the vendor's filters could not be registered");
}

}  // namespace

void preparePrefix() {
    const process::FileLock lock(lockFile(), LOCK_EX);
    const fs::path stampFile = prepared() / ".headunit";
    // A newer Wine updates a prefix at its next start, and its own filters come back with that.
    const std::string stamp = stampOf(projectRoot() / kFilters) + ", " + stampOf(registryFile()) +
                              ", " + stampOf(wineLoader());
    if (readLine(stampFile) == stamp) {
        return;
    }
    std::error_code error;
    if (!fs::exists(stampFile, error)) {
        fs::remove_all(prepared(), error);
        fs::create_directories(prepared(), error);
        wine("system32\\wineboot.exe", {"-i"}, "Wine could not make its prefix");
    }
    // What the unit has in its registry, and not of a desktop's: before the filters are registered.
    wine("regedit.exe", {"/S", "Z:" + registryFile().string()},
         "the unit's registry could not be written");
    installFilters();
    process::run({"wineserver", "-w"}, {.environment = wineEnvironment(prepared(), "")});
    std::ofstream(stampFile, std::ios::trunc) << stamp << '\n';
}

void copyPrefix(const fs::path& device, const fs::path& prefix) {
    const process::FileLock lock(lockFile(), LOCK_SH);
    std::error_code error;
    const std::string from = prepared().string();
    const std::string to = prefix.string();
    // Linked where both lie on one disk, else copied.
    const bool copied = std::ranges::any_of(std::array{"-al", "-a"}, [&](const char* how) {
        fs::remove_all(prefix, error);
        return process::run({"cp", how, from, to}, {}) == 0;
    });
    if (!copied) {
        fs::remove_all(prefix, error);
        throw Failure("the Wine prefix could not be copied to " + to + "; is the disk full?");
    }
    fs::remove(prefix / "dosdevices" / "h:", error);
    fs::create_directory_symlink(device, prefix / "dosdevices" / "h:", error);
    bool complete = !error;
    // As hard links they would be written through to the prepared prefix.
    for (const char* name : {"system.reg", "user.reg", "userdef.reg"}) {
        fs::remove(prefix / name, error);
        complete = complete && fs::copy_file(prepared() / name, prefix / name, error);
    }
    if (!complete) {
        throw Failure("the Wine prefix in " + to + " could not be completed; is the disk full?");
    }
}

}  // namespace headunit
