// UTF-8 and UTF-16, the same on every platform.
#include <array>

#include "platform/text.h"
#include "platform/text_utf.h"

namespace platform {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kMalformed = 0x110000;  // beyond the last code point
constexpr char16_t kKeptByte = 0xDC00;     // plus the byte, 0x80 to 0xFF

// Decodes one code point of UTF-8 (RFC 3629) at `position` and moves behind it; malformed input
// gives kMalformed for the longest prefix that could have become a character, as Unicode advises to
// replace it.
char32_t nextCodePoint(std::string_view text, std::size_t& position) {
    const auto lead = static_cast<unsigned char>(text[position++]);
    if (lead < 0x80) {
        return lead;
    }
    std::size_t trailing = 0;
    char32_t value = 0;
    unsigned char lowest = 0x80, highest = 0xBF;  // allowed range of the next byte
    if (lead >= 0xC2 && lead <= 0xDF) {
        trailing = 1;
        value = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        trailing = 2;
        value = lead & 0x0F;
        lowest = lead == 0xE0 ? 0xA0 : 0x80;
        highest = lead == 0xED ? 0x9F : 0xBF;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        trailing = 3;
        value = lead & 0x07;
        lowest = lead == 0xF0 ? 0x90 : 0x80;
        highest = lead == 0xF4 ? 0x8F : 0xBF;
    } else {
        return kMalformed;
    }
    for (; trailing > 0; --trailing) {
        if (position >= text.size()) {
            return kMalformed;
        }
        const auto byte = static_cast<unsigned char>(text[position]);
        if (byte < lowest || byte > highest) {
            return kMalformed;
        }
        value = (value << 6) | (byte & 0x3F);
        lowest = 0x80;
        highest = 0xBF;
        ++position;
    }
    return value;
}

// 1 to 4 bytes.
std::size_t encodeUtf8(char32_t value, std::array<char, 4>& bytes) {
    const auto trailing = [value](int shift) {
        return static_cast<char>(0x80 | ((value >> shift) & 0x3F));
    };
    if (value < 0x80) {
        bytes = {static_cast<char>(value)};
        return 1;
    }
    if (value < 0x800) {
        bytes = {static_cast<char>(0xC0 | (value >> 6)), trailing(0)};
        return 2;
    }
    if (value < 0x10000) {
        bytes = {static_cast<char>(0xE0 | (value >> 12)), trailing(6), trailing(0)};
        return 3;
    }
    bytes = {static_cast<char>(0xF0 | (value >> 18)), trailing(12), trailing(6), trailing(0)};
    return 4;
}

void appendUtf8(std::string& out, char32_t value) {
    std::array<char, 4> bytes{};
    out.append(bytes.data(), encodeUtf8(value, bytes));
}

constexpr bool isHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool isLowSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// The code point at `position`, which moves behind it; half a pair alone is kMalformed.
char32_t nextCodePoint(std::u16string_view text, std::size_t& position) {
    const char16_t unit = text[position++];
    if (!isHighSurrogate(unit) && !isLowSurrogate(unit)) {
        return unit;
    }
    if (isLowSurrogate(unit) || position == text.size() || !isLowSurrogate(text[position])) {
        return kMalformed;
    }
    return 0x10000u + ((static_cast<char32_t>(unit) - 0xD800u) << 10) +
           (static_cast<char32_t>(text[position++]) - 0xDC00u);
}

std::size_t encodeUtf16(char32_t value, std::array<char16_t, 2>& units) {
    if (value == kMalformed) {
        value = kReplacement;
    }
    if (value < 0x10000) {
        units[0] = static_cast<char16_t>(value);
        return 1;
    }
    units[0] = static_cast<char16_t>(0xD800 + ((value - 0x10000) >> 10));
    units[1] = static_cast<char16_t>(0xDC00 + ((value - 0x10000) & 0x3FF));
    return 2;
}

}  // namespace

std::string toUtf8(std::u16string_view text, Malformed malformed) {
    std::string out(text.size(), '\0');
    std::size_t ascii = 0;  // most names are nothing else
    for (; ascii < text.size() && text[ascii] < 0x80; ++ascii) {
        out[ascii] = static_cast<char>(text[ascii]);
    }
    out.resize(ascii);
    for (std::size_t position = ascii; position < text.size();) {
        const char16_t unit = text[position];
        const char32_t value = nextCodePoint(text, position);
        if (value == kMalformed && malformed == Malformed::Keep && unit >= kKeptByte + 0x80 &&
            unit <= kKeptByte + 0xFF) {
            out += static_cast<char>(unit - kKeptByte);
        } else {
            appendUtf8(out, value == kMalformed ? kReplacement : value);
        }
    }
    return out;
}

std::u16string toUtf16(std::string_view text, Malformed malformed) {
    std::u16string out;
    out.reserve(text.size());
    std::array<char16_t, 2> units{};
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t start = position;
        const char32_t value = nextCodePoint(text, position);
        if (value == kMalformed && malformed == Malformed::Keep) {
            for (const char byte : text.substr(start, position - start)) {
                out += static_cast<char16_t>(kKeptByte + static_cast<unsigned char>(byte));
            }
        } else {
            out.append(units.data(), encodeUtf16(value, units));
        }
    }
    return out;
}

std::string toUtf8(std::u16string_view text) {
    return toUtf8(text, Malformed::Replace);
}

std::u16string toUtf16(std::string_view text) {
    return toUtf16(text, Malformed::Replace);
}

std::size_t encodeUtf8(std::u16string_view text, std::span<char> out) {
    if (out.empty()) {
        return 0;
    }
    std::size_t written = 0;
    std::array<char, 4> bytes{};
    for (std::size_t position = 0; position < text.size();) {
        const char32_t value = nextCodePoint(text, position);
        const std::size_t count = encodeUtf8(value == kMalformed ? kReplacement : value, bytes);
        if (written + count > out.size() - 1) {
            break;
        }
        for (std::size_t i = 0; i < count; ++i) {
            out[written++] = bytes[i];
        }
    }
    out[written] = '\0';
    return written;
}

std::size_t decodeUtf8(std::string_view text, std::span<char16_t> out) {
    if (out.empty()) {
        return 0;
    }
    std::size_t written = 0;
    std::array<char16_t, 2> units{};
    for (std::size_t position = 0; position < text.size() && text[position] != '\0';) {
        const std::size_t count = encodeUtf16(nextCodePoint(text, position), units);
        if (written + count > out.size() - 1) {
            break;
        }
        for (std::size_t i = 0; i < count; ++i) {
            out[written++] = units[i];
        }
    }
    out[written] = u'\0';
    return written;
}

}  // namespace platform
