// The screens' share of the player's global record.
#pragma once

#include <cstdint>

namespace ui {

struct ScreenState {
    std::int32_t barShown = 1;       // full width: the control bar is showing
    std::int32_t bannerShown = 0;    // screen 3: the banner is showing
    double displayedPosition = 0;    // seconds, what the progress bar draws
};

}  // namespace ui
