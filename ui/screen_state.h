// The screens' share of the player's global record.
#pragma once

#include <array>
#include <cstdint>

#include "ui/key.h"
#include "ui/list_screen.h"
#include "ui/skin_slots.h"

namespace ui {

// The finger on the screen.
struct Touch {
    bool held = false;  // between press and release
    std::int32_t pressedKey = kNoKey;
    bool restartPosition = false;  // the position timer was stopped by this press
    Point start = {0, 0};
    bool goingUp = false;           // file list: on its way to the folder above
    bool slidVolume = false;        // slide screen: the volume has followed the finger
    std::int32_t slideAnchorY = 0;  // slide screen: where the next volume step is measured from
};

struct ScreenState {
    bool barShown = true;               // full width: the control bar is showing
    bool bannerShown = false;           // screen 3: the banner is showing
    double displayedPosition = 0;       // seconds, what the progress bar draws
    double displayedDuration = 0;       // seconds, as last drawn
    std::int32_t displayedMinute = -1;  // of the day, as last drawn by the clock
    bool listShown = false;             // the file list has been shown before
    Touch touch;
    ListRows rows;
    // HBITMAP of each slot, null where it is empty.
    std::array<std::array<void*, kSlotsPerSet>, kSkinSets> bitmaps{};
};

}  // namespace ui
