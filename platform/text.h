// Conversions between 8-bit text and UTF-16.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace platform {

enum class CodePage {
    System,  // code page 0: the unit's own (natively: Windows-1252)
    Utf8,    // code page 65001
};

// Converts `bytes` up to the first zero byte into `out`, which is always zero-terminated and is
// cut at out.size() - 1 code units, never inside a surrogate pair. Malformed UTF-8 gives U+FFFD.
// Returns the number of code units written, the terminator not counted.
std::size_t decodeText(CodePage codePage, std::span<const std::uint8_t> bytes,
                       std::span<char16_t> out);

// The same to UTF-8 without allocating: zero-terminated, cut at out.size() - 1 bytes, never inside
// a character.
std::size_t encodeUtf8(std::u16string_view text, std::span<char> out);

// Whole strings between UTF-8 and UTF-16; malformed input gives U+FFFD. For tools and tests: the
// player's program has no memory that throws.
std::string toUtf8(std::u16string_view text);
std::u16string toUtf16(std::string_view text);

}  // namespace platform
