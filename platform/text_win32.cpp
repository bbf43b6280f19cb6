#include <windows.h>

#include <algorithm>
#include <array>

#include "platform/text.h"
#include "platform/text_utf.h"
#include "platform/wide.h"

namespace platform {

std::size_t decodeText(CodePage codePage, std::span<const std::uint8_t> bytes,
                       std::span<char16_t> out) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (codePage == CodePage::Utf8) {
        return decodeUtf8(text, out);
    }
    if (out.empty()) {
        return 0;
    }
    out[0] = u'\0';
    // Tag texts are short; what does not fit the record's 128 code units is not needed.
    std::array<wchar_t, 1024> buffer{};
    const std::size_t length = std::min({text.find('\0'), text.size(), buffer.size()});
    if (length == 0) {
        return 0;
    }
    const int units =
        MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, text.data(), static_cast<int>(length),
                            buffer.data(), static_cast<int>(buffer.size()));
    const std::size_t written =
        std::min(static_cast<std::size_t>(std::max(units, 0)), out.size() - 1);
    std::copy_n(utf16(buffer.data()), written, out.begin());
    out[written] = u'\0';
    return written;
}

}  // namespace platform
