// headunit record: a dash camera that records while the viewer looks on.
#include "simulator/command/verbs.h"

namespace headunit {
namespace {

constexpr int kStartPatience = 5000;  // milliseconds
constexpr int kClosePatience = 3000;  // for the index to be written
constexpr int kLongest = 3600;        // seconds
constexpr char kPidFile[] = "record.pid";
// What the camera sees, over and over; see simulator/samples/make.sh.
constexpr char kScene[] = "out/samples/SDMMCDisk/Record/20260314_081600_F.avi";

Outcome stopRecording(const Unit& unit) {
    const pid_t camera = helperProcess(unit, kPidFile);
    if (camera == 0) {
        throw Failure("nothing is being recorded in " + unit.device.string());
    }
    // Asked to end it closes the file as a camera does that is switched off in order.
    process::end(camera, kClosePatience);
    endHelper(unit, kPidFile);
    return {};
}

// Until the file holds its header and first pictures, or the camera has ended after less.
bool waitForPictures(const fs::path& file, pid_t camera) {
    constexpr std::uintmax_t kFirstPictures = 64 * 1024;
    std::error_code error;
    const auto bytes = [&] { return fs::exists(file, error) ? fs::file_size(file, error) : 0; };
    const bool good = process::waitUntil(
        kStartPatience, [&] { return bytes() >= kFirstPictures || !process::isAlive(camera); });
    return good && bytes() > 0;
}

// A new file, on a card of the unit and nowhere else.
void requireNew(const Unit& unit, const fs::path& file) {
    std::error_code error;
    const fs::path folder = fs::canonical(file.parent_path(), error);
    if (error || !fs::is_directory(folder, error)) {
        throw Failure("there is no folder " + file.parent_path().string() + " to record into");
    }
    if (unitPath({fs::canonical(unit.device, error)}, folder / "x").empty()) {
        throw Failure(file.string() + " is not on the unit");
    }
    if (fs::exists(fs::symlink_status(file, error))) {
        throw Failure("there is a " + file.string() + " already; name a new file");
    }
}

Outcome startRecording(const Unit& unit, const std::string& path, const std::string& seconds) {
    std::error_code error;
    const fs::path scene = projectRoot() / kScene;
    const fs::path file = hostPath(unit, path);
    const std::string log = (unit.run() / "record.log").string();
    requireRunning(unit);
    if (helperProcess(unit, kPidFile) != 0) {
        throw Failure("the camera records already; end it with: " + commandFor(unit, "record off"));
    }
    if (!fs::exists(scene, error)) {
        throw Failure("there is no " + scene.string() + "; make it with: ./run");
    }
    requireNew(unit, file);
    // Copied packet by packet at the speed at which they were taken; never onto a file that is
    // there.
    const pid_t camera = process::startDetached(
        {"ffmpeg", "-nostdin", "-v", "error", "-n", "-re", "-stream_loop", "-1", "-i",
         scene.string(), "-t", seconds, "-c", "copy", "-flush_packets", "1", "-f", "avi",
         file.string()},
        {.environment = {"HEADUNIT=" + unit.device.string()}, .logFile = log});
    if (camera < 0) {
        throw Failure("ffmpeg is missing; install it with: apt-get install ffmpeg");
    }
    writeRunFile(unit, kPidFile, std::to_string(camera));
    if (!waitForPictures(file, camera)) {
        endHelper(unit, kPidFile);
        throw Failure("nothing was recorded; see " + log);
    }
    return {};
}

}  // namespace

Run recordVerb(Parser& parser) {
    const auto file =
        parser.word("FILE.avi|off", "a new file of the unit; or switch the camera off", Needed::Yes,
                    oneOf("off", endingIn(".avi")));
    const auto seconds = parser.word("SECONDS", "how long at most, 60 unless told", Needed::No,
                                     between(1, kLongest));
    return [file, seconds](const Call& call) {
        return *file == "off"
                   ? stopRecording(call.unit)
                   : startRecording(call.unit, *file, seconds->empty() ? "60" : *seconds);
    };
}

}  // namespace headunit
