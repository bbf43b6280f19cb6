#include "probe/mpegaudio/flac.h"

#include <span>

#include "probe/mpegaudio/id3.h"
#include "probe/read/byte_reader.h"
#include "probe/read/head.h"
#include "probe/record/diagnostics.h"
#include "probe/record/saturate.h"

// FLAC (RFC 9639, sections 6 and 8). All numbers are big-endian; offsets are from "fLaC".
//
//   0   4  "fLaC"
//   4   1  last block (1 bit), block type (7 bits): 0, stream information
//   5   3  block length: 34
//   8   4  smallest and largest block, in samples
//  12   6  smallest and largest frame, in bytes
//  18   8  sample rate (20 bits), channels - 1 (3), bits per sample - 1 (5), samples (36)
//  26  16  MD5 of the samples
namespace probe {
namespace {

constexpr std::size_t kHeadBytes = 256;
constexpr std::size_t kStreamInfo = 8, kStreamInfoBytes = 34;
constexpr std::size_t kBlockHeaderBytes = 4;
constexpr std::uint8_t kLastBlock = 0x80;

// Real files have a handful; the walk is only for the bit rate.
constexpr int kMostBlocks = 64;

// Where the frames begin: behind the last metadata block. When the blocks lead nowhere, the end
// of the stream information.
std::uint64_t findFrames(ReadWindow& file, std::uint64_t start, std::uint64_t fileSize) {
    std::uint64_t at = start + 4;
    for (int i = 0; i < kMostBlocks; ++i) {
        std::span<const std::uint8_t> header;
        if (!file.viewAll(at, kBlockHeaderBytes, header)) {
            break;
        }
        at += kBlockHeaderBytes + be24(&header[1]);
        if (at > fileSize) {
            break;
        }
        if ((header[0] & kLastBlock) != 0) {
            return at;
        }
    }
    return start + kStreamInfo + kStreamInfoBytes;
}

// `head` begins with "fLaC" at file offset `start`.
Result parseFlac(ReadWindow& file, std::uint64_t start, std::uint64_t fileSize,
                 std::span<const std::uint8_t> head, MediaRecord& record) {
    record.containerType = kContainerFlac;
    record.audioFormatTag = kAudioFlac;
    record.videoFourCC = 0;
    if ((head[4] & ~kLastBlock) != 0 || be24(&head[5]) < kStreamInfoBytes) {
        return kFail;
    }
    const std::uint64_t fields = be64(&head[18]);
    const auto sampleRate = static_cast<std::uint32_t>(fields >> 44);
    const std::uint64_t samples = fields & 0xFFFFFFFFFu;
    record.audioSampleRate = sampleRate;
    record.audioChannels = static_cast<std::uint32_t>((fields >> 41) & 7u) + 1;
    if (sampleRate == 0 || samples == 0) {  // 0 samples: the encoder did not know
        return kOk;
    }
    const std::uint64_t milliseconds = samples * 1000 / sampleRate;
    record.durationSeconds = saturateToU32(milliseconds / 1000);
    const std::uint64_t frameBytes = fileSize - findFrames(file, start, fileSize);
    record.audioBitRate =
        saturateToU32(static_cast<double>(frameBytes) * 8.0 * static_cast<double>(sampleRate) /
                      static_cast<double>(samples));
    return kOk;
}

}  // namespace

int FlacRecognise(MediaRecord& record, ReadWindow& file) {
    Head head;
    if (const char* why = readHead(file, kHeadBytes, kHeadBytes, head)) {
        return decline(why);
    }
    std::uint64_t start = 0;
    if (beginsWith(head.bytes, "ID3")) {
        start = id3TagSize(head.bytes) + kId3HeaderBytes;
        if (!file.viewAll(start, kHeadBytes, head.bytes)) {
            return decline("fewer than 256 bytes follow its ID3 tag");
        }
    }
    if (!beginsWith(head.bytes, "fLaC")) {
        return decline(start == 0 ? "does not begin with fLaC" : "no fLaC behind its ID3 tag");
    }
    record.setFileSize(head.fileSize);
    record.status = parseFlac(file, start, head.fileSize, head.bytes, record);
    return 1;
}

}  // namespace probe
