#include "ui/window_painter.h"

#include <windows.h>

#include "ui/gdi_canvas.h"

namespace ui {

namespace {

void drawInto(HDC target, HDC source, const ScreenState& screens,
              std::span<const platform::FontHandle> fonts, const Rect& damaged, Painter painter) {
    if (!isEmpty(damaged)) {
        GdiCanvas canvas(target, source, screens, fonts, damaged);
        painter(canvas, damaged);
    }
}

}  // namespace

// Without memory for the back buffer the window keeps what it shows.
void paintWindow(platform::Window window, const ScreenState& screens,
                 std::span<const platform::FontHandle> fonts, const Rect& limits, Painter painter) {
    PAINTSTRUCT paint{};
    const HDC device = BeginPaint(window, &paint);
    const RECT& asked = paint.rcPaint;
    const HDC target = CreateCompatibleDC(device);
    const HDC source = CreateCompatibleDC(device);
    const HBITMAP backBuffer = CreateCompatibleBitmap(device, kScreenWidth, kScreenHeight);
    if (target != nullptr && source != nullptr && backBuffer != nullptr) {
        const HGDIOBJ previous = SelectObject(target, backBuffer);
        Rect damaged = platform::clientArea(window);
        if (painter != nullptr) {
            damaged = intersection({asked.left, asked.top, asked.right, asked.bottom}, limits);
            drawInto(target, source, screens, fonts, damaged, painter);
        }
        BitBlt(device, damaged.left, damaged.top, damaged.right - damaged.left,
               damaged.bottom - damaged.top, target, damaged.left, damaged.top, SRCCOPY);
        SelectObject(target, previous);
    }
    DeleteObject(backBuffer);
    DeleteDC(source);
    DeleteDC(target);
    EndPaint(window, &paint);
}

}  // namespace ui
