// Conversions to the record's 32-bit numbers for values that come out of files and may be
// anything: what does not fit becomes the nearest value that does, as the unit's processor
// converts.
#pragma once

#include <cstdint>
#include <limits>

namespace probe {

constexpr std::uint32_t saturateToU32(std::uint64_t value) {
    constexpr std::uint32_t kHighest = std::numeric_limits<std::uint32_t>::max();
    return value < kHighest ? static_cast<std::uint32_t>(value) : kHighest;
}

// Truncates towards 0; negative values and NaN become 0.
constexpr std::uint32_t saturateToU32(double value) {
    constexpr double kLimit = 4294967296.0;
    if (!(value > 0.0)) {
        return 0;
    }
    return value < kLimit ? static_cast<std::uint32_t>(value)
                          : std::numeric_limits<std::uint32_t>::max();
}

}  // namespace probe
