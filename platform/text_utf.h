// UTF-8 and UTF-16 beyond platform/text.h, for its implementations and for paths.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace platform {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kMalformed = 0x110000;  // beyond the last code point

// Decodes one code point at `position`, which has to lie within the text, and moves behind it.
// Malformed UTF-8 (RFC 3629) gives kMalformed for the longest prefix that could have become a
// character, as Unicode advises to replace it; so does half a surrogate pair.
char32_t nextCodePoint(std::string_view text, std::size_t& position);
char32_t nextCodePoint(std::u16string_view text, std::size_t& position);

// Encodes one code point and returns how many bytes or units it has. UTF-16 of kMalformed is
// U+FFFD.
std::size_t encodeUtf8(char32_t value, std::array<char, 4>& bytes);
std::size_t encodeUtf16(char32_t value, std::array<char16_t, 2>& units);

// As decodeText with CodePage::Utf8.
std::size_t decodeUtf8(std::string_view text, std::span<char16_t> out);

// What becomes of bytes that are no UTF-8: U+FFFD as everywhere, or each the code unit 0xDC00 +
// byte, which no text in UTF-16 has without another in front of it, and which goes back to its
// byte. Not for the player, as whole strings are not.
enum class Malformed : std::uint8_t { Replace, Keep };
std::string toUtf8(std::u16string_view text, Malformed malformed);
std::u16string toUtf16(std::string_view text, Malformed malformed);

}  // namespace platform
