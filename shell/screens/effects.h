// What the touches of the screens set off in the window, the player and the other processes.
#pragma once

#include "ui/touch.h"

namespace screens {

class Effects : public ui::TouchHost {
public:
    void invalidate(const ui::Rect& area) override;
    void invalidateAll() override;
    void update() override;
    void capturePointer() override;
    void releasePointer() override;
    void startTimer(ui::ScreenTimer timer) override;
    void stopTimer(ui::ScreenTimer timer) override;
    void click() override;
    void act(ui::Action action, std::int32_t row) override;
    void setVolumeLevel(std::int32_t level) override;
    void setListPage(std::int32_t page) override;
    void showBanner() override;
};

// Shows `text` in the board's message box, without a title, until it is answered; `style` is one of
// the board's. Returns the number of the button.
int showBox(const char16_t* text, std::uint32_t style);

}  // namespace screens
