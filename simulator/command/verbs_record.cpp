// headunit record: a dash camera that records while the viewer looks on.
#include <cstdio>

#include "simulator/command/verbs.h"

namespace headunit {
namespace {

constexpr int kStartPatience = 5000;  // milliseconds
constexpr int kClosePatience = 3000;  // for the index to be written
constexpr char kPidFile[] = "record.pid";
// What the camera sees, over and over; see simulator/samples/make.sh.
constexpr char kScene[] = "out/samples/SDMMCDisk/Record/20260314_081600_F.avi";

int stopRecording(const Unit& unit) {
    const pid_t camera = helperProcess(unit, kPidFile);
    if (camera == 0) {
        return fail("nothing is being recorded in " + unit.device.string());
    }
    // Asked to end it closes the file as a camera does that is switched off in order.
    process::end(camera, kClosePatience);
    endHelper(unit, kPidFile);
    return 0;
}

// The file holds its header and first pictures.
bool waitForPictures(const fs::path& file, pid_t camera) {
    constexpr std::uintmax_t kFirstPictures = 64 * 1024;
    for (int waited = 0; waited < kStartPatience; waited += 20) {
        std::error_code error;
        const std::uintmax_t bytes = fs::file_size(file, error);
        if (!error && bytes >= kFirstPictures) {
            return true;
        }
        if (!process::isAlive(camera)) {
            return !error && bytes > 0;
        }
        process::sleepMilliseconds(20);
    }
    return false;
}

int startRecording(const Unit& unit, const std::string& path, const std::string& seconds) {
    std::error_code error;
    const fs::path scene = projectRoot() / kScene;
    const fs::path file = hostPath(unit, path);
    const std::string log = (unit.run() / "record.log").string();
    if (!fs::exists(unit.run(), error)) {
        return fail("there is no unit in " + unit.device.string() +
                    "; start one with: headunit boot");
    }
    if (helperProcess(unit, kPidFile) != 0) {
        return fail("the camera records already; end it with: headunit record off");
    }
    if (!fs::exists(scene, error)) {
        return fail("there is no " + scene.string() + "; make it with: ./run");
    }
    if (!fs::is_directory(file.parent_path(), error)) {
        return fail("there is no folder " + file.parent_path().string() + " to record into");
    }
    // Copied packet by packet at the speed at which they were taken.
    const pid_t camera = process::startDetached(
        {"ffmpeg", "-nostdin", "-v", "error", "-y", "-re", "-stream_loop", "-1", "-i",
         scene.string(), "-t", seconds, "-c", "copy", "-flush_packets", "1", "-f", "avi",
         file.string()},
        {.environment = {"HEADUNIT=" + unit.device.string()}, .logFile = log});
    if (camera < 0) {
        return fail("ffmpeg is missing; install it with: apt-get install ffmpeg");
    }
    writeRunFile(unit, kPidFile, std::to_string(camera));
    if (!waitForPictures(file, camera)) {
        endHelper(unit, kPidFile);
        return fail("nothing was recorded; see " + log);
    }
    return 0;
}

}  // namespace

int recordVerb(const Unit& unit, const Words& words) {
    long long seconds = 0;
    const bool off = words == Words{"off"};
    if (!off && (words.size() != 2 || !words[0].ends_with(".avi") ||
                 !parseNumber(words[1], seconds) || seconds < 1 || seconds > 3600)) {
        return wrongUse("record");
    }
    if (isCheckOnly()) {
        return 0;
    }
    return off ? stopRecording(unit) : startRecording(unit, words[0], words[1]);
}

}  // namespace headunit
