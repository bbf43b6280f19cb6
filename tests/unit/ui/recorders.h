// A canvas and a host that write down what they are asked to do, one line each.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "ui/canvas.h"
#include "ui/touch.h"

namespace ui_test {

using Lines = std::vector<std::string>;

// Lines such as "draw A41 632,425" (set and slot, place), "keyed into C23 30,66,108,116",
// "fill F800F8 0,0,800,480" and
// "text 25 E6F0F4 10,20,30,40 5 name" (the font's height, colour, area, place in it, text). Every
// bitmap is there unless it is named in `missing`; each letter is 10 pixels wide.
class RecordingCanvas : public ui::Canvas {
public:
    Lines lines;
    std::set<std::string> missing;

    [[nodiscard]] bool covers(ui::Bitmap bitmap, const ui::Rect& area) const override;
    void draw(ui::Bitmap bitmap, ui::Point at) override;
    void drawRegion(ui::Bitmap bitmap, const ui::Rect& area) override;
    void drawInto(ui::Bitmap bitmap, const ui::Rect& area) override;
    void drawTransparent(ui::Bitmap bitmap, ui::Point at) override;
    void drawTransparentInto(ui::Bitmap bitmap, const ui::Rect& area) override;
    void fill(const ui::Rect& area, ui::Colour colour) override;
    void text(const char16_t* text, ui::Font font, ui::Colour colour, const ui::Rect& area,
              ui::TextPlace place) override;
    [[nodiscard]] std::int32_t textWidth(const char16_t* text, ui::Font font) override;
};

// Lines such as "invalidate 0,0,10,10", "start bar", "act Seek", "level 7".
class RecordingHost : public ui::TouchHost {
public:
    Lines lines;

    void invalidate(const ui::Rect& area) override;
    void invalidateAll() override { lines.emplace_back("invalidate all"); }
    void update() override { lines.emplace_back("update"); }
    void capturePointer() override { lines.emplace_back("capture"); }
    void releasePointer() override { lines.emplace_back("release"); }
    void startTimer(ui::ScreenTimer timer) override;
    void stopTimer(ui::ScreenTimer timer) override;
    void click() override { lines.emplace_back("click"); }
    void act(ui::Action action, std::int32_t row) override;
    void setVolumeLevel(std::int32_t level) override;
    void setListPage(std::int32_t page) override;
    void showBanner() override { lines.emplace_back("banner"); }
};

std::string nameOf(ui::Action action);

}  // namespace ui_test
