#include "ui/follow.h"

#include "ui/time_text.h"

namespace ui {

void followTime(const PlayerLayout& layout, Size knob, bool playing, const ShownTime& from,
                const ShownTime& to, TouchHost& host) {
    const std::int32_t fromX = knobX(layout.progress, from.position, from.duration, playing);
    const std::int32_t toX = knobX(layout.progress, to.position, to.duration, playing);
    const bool newDuration = wholeSeconds(from.duration) != wholeSeconds(to.duration);
    if (playing && from.duration != to.duration) {
        // A paint since the last tick may have drawn the knob for any length in between.
        const std::int32_t left = layout.progress.area.left;
        host.invalidate(
            knobTrack(layout.progress, left, left + progressTravel(layout.progress), knob));
    } else if (fromX != toX) {
        host.invalidate(knobTrack(layout.progress, fromX, toX, knob));
    }
    if (playing && newDuration) {
        // A recording that grows: one box around the track and both texts would be a large part
        // of the screen, so that the track is painted by itself.
        host.update();
    }
    if (wholeSeconds(from.position) != wholeSeconds(to.position)) {
        host.invalidate(layout.position);
    }
    if (newDuration) {
        host.invalidate(layout.duration);
    }
}

}  // namespace ui
