// What a playback screen shows: a plain picture of the player's state, made for each paint and each
// touch.
#pragma once

#include <cstdint>

#include "ui/rect.h"

namespace ui {

struct PlayerView {
    bool connectMode = false;
    bool playing = false;  // a file is played or paused
    bool paused = false;
    bool muted = false;
    bool audible = false;       // what is played can be heard
    bool videoArea = false;     // the video layer shows the picture
    bool drivingBlock = false;  // the cover is shown
    bool barShown = true;       // full width
    bool bannerShown = false;   // slide banner
    std::int32_t volume = 0;    // 0 to 10
    std::int32_t camera = -1;   // 0 front, 1 rear, -1 neither
    std::int32_t pressedKey = -1;
    Size knob = {0, 0};            // of the progress bar's knob in the skin, 0 without one
    double displayedPosition = 0;  // seconds
    double duration = 0;           // seconds
    std::int32_t hour = 0, minute = 0;
    const char16_t* fileName = u"";
};

}  // namespace ui
