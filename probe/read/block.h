// Sizes that a file declares. Two questions: whether the unit could give a block of that size at
// all, and whether the file could fill it. Nothing here allocates.
#pragma once

#include <cstdint>

namespace probe {

// Whether a block of `bytes` could be had: it is smaller than the 1 GiB that a process of Windows
// CE 6.0 has for its code and everything it allocates.
constexpr bool canAllocate(std::uint64_t bytes) {
    return bytes < std::uint64_t{1} << 30;
}

// Whether a file of `fileSize` bytes holds all of the `bytes` from `offset` on.
constexpr bool fileHolds(std::uint64_t fileSize, std::uint64_t offset, std::uint64_t bytes) {
    return offset <= fileSize && bytes <= fileSize - offset;
}

}  // namespace probe
