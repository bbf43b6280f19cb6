// One answer to WM_PAINT: what the window wants drawn, drawn into a back buffer of the screen's
// size and copied at once, so that nothing flickers.
#pragma once

#include <span>

#include "platform/font.h"
#include "platform/window.h"
#include "ui/canvas.h"
#include "ui/screen_state.h"

namespace ui {

// Draws what meets `damaged`, in window pixels.
using Painter = void (*)(Canvas& canvas, const Rect& damaged);

// Lets `painter` draw what is damaged within `limits`, and copies it to the window. Without a
// painter the whole client area is copied from an empty buffer.
void paintWindow(platform::Window window, const ScreenState& screens,
                 std::span<const platform::FontHandle> fonts, const Rect& limits, Painter painter);

}  // namespace ui
