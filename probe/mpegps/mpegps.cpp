#include "probe/mpegps/mpegps.h"

#include <algorithm>
#include <array>

#include "probe/mpegps/duration.h"
#include "probe/mpegps/walk.h"
#include "probe/read/four_cc.h"
#include "probe/read/head.h"
#include "probe/record/diagnostics.h"

namespace probe {
namespace {

constexpr std::size_t kHeadBytes = 256;
constexpr std::uint64_t kMinimumBytes = 0x40000;
constexpr std::uint64_t kCdxaSearchBytes = 0x200000;

// A VideoCD copied from its disc: "RIFF" with the form "CDXA", then whole sectors.
bool isCdxa(std::span<const std::uint8_t> head) {
    return beginsWith(head, "RIFF") && beginsWith(head.subspan(8), "CDXA");
}

// Looks for a pack start code in the first `length` bytes, its last position included.
bool findFirstPack(ReadWindow& file, std::uint64_t length, std::uint64_t& offset) {
    for (offset = 0; offset + kStartCodeBytes <= length;) {
        std::span<const std::uint8_t> bytes;
        const auto most = static_cast<std::size_t>(length - offset);
        if (!file.view(offset, kStartCodeBytes, most, bytes) || bytes.size() < kStartCodeBytes) {
            return false;
        }
        const std::size_t found = findStartCode(bytes, kPackStart, kPackStart);
        if (found < bytes.size()) {
            offset += found;
            return true;
        }
        offset += bytes.size() - (kStartCodeBytes - 1);
    }
    return false;
}

// Pixel aspect from the picture's size and the aspect code of its sequence header. Required: code
// 4 gives 211 : 100.
void fillAspect(const VideoSequence& sequence, MediaRecord& record) {
    struct Row {
        std::uint32_t height, width;  // factors
    };
    constexpr std::array<Row, 5> kAspects = {{{0, 0}, {0, 0}, {4, 3}, {16, 9}, {211, 100}}};
    if (sequence.aspect == 1) {
        record.pixelAspectX = 1;
        record.pixelAspectY = 1;
    } else if (sequence.aspect >= 2 && sequence.aspect < kAspects.size()) {
        record.pixelAspectX = sequence.height * kAspects[sequence.aspect].height;
        record.pixelAspectY = sequence.width * kAspects[sequence.aspect].width;
    }
}

Result parseMpegPs(MpegPsReader& reader, MediaRecord& record) {
    Result result = walkMpegPs(reader);
    if (result != kOk) {
        return result;
    }
    VideoSequence sequence;
    if (!reader.sawSystemLayer || !reader.sequence.read(sequence)) {
        return kFail;
    }
    record.containerType = reader.isMpeg1 ? kContainerMpeg1System : kContainerMpeg2Program;
    record.videoFourCC = reader.isMpeg1 ? fourCc("MPG1") : fourCc("MPG2");
    record.videoWidth = sequence.width;
    record.videoHeight = sequence.height;
    record.videoBitRate = sequence.bitRate;
    record.frameTimeMicroseconds = sequence.frameTime / 10;
    fillAspect(sequence, record);
    record.audioFormatTag = reader.audio.formatTag;
    record.audioSampleRate = reader.audio.sampleRate;
    record.audioChannels = reader.audio.channels;
    record.audioBitRate = reader.audio.bitRate;

    std::int64_t duration = 0;
    result = measureMpegPs(reader, duration);
    record.durationSeconds = static_cast<std::uint32_t>(duration / 10'000'000);
    return result;
}

}  // namespace

int MpegPsRecognise(MediaRecord& record, ReadWindow& file) {
    Head head;
    if (const char* why = readHead(file, kMinimumBytes, kHeadBytes, head)) {
        return decline(why);
    }
    const bool cdxa = isCdxa(head.bytes);
    const std::uint64_t searched = cdxa ? std::min(head.fileSize, kCdxaSearchBytes) : kHeadBytes;
    std::uint64_t firstPack = 0;
    if (!findFirstPack(file, searched, firstPack)) {
        return decline(cdxa ? "a VideoCD without a pack start code in its first 2 MiB"
                            : "no pack start code in its first 256 bytes");
    }
    record.setFileSize(head.fileSize);
    MpegPsReader reader{file};
    reader.end = head.fileSize;
    reader.firstPack = firstPack;
    record.status = parseMpegPs(reader, record);
    return 1;
}

}  // namespace probe
