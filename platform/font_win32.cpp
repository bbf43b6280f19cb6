#include "platform/font.h"

#include <windows.h>

#include <cwchar>

#include "platform/wide.h"

namespace platform {

FontHandle createFont(const FontDescription& description) {
    LOGFONTW font{};
    font.lfHeight = description.height;
    font.lfWeight = description.weight;
    font.lfCharSet = description.charSet;
    font.lfQuality = description.quality;
    std::wcsncpy(font.lfFaceName, wide(description.face), LF_FACESIZE - 1);
    return CreateFontIndirectW(&font);
}

void deleteFont(FontHandle font) {
    DeleteObject(font);
}

}  // namespace platform
