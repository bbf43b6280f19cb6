// One state of one screen, drawn with the real skin, a fixed clock and smoothing that does not
// depend on the desktop.
#pragma once

#include <windows.h>

#include <array>
#include <functional>
#include <string>

#include "ui/bitmap_sets.h"
#include "ui/gdi_canvas.h"
#include "ui/paint.h"

namespace ui_test {

enum class Screen { Full, Half, List, Slide };

struct Scene {
    const char* name;
    Screen screen;
    ui::PlayerView view;
    ui::ListRows rows{};
    ui::ListView list{};
    const char* missing = "";  // files left out, such as "A40 C0"
};

// The skin and the four fonts of the window, loaded once.
class Stage {
public:
    // `skinFolder` ends with a separator.
    explicit Stage(const char16_t* skinFolder);
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    // Draws what lies in `damaged`; what lies outside stays.
    void paint(const Scene& scene, HDC target, const ui::Rect& damaged) const;
    ui::ScreenState screens{};

private:
    std::array<HFONT, 4> fonts_{};
    HDC source_;
};

inline int widthOf(Screen screen) {
    return screen == Screen::Half ? 400 : 800;
}
inline ui::Rect wholeOf(Screen screen) {
    return {0, 0, widthOf(screen), 480};
}

ui::PlayerView playingView();
void setRow(ui::ListRows& table, std::size_t row, ui::RowKind kind, std::int32_t slot,
            const char16_t* name);

}  // namespace ui_test
