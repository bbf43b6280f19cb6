#include "probe/riff/riff.h"

#include <algorithm>
#include <array>
#include <span>

#include "probe/read/byte_reader.h"
#include "probe/read/four_cc.h"
#include "probe/read/head.h"
#include "probe/record/diagnostics.h"
#include "probe/record/saturate.h"
#include "probe/riff/avi.h"

namespace probe {
namespace {

constexpr std::uint64_t kSmallestFile = 256;
constexpr std::size_t kFirstChunk = 12;       // behind "RIFF", the size and the form
constexpr std::size_t kWaveBytes = 2048;      // smallest WAVE, and what is looked at of it
constexpr std::size_t kFormatBytes = 26;      // of a "fmt " chunk, its header included
constexpr std::size_t kWavePositions = 2012;  // "fmt " may begin at file offsets 12 to 2,023

}  // namespace

// "fmt " chunk: 0 "fmt ", 4 size, 8 wFormatTag, 10 nChannels, 12 nSamplesPerSec,
// 16 nAvgBytesPerSec, 20 nBlockAlign, 22 wBitsPerSample, 24 cbSize.
Result ParseWave(ReadWindow& file, std::uint64_t fileSize, MediaRecord& record) {
    if (fileSize < kWaveBytes) {
        return kFail;
    }
    std::span<const std::uint8_t> bytes;
    if (!file.view(kFirstChunk, kWaveBytes, bytes)) {
        return kFail;
    }
    static constexpr std::uint8_t kFormat[] = {'f', 'm', 't', ' '};
    const auto searched = bytes.first(std::min(bytes.size(), kWavePositions + sizeof kFormat - 1));
    const auto chunk =
        std::search(searched.begin(), searched.end(), std::begin(kFormat), std::end(kFormat));
    if (chunk == searched.end()) {
        return kFail;
    }
    // The last bytes of a file may be missing: they are 0.
    std::array<std::uint8_t, kFormatBytes> format{};
    const auto held = bytes.subspan(static_cast<std::size_t>(chunk - searched.begin()));
    std::ranges::copy(held.first(std::min(held.size(), format.size())), format.begin());
    record.audioFormatTag = le16(&format[8]);
    record.audioChannels = le16(&format[10]);
    record.audioSampleRate = le32(&format[12]);
    record.audioBitRate = le32(&format[16]) * 8;  // 32 bits: it wraps before it divides
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
    Head head;
    if (const char* why = readHead(file, kSmallestFile, kFirstChunk, head)) {
        return decline(why);
    }
    if (!beginsWith(head.bytes, "RIFF")) {
        return decline("it does not begin with RIFF");
    }
    const std::uint32_t form = be32(&head.bytes[8]);
    if (form != fourCc("AVI ") && form != fourCc("WAVE")) {
        return decline("its RIFF form is neither AVI nor WAVE");
    }
    record.setFileSize(head.fileSize);
    if (form == fourCc("WAVE")) {
        return ParseWave(file, head.fileSize, record) == kOk
                   ? 1
                   : decline("WAVE below 2048 bytes or without a format chunk");
    }
    // Required: recognised by its first twelve bytes alone, however damaged the rest is.
    static_cast<void>(parseAvi(file, head.fileSize, record));
    return 1;
}

}  // namespace probe
