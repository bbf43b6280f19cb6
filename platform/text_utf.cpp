// UTF-8 and UTF-16, the same on every platform.
#include <array>

#include "platform/text.h"
#include "platform/text_utf.h"

namespace platform {

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

namespace {

constexpr bool isHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool isLowSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

}  // namespace

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
