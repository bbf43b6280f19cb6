// Pack headers of MPEG system and program streams (ISO/IEC 11172-1 section 2.4.3.2, ISO/IEC
// 13818-1 section 2.5.3.3) and the search for start codes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace probe {

// The byte behind 00 00 01.
constexpr std::uint8_t kProgramEnd = 0xB9;  // the lowest code of the system layer
constexpr std::uint8_t kPackStart = 0xBA;
constexpr std::uint8_t kSystemHeaderStart = 0xBB;

constexpr std::size_t kStartCodeBytes = 4;
constexpr std::size_t kPackClockBytes = 6;  // what packClock looks at, behind the start code

constexpr std::int64_t kNoClock = -1;

struct PackClock {
    std::int64_t time = kNoClock;  // system clock reference, units of 100 ns; kNoClock: damaged
    bool isMpeg1 = false;          // what the header's first bits say, damaged or not
};

// Reads the clock from the bytes behind a pack start code.
PackClock packClock(std::span<const std::uint8_t, kPackClockBytes> bytes);

// Prints the line of a clock that could not be read.
void diagnoseDamaged(const PackClock& clock);

// Index of the first 00 00 01 followed by a byte from `lowest` to `highest`; bytes.size() when
// there is none.
std::size_t findStartCode(std::span<const std::uint8_t> bytes, std::uint8_t lowest,
                          std::uint8_t highest);

}  // namespace probe
