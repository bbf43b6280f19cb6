#include "probe/riff/riff.h"

#include <algorithm>
#include <array>
#include <span>

#include "probe/read/byte_reader.h"
#include "probe/read/four_cc.h"
#include "probe/record/diagnostics.h"
#include "probe/record/saturate.h"
#include "probe/riff/avi.h"

namespace probe {
namespace {

constexpr std::size_t kHeadBytes = 256;
constexpr std::uint64_t kFirstChunk = 12;     // behind "RIFF", the size and the form
constexpr std::uint64_t kWaveBytes = 2048;    // smallest WAVE, and what is searched of it
constexpr std::size_t kWavePositions = 2012;  // "fmt " may begin at file offsets 12 to 2,023

}  // namespace

// "fmt " chunk: 0 "fmt ", 4 size, 8 wFormatTag, 10 nChannels, 12 nSamplesPerSec,
// 16 nAvgBytesPerSec, 20 nBlockAlign, 22 wBitsPerSample, 24 cbSize.
Result ParseWave(ReadWindow& file, std::uint64_t fileSize, MediaRecord& record) {
    if (fileSize < kWaveBytes) {
        return kFail;
    }
    std::array<std::uint8_t, kWaveBytes> bytes = {};
    std::size_t read = 0;  // up to 12 bytes may be missing: they are 0
    if (!file.readUpTo(kFirstChunk, bytes, read)) {
        return kFail;
    }
    static constexpr std::uint8_t kFormat[] = {'f', 'm', 't', ' '};
    const auto end = bytes.begin() + kWavePositions + sizeof kFormat - 1;
    const auto chunk = std::search(bytes.begin(), end, std::begin(kFormat), std::end(kFormat));
    if (chunk == end) {
        return kFail;
    }
    const std::uint8_t* format = &*chunk + 8;
    record.audioFormatTag = le16(format);
    record.audioSampleRate = le32(format + 4);
    record.audioChannels = le16(format + 2);
    record.audioBitRate = le32(format + 8) * 8;  // 32 bits: it wraps before it divides
    if (record.audioBitRate != 0) {
        // Required: of the whole file, not of the "data" chunk.
        record.durationSeconds = saturateToU32(fileSize * 8 / record.audioBitRate);
    }
    record.containerType = kContainerWave;
    record.status = kOk;
    record.videoFourCC = 0;
    return kOk;
}

int RiffRecognise(MediaRecord& record, ReadWindow& file) {
    std::uint64_t size = 0;
    std::span<const std::uint8_t> head;
    if (!file.size(size)) {
        return decline("its size cannot be told");
    }
    if (size < kHeadBytes) {
        return decline("it is smaller than 256 bytes");
    }
    if (!file.view(0, kHeadBytes, head)) {
        return decline("its first 256 bytes cannot be read");
    }
    // In this family bytes that could not be read are 0, which no letter is.
    if (head.size() < kFirstChunk || be32(&head[0]) != fourCc("RIFF")) {
        return decline("it does not begin with RIFF");
    }
    const std::uint32_t form = be32(&head[8]);
    if (form != fourCc("AVI ") && form != fourCc("WAVE")) {
        return decline("its RIFF form is neither AVI nor WAVE");
    }
    record.fileSizeHigh = 0;
    record.fileSize = static_cast<std::uint32_t>(size);
    if (form == fourCc("WAVE")) {
        return ParseWave(file, size, record) == kOk
                   ? 1
                   : decline("WAVE below 2048 bytes or without a format chunk");
    }
    // Required: recognised by its first twelve bytes alone, however damaged the rest is.
    static_cast<void>(parseAvi(file, size, record));
    return 1;
}

}  // namespace probe
