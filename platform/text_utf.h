// UTF-8 and UTF-16 beyond platform/text.h, for its implementations and for paths.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace platform {

// As decodeText with CodePage::Utf8.
std::size_t decodeUtf8(std::string_view text, std::span<char16_t> out);

// What becomes of bytes that are no UTF-8: U+FFFD as everywhere, or each the code unit 0xDC00 +
// byte, which no text in UTF-16 has without another in front of it, and which goes back to its
// byte.
enum class Malformed : std::uint8_t { Replace, Keep };
std::string toUtf8(std::u16string_view text, Malformed malformed);
std::u16string toUtf16(std::string_view text, Malformed malformed);

}  // namespace platform
