// Whole strings between UTF-8 and UTF-16. They ask for memory in the form that throws, which the
// player's program does not have: this is for the tools and for paths of the PC.
#include <array>

#include "platform/text.h"
#include "platform/text_utf.h"

namespace platform {
namespace {

constexpr char16_t kKeptByte = 0xDC00;  // plus the byte, 0x80 to 0xFF

void appendUtf8(std::string& out, char32_t value) {
    std::array<char, 4> bytes{};
    out.append(bytes.data(), encodeUtf8(value, bytes));
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

}  // namespace platform
