// Memory for the blocks whose size a file declares. A declared size is believed only as far as
// the file could fill it: a larger one counts as a failed allocation, at once and without memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "probe/read/read_window.h"
#include "probe/record/result.h"

namespace probe {

struct Block {
    std::unique_ptr<std::uint8_t[]> bytes;
    std::size_t size = 0;

    std::span<const std::uint8_t> view() const { return {bytes.get(), size}; }
};

// Whether a block of `size` bytes may be asked for at all: it is below 2 GiB and exceeds not both
// 1 MiB and the size of the file.
inline bool blockFits(std::uint64_t size, std::uint64_t fileSize) {
    constexpr std::uint64_t kAlwaysGranted = 1u << 20;
    constexpr std::uint64_t kNeverGranted = 1u << 31;
    return size < kNeverGranted && (size <= kAlwaysGranted || size <= fileSize);
}

// Reads `size` bytes at `offset` into a new block: kOutOfMemory when it cannot be had, kFail when
// the file does not hold the bytes or a read fails (nothing is allocated for bytes that the file
// does not hold).
[[nodiscard]] Result readBlock(ReadWindow& file, std::uint64_t offset, std::uint64_t size,
                               Block& block);

}  // namespace probe
