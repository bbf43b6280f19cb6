// The bitmaps of the screens and the window's back buffer, written down: "load A", "unload A",
// "paint L,T,R,B" with the number of the canvas's calls.
#include "tests/unit/doubles/skin_double.h"
#include "tests/unit/doubles/record.h"
#include "ui/bitmap_sets.h"
#include "ui/window_painter.h"

namespace test {

SkinDouble& skin() {
    static SkinDouble theSkin;
    return theSkin;
}

}  // namespace test

namespace ui {
namespace {

char letter(SkinSet set) {
    return "ABCD"[static_cast<std::size_t>(set)];
}

}  // namespace

void loadSet(SkinSet set, ScreenState& screens, platform::Window, const char16_t*) {
    test::note("load %c", letter(set));
    static int bitmap = 0;
    screens.bitmaps[static_cast<std::size_t>(set)][0] = &bitmap;
}

void unloadSet(SkinSet set, ScreenState& screens) {
    test::note("unload %c", letter(set));
    screens.bitmaps[static_cast<std::size_t>(set)][0] = nullptr;
}

bool isSetLoaded(SkinSet set, const ScreenState& screens) {
    return screens.bitmaps[static_cast<std::size_t>(set)][0] != nullptr;
}

Size bitmapSize(const ScreenState&, Bitmap) {
    return {10, 18};
}

void paintWindow(platform::Window, const ScreenState&, std::span<const platform::FontHandle>,
                 const Rect& limits, Painter painter) {
    test::note("paint %d,%d,%d,%d%s", limits.left, limits.top, limits.right, limits.bottom,
               painter == nullptr ? " nothing" : "");
    if (painter != nullptr && test::skin().canvas != nullptr) {
        painter(*test::skin().canvas, limits);
    }
}

}  // namespace ui
