// The header of an ASF file (Advanced Systems Format Specification 1.20.03, sections 3 and 4):
// what it tells about one audio stream, one video stream and the texts.
#pragma once

#include <array>
#include <cstdint>

#include "probe/read/read_window.h"
#include "probe/record/media_record.h"

namespace probe {

constexpr std::uint32_t kAsfStreams = 128;   // stream numbers are seven bits
constexpr std::uint32_t kAsfNoStream = 128;  // above every number

// A text of the header: UTF-16, with the length that the file gives it, which may exceed what is
// kept of it.
struct AsfText {
    std::uint32_t lengthBytes = 0;
    std::array<char16_t, kTextLength> text{};  // zero-terminated
};

struct AsfWaveFormat {  // WAVEFORMATEX
    std::uint16_t wFormatTag = 0;
    std::uint16_t nChannels = 0;
    std::uint32_t nSamplesPerSec = 0;
    std::uint32_t nAvgBytesPerSec = 0;
    std::uint16_t nBlockAlign = 0;
    std::uint16_t wBitsPerSample = 0;
    std::uint16_t cbSize = 0;
};

struct AsfBitmapInfo {  // BITMAPINFOHEADER
    std::uint32_t biSize = 0;
    std::uint32_t biWidth = 0;
    std::uint32_t biHeight = 0;
    std::uint16_t biPlanes = 0;
    std::uint16_t biBitCount = 0;
    std::uint32_t biCompression = 0;  // first character in the most significant byte
    std::uint32_t biSizeImage = 0;
    std::uint32_t biXPelsPerMeter = 0;
    std::uint32_t biYPelsPerMeter = 0;
    std::uint32_t biClrUsed = 0;
    std::uint32_t biClrImportant = 0;
};

struct AsfStreamTiming {             // of the Extended Stream Properties Object
    std::uint64_t timePerFrame = 0;  // average, units of 100 ns
    std::uint32_t dataBitRate = 0;   // bits per second
};

struct AsfReader {
    ReadWindow& file;
    std::uint64_t fileSize = 0;
    std::uint32_t headerSize = 0;  // bytes from the file's start
    std::uint32_t stepsLeft = 0;   // objects and attributes that the walk may still look at

    std::uint32_t audioStream = kAsfNoStream;
    AsfWaveFormat audio{};
    std::uint32_t videoStream = kAsfNoStream;
    AsfBitmapInfo video{};
    std::uint32_t durationSeconds = 0;
    std::uint32_t frameTimeMicroseconds = 0;
    std::uint32_t videoBitRate = 0;
    AsfText title{}, artist{}, track{}, album{}, genre{}, composer{}, year{};
    std::array<AsfStreamTiming, kAsfStreams> timing{};
};

// Takes one step of the walk: false when all are used up. Objects may lie inside each other, so
// that a hostile header could be walked without end; one whose objects and attributes lie side
// by side never uses up its steps.
[[nodiscard]] bool takeAsfStep(AsfReader& reader);

// Walks the objects of the header, which the file is known to be long enough for. A step that
// would pass the header's end ends the walk; what was read up to there is kept. Returns kOk,
// kFail when a read fails, or kOutOfMemory for a header of 1 GiB and more.
[[nodiscard]] Result AsfReadHeader(AsfReader& reader);

}  // namespace probe
