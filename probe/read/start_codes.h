// Looking for start codes (00 00 01 and a code byte) in a stretch of a file, in windows.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>

#include "probe/read/read_window.h"

namespace probe {

// Calls `visit(position, rest)` for every start code that lies wholly in [start, end) of the file;
// `rest` begins behind the three prefix bytes and shows at least 32 bytes where the stretch holds
// them. The search ends when `visit` returns false. False when a read failed.
template <typename Visitor>
[[nodiscard]] bool forEachStartCode(ReadWindow& file, std::uint64_t start, std::uint64_t end,
                                    Visitor&& visit) {
    constexpr std::size_t kOverlap = 3 + 32;
    while (start < end) {
        std::span<const std::uint8_t> bytes;
        const std::uint64_t left = end - start;
        const auto most =
            static_cast<std::size_t>(std::min<std::uint64_t>(left, ReadWindow::kLargest));
        const std::size_t least = std::min(most, 2 * kOverlap);
        if (!file.view(start, least, most, bytes)) {
            return false;
        }
        const bool last = bytes.size() == left || bytes.size() < least;
        // The prefix's third byte is looked for; it is rarer than the zeros before it.
        const std::size_t stop = last ? bytes.size() : bytes.size() - kOverlap + 3;
        std::size_t at = 2;
        while (at + 1 < bytes.size() && at < stop) {
            const void* found = std::memchr(&bytes[at], 1, stop - at);
            if (!found) {
                break;
            }
            at = static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - bytes.data());
            if (bytes[at - 1] == 0 && bytes[at - 2] == 0 && at + 1 < bytes.size() &&
                !visit(start + at - 2, bytes.subspan(at + 1))) {
                return true;
            }
            ++at;
        }
        if (last) {
            break;
        }
        start += bytes.size() - kOverlap + 1;
    }
    return true;
}

}  // namespace probe
