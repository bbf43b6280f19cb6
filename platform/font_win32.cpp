#include "platform/font.h"

#include <windows.h>

#include <string_view>

#include "platform/wide.h"

namespace platform {

FontHandle createFont(const FontDescription& description) {
    LOGFONTW font{};
    font.lfHeight = description.height;
    font.lfWeight = description.weight;
    font.lfCharSet = description.charSet;
    font.lfQuality = description.quality;
    std::u16string_view(description.face)
        .substr(0, LF_FACESIZE - 1)
        .copy(utf16(font.lfFaceName), LF_FACESIZE - 1);
    return CreateFontIndirectW(&font);
}

void deleteFont(FontHandle font) {
    DeleteObject(font);
}

}  // namespace platform
