#include "probe/mpegaudio/stream.h"

#include <algorithm>
#include <array>

#include "probe/mpegaudio/ape_tag.h"
#include "probe/mpegaudio/id3.h"
#include "probe/read/byte_reader.h"
#include "probe/read/head.h"
#include "probe/record/saturate.h"

namespace probe {
namespace {

constexpr std::uint64_t kMeasuredBytes = 0x200000;
constexpr int kComparedFrames = 6;

struct Stream {
    std::uint64_t begin = 0;  // first frame
    std::uint64_t end = 0;    // behind the last one
    MpegAudioHeader header;   // of the first frame that carries sound
};

// What a header in the first frame tells; 0 where it is silent.
struct VbrHeader {
    bool found = false;
    bool constantRate = false;  // "Info": written by the same encoders at a constant bit rate
    std::uint32_t frames = 0;
    std::uint32_t bytes = 0;
};

// Without a tag in front the first frame stands at 0, before the place where the search begins;
// the frame that was found is then the second.
std::uint64_t trueBegin(ReadWindow& file, std::uint64_t found, const MpegAudioHeader& second) {
    MpegAudioHeader header;
    const bool isFirst = readMpegAudioFrame(file, 0, found, header) && header.frameBytes == found &&
                         header.version == second.version && header.layer == second.layer;
    return isFirst ? 0 : found;
}

// The frames end where the tags begin: an ID3 version 1 tag is the last 128 bytes of the file,
// an APE tag ends there or in front of it.
Result findEnd(ReadWindow& file, std::uint64_t fileSize, std::uint64_t& end) {
    constexpr std::size_t kTailBytes = kApeFooterBytes + kId3v1Bytes;
    constexpr std::uint32_t kHasHeader = 0x80000000;
    std::array<std::uint8_t, kTailBytes> bytes;
    std::size_t read = 0;
    if (!file.readAside(fileSize - kTailBytes, bytes, read) || read < kTailBytes) {
        return kFail;
    }
    std::span<const std::uint8_t> tail = bytes;
    end = fileSize;
    if (beginsWith(tail.last(kId3v1Bytes), "TAG")) {
        end -= kId3v1Bytes;
        tail = tail.first(kApeFooterBytes);
    }
    const auto footer = tail.last(kApeFooterBytes);
    if (beginsWith(footer, "APETAGEX")) {
        const std::uint32_t flags = le32(&footer[20]);
        const std::uint64_t tagBytes =
            std::uint64_t{le32(&footer[12])} + ((flags & kHasHeader) != 0 ? kApeFooterBytes : 0);
        end -= tagBytes <= end ? tagBytes : 0;
    }
    return kOk;
}

// Layer III alone. Offsets are from the frame header; all numbers are big-endian.
//
//   "Xing" or "Info", behind the side information:     "VBRI", at 36:
//     0  4  identifier                                   0  4  identifier
//     4  4  flags: 1 frames, 2 bytes follow              4  6  version, delay, quality
//     8  4  frames                                      10  4  bytes
//    12  4  bytes                                       14  4  frames
Result readVbrHeader(ReadWindow& file, const Stream& stream, VbrHeader& vbr) {
    constexpr std::size_t kVbri = 36, kBytes = 54;
    constexpr std::uint32_t kHasFrames = 1, kHasBytes = 2;
    vbr = {};
    if (stream.header.layer != 3) {
        return kOk;
    }
    std::span<const std::uint8_t> bytes;
    if (!file.viewAll(stream.begin, kBytes, bytes)) {
        return kFail;
    }
    const bool mpeg1 = stream.header.version == MpegVersion::Mpeg1;
    const bool mono = stream.header.channels == 1;
    const std::size_t sideBytes = mpeg1 ? (mono ? 17u : 32u) : (mono ? 9u : 17u);
    ByteReader xing(bytes.subspan(kMpegAudioHeaderBytes + sideBytes));
    const auto name = xing.take(4);
    if (beginsWith(name, "Xing") || beginsWith(name, "Info")) {
        const std::uint32_t flags = xing.be32();
        vbr.found = true;
        vbr.constantRate = name[0] == 'I';
        vbr.frames = (flags & kHasFrames) != 0 ? xing.be32() : 0;
        vbr.bytes = (flags & kHasBytes) != 0 ? xing.be32() : 0;
    } else if (beginsWith(bytes.subspan(kVbri), "VBRI")) {
        vbr.found = true;
        vbr.bytes = be32(&bytes[kVbri + 10]);
        vbr.frames = be32(&bytes[kVbri + 14]);
    }
    return kOk;
}

// The frame that carries such a header carries no sound, and its bit rate may be another.
void skipSilentFrame(ReadWindow& file, Stream& stream) {
    MpegAudioHeader next;
    const std::uint64_t at = stream.begin + stream.header.frameBytes;
    if (readMpegAudioFrame(file, at, stream.end, next) && next.version == stream.header.version &&
        next.layer == stream.header.layer) {
        stream.begin = at;
        stream.header.bitRate = next.bitRate;
    }
}

// The mean bit rate of the frames in the first 2 MiB, or the first frame's when the first six
// agree: then the stream is taken to have a constant rate and no more of it is read.
double meanBitRate(ReadWindow& file, const Stream& stream) {
    const std::uint64_t limit = std::min(stream.end, stream.begin + kMeasuredBytes);
    std::uint64_t at = stream.begin, samples = 0;
    bool varies = false;
    MpegAudioHeader header;
    for (int frames = 0; (varies || frames < kComparedFrames) && at < limit; ++frames) {
        if (!readMpegAudioFrame(file, at, limit, header) ||
            header.version != stream.header.version || header.layer != stream.header.layer) {
            break;
        }
        varies = varies || header.bitRate != stream.header.bitRate;
        samples += header.samplesPerFrame;
        at += header.frameBytes;
    }
    if (!varies) {
        return stream.header.bitRate;
    }
    return static_cast<double>(at - stream.begin) * 8.0 * stream.header.sampleRate /
           static_cast<double>(samples);
}

void fillFromVbrHeader(const Stream& stream, const VbrHeader& vbr, MediaRecord& record) {
    const std::uint64_t samples = std::uint64_t{vbr.frames} * stream.header.samplesPerFrame;
    const std::uint64_t bytes = vbr.bytes != 0 ? vbr.bytes : stream.end - stream.begin;
    record.durationSeconds = static_cast<std::uint32_t>(samples / stream.header.sampleRate);
    record.audioBitRate =
        vbr.constantRate ? stream.header.bitRate
                         : saturateToU32(static_cast<double>(bytes) * 8.0 *
                                         stream.header.sampleRate / static_cast<double>(samples));
}

void fillFromFrames(ReadWindow& file, const Stream& stream, MediaRecord& record) {
    const double bitRate = meanBitRate(file, stream);
    record.audioBitRate = saturateToU32(bitRate);
    record.durationSeconds =
        saturateToU32(static_cast<double>(stream.end - stream.begin) * 8.0 / bitRate);
}

}  // namespace

bool readMpegAudioFrame(ReadWindow& file, std::uint64_t offset, std::uint64_t end,
                        MpegAudioHeader& header) {
    std::span<const std::uint8_t> bytes;
    return offset <= end && end - offset >= kMpegAudioHeaderBytes &&
           file.view(offset, kMpegAudioHeaderBytes, bytes) && parseMpegAudioHeader(bytes, header) &&
           header.frameBytes != 0;
}

Result parseMpegAudio(ReadWindow& file, std::uint64_t fileSize, std::uint64_t first,
                      MediaRecord& record) {
    Stream stream;
    if (!readMpegAudioFrame(file, first, fileSize, stream.header)) {
        return kFail;
    }
    stream.begin = trueBegin(file, first, stream.header);
    if (stream.begin != first && !readMpegAudioFrame(file, 0, fileSize, stream.header)) {
        return kFail;
    }
    const MpegAudioHeader& header = stream.header;
    record.containerType = kContainerMpegAudio;
    record.audioFormatTag = header.layer == 3 ? kAudioMpegLayer3 : kAudioMpeg;
    record.audioSampleRate = header.sampleRate;
    record.audioChannels = header.channels;
    record.videoFourCC = 0;

    VbrHeader vbr;
    Result result = readVbrHeader(file, stream, vbr);
    if (result != kOk) {
        return result;
    }
    result = findEnd(file, fileSize, stream.end);
    if (result != kOk) {
        return result;
    }
    stream.end = std::max(stream.end, stream.begin);
    if (vbr.found) {
        skipSilentFrame(file, stream);
    }
    if (vbr.frames != 0) {
        fillFromVbrHeader(stream, vbr, record);
    } else {
        fillFromFrames(file, stream, record);
    }
    return kOk;
}

}  // namespace probe
