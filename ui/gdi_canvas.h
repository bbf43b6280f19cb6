// The canvas over two memory device contexts: one holds the back buffer, the other the bitmap that
// is drawn from. Windows only.
#pragma once

#include <windows.h>

#include <span>

#include "ui/canvas.h"
#include "ui/screen_state.h"

namespace ui {

class GdiCanvas : public Canvas {
public:
    // All four must outlive the canvas. `damaged` is what the window will show of the drawing;
    // nothing outside of it is changed. A context that is null turns everything into nothing.
    GdiCanvas(HDC target, HDC source, const ScreenState& screens, std::span<const HFONT> fonts,
              const Rect& damaged);
    ~GdiCanvas() override;
    GdiCanvas(const GdiCanvas&) = delete;
    GdiCanvas& operator=(const GdiCanvas&) = delete;

    [[nodiscard]] bool covers(Bitmap bitmap, const Rect& area) const override;
    void draw(Bitmap bitmap, Point at) override;
    void drawRegion(Bitmap bitmap, const Rect& area) override;
    void drawInto(Bitmap bitmap, const Rect& area) override;
    void drawTransparent(Bitmap bitmap, Point at) override;
    void drawTransparentInto(Bitmap bitmap, const Rect& area) override;
    void fill(const Rect& area, Colour colour) override;
    void text(const char16_t* text, Font font, Colour colour, const Rect& area,
              TextPlace place) override;
    [[nodiscard]] std::int32_t textWidth(const char16_t* text, Font font) override;

private:
    [[nodiscard]] HBITMAP handleOf(Bitmap bitmap) const;
    // Selects the bitmap as the source when its place meets the damage.
    bool select(Bitmap bitmap, Point at, SIZE& size);
    void copy(Bitmap bitmap, const Rect& area, Point from);
    HFONT fontOf(Font font) const;

    HDC target_, source_;
    const ScreenState& screens_;
    std::span<const HFONT> fonts_;
    Rect damaged_;
    HGDIOBJ firstBitmap_ = nullptr;  // what stood in the source context before
    HGDIOBJ firstFont_ = nullptr;
};

}  // namespace ui
