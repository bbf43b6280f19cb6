#include <array>

#include "platform/text.h"
#include "platform/text_utf.h"

namespace platform {
namespace {

// Windows-1252, 0x80 to 0x9F (WHATWG Encoding Standard, index windows-1252); every other byte is
// its own code point.
constexpr std::array<char16_t, 32> kWindows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

}  // namespace

std::size_t decodeText(CodePage codePage, std::span<const std::uint8_t> bytes,
                       std::span<char16_t> out) {
    if (codePage == CodePage::Utf8) {
        return decodeUtf8({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, out);
    }
    if (out.empty()) {
        return 0;
    }
    std::size_t written = 0;
    for (const std::uint8_t byte : bytes) {
        if (byte == 0 || written == out.size() - 1) {
            break;
        }
        out[written++] =
            byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80u] : static_cast<char16_t>(byte);
    }
    out[written] = u'\0';
    return written;
}

}  // namespace platform
