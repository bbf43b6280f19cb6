// The fonts of the window.
#pragma once

#include <cstdint>

// The system's own handle type, as its header declares it.
struct HFONT__;

namespace platform {

using FontHandle = HFONT__*;

struct FontDescription {
    std::int32_t height;   // as LOGFONT has it: positive, of the cell, in pixels
    std::int32_t weight;   // 700 bold
    std::uint8_t charSet;  // 1 the unit's own
    std::uint8_t quality;  // 5 smoothed for the display
    const char16_t* face;  // at most 31 characters
};

// Output and clip precision, pitch and family are 0. Null when the font cannot be made.
[[nodiscard]] FontHandle createFont(const FontDescription& description);
void deleteFont(FontHandle font);

}  // namespace platform
