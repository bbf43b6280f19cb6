// What every recogniser does first: the size check and a look at the file's head.
#pragma once

#include <cstdint>
#include <span>

#include "probe/read/read_window.h"

namespace probe {

struct Head {
    std::span<const std::uint8_t> bytes;  // valid as long as the window
    std::uint64_t fileSize = 0;
};

// Tells the file's size, checks it against `minimum` bytes and shows the first `count` bytes (at
// most ReadWindow::kSmallest). Returns null when all went well, otherwise why the file is to be
// declined.
[[nodiscard]] const char* readHead(ReadWindow& file, std::uint64_t minimum, std::size_t count,
                                   Head& head);

// Whether `bytes` begin with the characters of `magic`, its terminator not counted.
template <std::size_t kSize>
bool beginsWith(std::span<const std::uint8_t> bytes, const char (&magic)[kSize]) {
    if (bytes.size() < kSize - 1) {
        return false;
    }
    for (std::size_t i = 0; i + 1 < kSize; ++i) {
        if (bytes[i] != static_cast<std::uint8_t>(magic[i])) {
            return false;
        }
    }
    return true;
}

}  // namespace probe
