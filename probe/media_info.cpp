#include "probe/media_info.h"

#include "probe/read/read_window.h"
#include "probe/recognisers.h"

namespace probe {
namespace {

Result resultFromWindowsError(std::uint32_t error) {
    const auto number = static_cast<Result>(error);
    if (number <= 0) {
        return number;
    }
    return static_cast<Result>(0x80070000u | (error & 0xFFFFu));
}

}  // namespace

Result MediaInfo::Open(const char16_t* path) {
    fileHandle.reset();
    std::uint32_t error = 0;
    fileHandle = platform::openFile(path, error);
    if (!fileHandle) {
        return resultFromWindowsError(error);
    }
    static_cast<void>(Probe(*fileHandle));
    fileHandle.reset();
    return kOk;
}

Result MediaInfo::Probe(platform::ReadOnlyFile& file) {
    ReadWindow window(file);
    return askRecognisers(*this, window) != nullptr ? 1 : 0;
}

}  // namespace probe
