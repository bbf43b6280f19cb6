// Touches on the two playback screens.
#include "ui/touch.h"

namespace ui {
namespace {

const Key& keyAt(const PlayerLayout& layout, std::int32_t key) {
    return layout.keys[static_cast<std::size_t>(key)];
}

bool barHidden(const PlayerLayout& layout, const ScreenState& screens) {
    return layout.hidesBar && !screens.barShown;
}

void followFinger(const PlayerLayout& layout, const PlayerView& view, ScreenState& screens,
                  TouchHost& host, std::int32_t x) {
    if (!view.playing || view.duration == 0) {
        return;
    }
    const ProgressBar& bar = layout.progress;
    const std::int32_t from = knobX(bar, screens.displayedPosition, view.duration, view.playing);
    screens.displayedPosition = positionFromTouch(bar, x, view.duration);
    const std::int32_t to = knobX(bar, screens.displayedPosition, view.duration, view.playing);
    host.invalidate(bounds(bar.area, knobTrack(bar, from, to, view.knob)));
    host.invalidate(layout.position);
}

void chooseLevel(const PlayerLayout& layout, const PlayerView& view, TouchHost& host,
                 std::int32_t x) {
    const std::int32_t level = levelFromTouch(layout.volume, x);
    if (level != view.volume) {
        host.invalidate(layout.volume.area);
        host.invalidate(keyAt(layout, layout.muteKey).area);
    }
    host.setVolumeLevel(level);
}

void runKey(const Key& key, const PlayerView& view, TouchHost& host) {
    if (key.action == Action::None || (key.click == Click::InConnectMode && !view.connectMode)) {
        return;
    }
    if (key.click != Click::Silent) {
        host.click();
    }
    const bool leavesPlayer = key.action == Action::GoHome || key.action == Action::GoNavigation;
    host.act(leavesPlayer && view.connectMode ? Action::Refuse : key.action, 0);
}

// The bar stays away from a finger that asks for another program.
bool restartsBar(std::int32_t pressedKey) {
    return pressedKey != kFullHomeKey && pressedKey != kFullNavigationKey;
}

}  // namespace

void pressPlayer(const PlayerLayout& layout, const PlayerView& view, ScreenState& screens,
                 TouchHost& host, Point point) {
    const bool hidden = barHidden(layout, screens);
    const Touch before = screens.touch;
    if (before.pressedKey != kNoKey) {
        host.invalidate(keyAt(layout, before.pressedKey).area);
    }
    if (layout.hidesBar && !hidden) {
        host.stopTimer(ScreenTimer::Bar);
    }
    const std::int32_t pressed = hitTest(layout.keys, point);
    screens.touch = {.held = true,
                     .pressedKey = pressed,
                     .restartPosition = before.restartPosition,
                     .start = point};
    if (pressed != kNoKey && !hidden) {
        host.invalidate(keyAt(layout, pressed).area);
        if (pressed == layout.progressKey && view.playing) {
            host.stopTimer(ScreenTimer::Position);
            screens.touch.restartPosition = true;
            followFinger(layout, view, screens, host, point.x);
        } else if (pressed == layout.volumeKey) {
            chooseLevel(layout, view, host, point.x);
        }
    }
    host.capturePointer();
    host.update();
}

void movePlayer(const PlayerLayout& layout, const PlayerView& view, ScreenState& screens,
                TouchHost& host, Point point) {
    if (screens.touch.held && screens.touch.pressedKey == layout.progressKey &&
        !barHidden(layout, screens)) {
        followFinger(layout, view, screens, host, point.x);
    }
}

void releasePlayer(const PlayerLayout& layout, const PlayerView& view, ScreenState& screens,
                   TouchHost& host, Point point) {
    if (!screens.touch.held) {
        return;
    }
    host.releasePointer();
    // Forgotten before anything is carried out: an action may run a message loop of its own, in
    // which the next touch arrives.
    Touch touch = screens.touch;
    screens.touch = {};
    if (barHidden(layout, screens)) {
        touch.pressedKey = kNoKey;  // whatever lies under the finger was not to be seen
        screens.barShown = true;
        host.invalidateAll();
    } else if (touch.pressedKey != kNoKey && hitTest(layout.keys, point) == touch.pressedKey) {
        runKey(keyAt(layout, touch.pressedKey), view, host);
    } else if (touch.pressedKey == layout.progressKey) {
        host.act(Action::Seek, 0);
    }
    if (touch.restartPosition) {
        host.startTimer(ScreenTimer::Position);
    }
    if (layout.hidesBar) {
        host.stopTimer(ScreenTimer::Bar);
        if (restartsBar(touch.pressedKey)) {
            host.startTimer(ScreenTimer::Bar);
        }
    }
    if (touch.pressedKey != kNoKey) {
        host.invalidate(keyAt(layout, touch.pressedKey).area);
    }
    host.update();
}

}  // namespace ui
