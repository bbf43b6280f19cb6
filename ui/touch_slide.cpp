// Touches on the full screen without the control bar.
#include <cstdlib>

#include "ui/touch.h"

namespace ui {
namespace {

constexpr std::int32_t kTapRoom = 30;        // pixels that a tapping finger may wander
constexpr std::int32_t kPixelsPerStep = 30;  // of the volume

}  // namespace

void pressSlide(ScreenState& screens, TouchHost& host, Point point) {
    screens.touch = {.held = true, .start = point, .slideAnchorY = point.y};
    host.capturePointer();
}

void moveSlide(ScreenState& screens, TouchHost& host, Point point) {
    Touch& touch = screens.touch;
    if (!touch.held) {
        return;
    }
    const std::int32_t across = std::abs(point.x - touch.start.x);
    const std::int32_t along = std::abs(point.y - touch.start.y);
    if (!touch.slidVolume && across >= along) {
        return;
    }
    const std::int32_t steps = (touch.slideAnchorY - point.y) / kPixelsPerStep;
    if (steps == 0) {
        return;
    }
    touch.slidVolume = true;
    touch.slideAnchorY -= steps * kPixelsPerStep;
    for (std::int32_t i = 0; i < std::abs(steps); ++i) {
        host.act(steps > 0 ? Action::VolumeUp : Action::VolumeDown, 0);
    }
    host.showBanner();
}

void releaseSlide(ScreenState& screens, TouchHost& host, Point point) {
    if (!screens.touch.held) {
        return;
    }
    host.releasePointer();
    const Touch touch = screens.touch;
    screens.touch = {};
    if (!touch.slidVolume && std::abs(point.x - touch.start.x) <= kTapRoom &&
        std::abs(point.y - touch.start.y) <= kTapRoom) {
        host.act(Action::ShowFullWidth, 0);
    }
}

}  // namespace ui
