// The position display: what a tick of the position timer redraws.
#pragma once

#include "ui/player_layout.h"
#include "ui/touch.h"

namespace ui {

struct ShownTime {
    double position, duration;  // seconds
};

// Invalidates the parts of a playback screen that look different at `to` and at `from`. `knob` is
// the size of the knob's bitmap.
void followTime(const PlayerLayout& layout, Size knob, bool playing, const ShownTime& from,
                const ShownTime& to, TouchHost& host);

}  // namespace ui
