// The progress and volume bars: where their handles stand, and what a touch on them means. The two
// playback screens have the same arithmetic on rectangles of their own.
#pragma once

#include <cstdint>

#include "ui/rect.h"

namespace ui {

inline constexpr std::int32_t kLoudestVolume = 10;

struct ProgressBar {
    Rect area;                         // touch and repaint
    std::int32_t fillTop, fillBottom;  // filled from area.left to knob x + 5
    std::int32_t knobTop;              // the knob is drawn at (knob x, knobTop)
};

struct VolumeBar {
    Rect area;
    std::int32_t fillTop, fillBottom;  // filled from area.left to icon x + 10
    std::int32_t iconTop;
};

// Pixels that the knob travels: the bar's width without the knob's own.
std::int32_t progressTravel(const ProgressBar& bar);

// Left edge of the knob. `position` and `duration` are in seconds; without a duration or with
// nothing playing it stands at the bar's left edge.
std::int32_t knobX(const ProgressBar& bar, double position, double duration, bool playing);

// Position in seconds, 0 to `duration`, that a touch at `x` asks for.
double positionFromTouch(const ProgressBar& bar, std::int32_t x, double duration);

// The knob that the bars have room for; a skin may bring a larger one.
inline constexpr Size kKnobSize = {10, 18};  // pixels

// What has to be drawn when the knob, a bitmap of the size `knob`, moves between two places. One
// that is smaller than the bar's room for it, or missing, counts as filling it.
Rect knobTrack(const ProgressBar& bar, std::int32_t fromX, std::int32_t toX, Size knob);

// Left edge of the volume icon for a level of 0 to 10.
std::int32_t volumeIconX(const VolumeBar& bar, std::int32_t level);

// Level, 0 to 10, that a touch at `x` asks for. The touch measures the whole bar, the icon moves
// over 20 pixels less: it never reaches the right end of the touch area. Required.
std::int32_t levelFromTouch(const VolumeBar& bar, std::int32_t x);

}  // namespace ui
