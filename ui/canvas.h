// What a screen is drawn with. Everything drawn from a bitmap that is missing is left out.
#pragma once

#include <cstdint>

#include "ui/rect.h"
#include "ui/skin_slots.h"

namespace ui {

// 0x00bbggrr, as GDI has it.
using Colour = std::uint32_t;

inline constexpr Colour kBlack = 0x000000;
inline constexpr Colour kWhite = 0xFFFFFF;
// The video layer shows through it. The same read as 0x00rrggbb, as the graph takes it.
inline constexpr Colour kVideoKey = 0xF800F8;
inline constexpr Colour kTransparent = 0xFF00FF;  // left out of keyed bitmaps

// The four fonts of the window, by their places in AppState::fonts.
enum class Font : std::int32_t { Height18, Height25, Height24, Height16 };

// How a text stands in its rectangle. The values are those of DrawText.
enum TextPlace : std::uint32_t {
    kCentredText = 0x1 | 0x4,  // in both directions
    kBottomText = 0x8,
    kMiddleWithEllipsis = 0x8000 | 0x4,  // vertically centred, cut with an ellipsis
};

class Canvas {
public:
    virtual ~Canvas() = default;

    // Whether the bitmap was loaded and reaches over all of `area`.
    [[nodiscard]] virtual bool covers(Bitmap bitmap, const Rect& area) const = 0;

    // The whole bitmap at a point.
    virtual void draw(Bitmap bitmap, Point at) = 0;
    // The part of the bitmap under `area`, to the same place.
    virtual void drawRegion(Bitmap bitmap, const Rect& area) = 0;
    // The top left part of the bitmap, as large as `area`, into it.
    virtual void drawInto(Bitmap bitmap, const Rect& area) = 0;
    // The whole bitmap without its pixels of colour kTransparent.
    virtual void drawTransparent(Bitmap bitmap, Point at) = 0;
    // The top left part of it, as large as `area`, into it, without those pixels.
    virtual void drawTransparentInto(Bitmap bitmap, const Rect& area) = 0;

    virtual void fill(const Rect& area, Colour colour) = 0;
    // One line, over whatever is there.
    virtual void text(const char16_t* text, Font font, Colour colour, const Rect& area,
                      TextPlace place) = 0;
    // Width of one line in pixels.
    [[nodiscard]] virtual std::int32_t textWidth(const char16_t* text, Font font) = 0;
};

}  // namespace ui
