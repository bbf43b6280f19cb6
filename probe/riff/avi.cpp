#include "probe/riff/avi.h"

#include <algorithm>

#include "probe/codec/h264.h"
#include "probe/codec/mpeg4_visual.h"
#include "probe/read/block.h"
#include "probe/read/byte_reader.h"
#include "probe/read/four_cc.h"
#include "probe/record/diagnostics.h"
#include "probe/record/saturate.h"

namespace probe {
namespace {

constexpr std::uint64_t kFirstChunk = 12;
constexpr std::size_t kChunkHeader = 8;
constexpr unsigned kZeroHeaders = 4096;  // chunk headers of zeros that are put up with

// Handles the list whose size field has been read; the caller moves on to its end.
Result readList(AviReader& reader, std::uint32_t size) {
    std::array<std::uint8_t, 4> typeBytes;
    if (const Result result = reader.read(reader.position, typeBytes); result != kOk) {
        return result;
    }
    const std::uint32_t type = be32(typeBytes.data());
    switch (type) {
        case fourCc("INFO"):
            return kOk;
        case fourCc("movi"):
            if (!reader.moviSeen) {
                reader.moviSeen = true;
                reader.moviStart = reader.position;
            }
            return kOk;
        case fourCc("hdrl"):
            return ParseHdrl(reader, reader.position, size);
        default:
            diagnose("ERROR: Unknown Chunk FourCC =%08X \n", type);
            return kOk;
    }
}

Result findPixelAspect(AviReader& reader, PixelAspect& aspect) {
    if (!reader.hasIndex || reader.index.entryCount == 0) {
        return kOk;
    }
    if (reader.index.firstVideoChunk < 0) {
        return kFail;  // a seek to before the file
    }
    const auto chunk = static_cast<std::uint64_t>(reader.index.firstVideoChunk);
    std::array<std::uint8_t, kChunkHeader> header;
    if (const Result result = reader.read(chunk, header); result != kOk) {
        return result;
    }
    const std::uint32_t size = le32(&header[4]);
    if (!canAllocate(size)) {
        return kOutOfMemory;
    }
    // The payload is looked through in windows; beyond the file's end it would be zeros, which
    // hold no start code.
    const std::uint64_t start = chunk + kChunkHeader;
    const std::uint64_t end = std::min(start + size, std::max(reader.end, start));
    const std::uint32_t codec = reader.header.video.format.compression;
    bool read = true;
    if (codec == fourCc("H264") || codec == fourCc("h264")) {
        constexpr std::uint32_t kMargin = 9;  // a set in the last bytes is not looked for
        if (size >= kMargin) {
            read = findAspectInH264(reader.file, start, end, start + size - kMargin, aspect);
        }
    } else if (size >= 8) {
        read = FindAspectInVol(reader.file, start, end, aspect);
    }
    return read ? kOk : kFail;
}

void fillRecord(const AviReader& reader, const PixelAspect& aspect, MediaRecord& record) {
    const AviHeader& header = reader.header;
    const std::uint64_t frames = reader.index.frameCount;
    const std::uint64_t duration = header.microSecPerFrame * frames * 10;  // 100 ns
    const std::uint64_t milliseconds = duration / 10000;
    record.status = kOk;
    record.containerType = kContainerAvi;
    record.durationSeconds = saturateToU32(milliseconds / 1000);
    if (frames != 0) {
        record.frameTimeMicroseconds = saturateToU32(duration / 10 / frames);
    }
    if (milliseconds != 0) {
        // Required: 32 bits of byte total times 8, divided before it is multiplied.
        const std::uint32_t bits = reader.index.videoBytes * 8;
        record.videoBitRate = saturateToU32(bits / milliseconds * 1000);
    }
    const WaveFormat& audio = header.audio[0].format;
    record.audioFormatTag = audio.formatTag;
    record.audioBitRate = saturateToU32(std::uint64_t{audio.avgBytesPerSec} * 8);
    record.audioSampleRate = audio.samplesPerSec;
    record.audioChannels = audio.channels;
    record.videoFourCC = header.video.format.compression;
    record.videoWidth = header.video.format.width;
    record.videoHeight = header.video.format.height;
    // Required: the vertical term, in the field of the horizontal one.
    record.pixelAspectX = aspect.vertical;
}

}  // namespace

bool AviReader::canSeek(std::uint64_t offset) {
    constexpr std::uint64_t kInvalid = 0xFFFFFFFF;
    return (offset & kInvalid) != kInvalid && offset <= INT64_MAX;
}

Result AviReader::read(std::uint64_t offset, std::span<std::uint8_t> out) const {
    std::span<const std::uint8_t> got;
    if (!canSeek(offset) || (offset < end && !file.view(offset, out.size(), got))) {
        return kFail;
    }
    std::fill(std::ranges::copy(got, out.begin()).out, out.end(), std::uint8_t{0});
    return kOk;
}

Result AviReader::readAside(std::uint64_t offset, std::span<std::uint8_t> out) {
    std::size_t got = 0;
    if (!canSeek(offset)) {
        return kFail;
    }
    if (offset < end && (!aside.take(out.size()) || !file.readAside(offset, out, got))) {
        return kFail;
    }
    std::fill(out.begin() + static_cast<std::ptrdiff_t>(got), out.end(), std::uint8_t{0});
    return kOk;
}

Result ReadAviHeaders(AviReader& reader) {
    unsigned zeroHeaders = 0;
    reader.position = kFirstChunk;
    while (reader.position + kChunkHeader < reader.end) {
        std::array<std::uint8_t, kChunkHeader> header;
        Result result = reader.read(reader.position, header);
        if (result != kOk) {
            return result;
        }
        const std::uint32_t id = be32(&header[0]);
        const std::uint32_t size = le32(&header[4]);
        reader.position += kChunkHeader;
        switch (id) {
            case fourCc("JUNK"):
            case fourCc("RIFF"):  // an AVIX extension
                zeroHeaders = 0;
                reader.position += size;
                break;
            case fourCc("LIST"):
                zeroHeaders = 0;
                result = readList(reader, size);
                reader.position += size;
                break;
            case fourCc("idx1"):
                zeroHeaders = 0;
                if (!reader.hasIndex) {
                    reader.header.superIndexSeen = false;
                    result = ReadIdx1(reader, reader.position, size);
                }
                reader.position += size;
                break;
            default:
                if (size != 0) {
                    diagnose("ERROR: Unknown Chunk ID =%08X \n", id);
                    reader.position += size;
                    break;
                }
                // Lost: one byte further, until chunks are met again.
                reader.position += 1;
                if (id == 0 && ++zeroHeaders > kZeroHeaders) {
                    result = kFail;
                }
        }
        if (result != kOk) {
            return result;
        }
    }
    return kOk;
}

Result parseAvi(ReadWindow& file, std::uint64_t fileSize, MediaRecord& record) {
    AviReader reader(file, fileSize);
    if (const Result result = ReadAviHeaders(reader); result != kOk) {
        return result;
    }
    PixelAspect aspect;
    if (const Result result = findPixelAspect(reader, aspect); result != kOk) {
        return result;
    }
    fillRecord(reader, aspect, record);
    return kOk;
}

}  // namespace probe
