// Four-character codes as 32-bit numbers, first character in the most significant byte
// ("ftyp" is 0x66747970).
#pragma once

#include <cstdint>

namespace probe {

consteval std::uint32_t fourCc(const char (&code)[5]) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) {
        value = (value << 8) | static_cast<std::uint8_t>(code[i]);
    }
    return value;
}

}  // namespace probe
