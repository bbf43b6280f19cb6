#include <windows.h>

#include <algorithm>
#include <array>

#include "platform/text.h"
#include "platform/text_utf.h"
#include "platform/wide.h"

namespace platform {
namespace {

// In a code page of the Far East a character has one byte or two. The bytes of `text` up to a zero
// byte, at most `most`, and never the first half of a character alone.
std::string_view wholeCharacters(std::string_view text, std::size_t most) {
    text = text.substr(0, text.find('\0'));
    std::size_t length = 0;
    while (length < text.size()) {
        const std::size_t bytes = IsDBCSLeadByte(static_cast<BYTE>(text[length])) != 0 ? 2 : 1;
        if (length + bytes > std::min(text.size(), most)) {
            break;
        }
        length += bytes;
    }
    return text.substr(0, length);
}

bool isHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

}  // namespace

std::size_t decodeText(CodePage codePage, std::span<const std::uint8_t> bytes,
                       std::span<char16_t> out) {
    const std::string_view all(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (codePage == CodePage::Utf8) {
        return decodeUtf8(all, out);
    }
    if (out.empty()) {
        return 0;
    }
    out[0] = u'\0';
    // Tag texts are short; what does not fit the record's 128 code units is not needed.
    std::array<wchar_t, 1024> buffer{};
    const std::string_view text = wholeCharacters(all, buffer.size());
    if (text.empty()) {
        return 0;
    }
    const int units =
        MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, text.data(), static_cast<int>(text.size()),
                            buffer.data(), static_cast<int>(buffer.size()));
    std::size_t written = std::min(static_cast<std::size_t>(std::max(units, 0)), out.size() - 1);
    std::copy_n(utf16(buffer.data()), written, out.begin());
    if (written > 0 && isHighSurrogate(out[written - 1])) {
        --written;  // its other half did not fit
    }
    out[written] = u'\0';
    return written;
}

}  // namespace platform
