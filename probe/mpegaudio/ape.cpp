#include "probe/mpegaudio/ape.h"

#include <span>

#include "probe/mpegaudio/ape_tag.h"
#include "probe/mpegaudio/id3.h"
#include "probe/read/byte_reader.h"
#include "probe/read/head.h"
#include "probe/record/diagnostics.h"
#include "probe/record/saturate.h"

// Monkey's Audio file headers. All numbers are little-endian; offsets are from the file's start.
//
// Before version 3980:                   From version 3980 on, a descriptor and a header:
//   0  4  "MAC "                           0  4  "MAC "
//   4  2  version                          4  2  version
//   6  2  compression level                6 46  rest of the descriptor
//   8  2  format flags                    52  2  compression level
//  10  2  channels                        54  2  format flags
//  12  4  sample rate                     56  4  blocks per frame
//  16  4  header bytes                    60  4  blocks in the final frame
//  20  4  terminating bytes               64  4  total frames
//  24  4  total frames                    68  2  bits per sample
//  28  4  blocks in the final frame       70  2  channels
//                                         72  4  sample rate
namespace probe {
namespace {

constexpr std::size_t kMinimumBytes = 256;
constexpr std::size_t kHeaderOffset = 4;
constexpr std::size_t kHeaderBytes = 100;

struct ApeHeader {
    std::uint32_t channels = 0;
    std::uint32_t sampleRate = 0;
    std::uint32_t blocksPerFrame = 0;
    std::uint32_t finalFrameBlocks = 0;
    std::uint32_t totalFrames = 0;
};

std::uint32_t blocksPerFrame(std::uint32_t version, std::uint32_t compressionLevel) {
    constexpr std::uint32_t kExtraHigh = 4000;
    if (version >= 3950) {
        return 0x48000;
    }
    if (version >= 3900 || (version >= 3800 && compressionLevel == kExtraHigh)) {
        return 0x12000;
    }
    return 9216;
}

// `bytes` begin at the version, four bytes into the file.
ApeHeader readApeHeader(std::span<const std::uint8_t> bytes) {
    const std::uint32_t version = le16(&bytes[0]);
    ApeHeader header;
    if (version < 3980) {
        header.channels = le16(&bytes[6]);
        header.sampleRate = le32(&bytes[8]);
        header.blocksPerFrame = blocksPerFrame(version, le16(&bytes[2]));
        header.totalFrames = le32(&bytes[20]);
        header.finalFrameBlocks = le32(&bytes[24]);
    } else {
        header.blocksPerFrame = le32(&bytes[52]);
        header.finalFrameBlocks = le32(&bytes[56]);
        header.totalFrames = le32(&bytes[60]);
        header.channels = le16(&bytes[66]);
        header.sampleRate = le32(&bytes[68]);
    }
    return header;
}

// Play time; 0 when the header gives none. The product wraps at 64 bits, which no real length
// comes near.
std::int64_t milliseconds(const ApeHeader& header) {
    if (header.totalFrames == 0 || header.sampleRate == 0) {
        return 0;
    }
    const std::uint64_t blocks =
        header.finalFrameBlocks + std::uint64_t{header.totalFrames - 1} * header.blocksPerFrame;
    const auto thousandfold = static_cast<std::int64_t>(blocks * 1000);
    return thousandfold / static_cast<std::int64_t>(header.sampleRate);
}

void fillAudio(const ApeHeader& header, std::uint64_t fileSize, MediaRecord& record) {
    const std::int64_t length = milliseconds(header);
    if (length > 0) {
        record.audioBitRate =
            saturateToU32(static_cast<double>(fileSize) / static_cast<double>(length) * 8000.0);
        record.durationSeconds = saturateToU32(static_cast<std::uint64_t>(length / 1000));
    }
    record.containerType = kContainerMonkeysAudio;
    record.audioFormatTag = kAudioMonkeysAudio;
    record.audioChannels = header.channels;
    record.audioSampleRate = header.sampleRate;
    record.videoFourCC = 0;
}

Result readTags(ReadWindow& file, std::uint64_t fileSize, MediaRecord& record) {
    std::span<const std::uint8_t> tail;
    if (!file.viewAll(fileSize - kId3v1Bytes, kId3v1Bytes, tail)) {
        return kFail;
    }
    if (beginsWith(tail, "TAG")) {
        readId3v1(tail.first<kId3v1Bytes>(), record);
        return kOk;
    }
    const auto footer = tail.last<kApeFooterBytes>();
    return beginsWith(footer, "APETAGEX") ? readApeTag(file, fileSize, footer, record) : kOk;
}

Result parseApe(ReadWindow& file, std::uint64_t fileSize, MediaRecord& record) {
    std::span<const std::uint8_t> bytes;
    if (!file.viewAll(kHeaderOffset, kHeaderBytes, bytes)) {
        return kFail;
    }
    fillAudio(readApeHeader(bytes), fileSize, record);
    return readTags(file, fileSize, record);
}

}  // namespace

int ApeRecognise(MediaRecord& record, ReadWindow& file) {
    Head head;
    if (const char* why = readHead(file, kMinimumBytes, kMinimumBytes, head)) {
        return decline(why);
    }
    if (!beginsWith(head.bytes, "MAC ")) {
        return decline("does not begin with MAC");
    }
    record.setFileSize(head.fileSize);
    record.status = parseApe(file, head.fileSize, record);
    return 1;
}

}  // namespace probe
