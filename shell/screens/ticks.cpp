#include "shell/screens/ticks.h"

#include "app/app_state.h"
#include "app/timers.h"
#include "platform/clock.h"
#include "player/player.h"
#include "shell/screens/effects.h"
#include "shell/screens/refresh.h"
#include "shell/screens/screen_mode.h"
#include "shell/screens/state_view.h"
#include "ui/bitmap_sets.h"
#include "ui/follow.h"

namespace screens {
namespace {

// Draws the progress bar and the times again where the picture of them changes.
void showPosition(double position, double duration) {
    ui::ScreenState& screens = appState.screens;
    const ui::ShownTime before = {screens.displayedPosition, screens.displayedDuration};
    screens.displayedPosition = position;
    screens.displayedDuration = duration;
    if (!isPlaybackScreen()) {
        return;
    }
    Effects effects;
    const ui::PlayerLayout& layout = layoutOf(appState.screenMode);
    const bool playing = appState.persisted.playState != settings::kStopped;
    ui::followTime(layout, ui::bitmapSize(screens, layout.knob), playing, before,
                   {position, duration}, effects);
}

void followPosition() {
    const ui::Touch& touch = appState.screens.touch;
    const bool fingerLeads = isPlaybackScreen() && touch.held && touch.pressedKey >= 0 &&
                             touch.pressedKey == layoutOf(appState.screenMode).progressKey;
    if (!fingerLeads && appState.persisted.playState != settings::kStopped) {
        showPosition(appState.persisted.position, appState.persisted.endTime);
    }
}

void followClock() {
    const platform::LocalTime now = platform::localTime();
    const std::int32_t minute = now.hour * 60 + now.minute;
    if (appState.screenMode == kFullWidth && minute != appState.screens.displayedMinute) {
        appState.screens.displayedMinute = minute;
        Effects effects;
        effects.invalidate({ui::kHalfDayMark.left, ui::kClockArea.top, ui::kClockArea.right,
                            ui::kClockArea.bottom});
    }
}

void carryOut(std::int32_t action) {
    switch (static_cast<KeyAction>(action)) {
        case kNoAction:
            return;
        case kNextFile:
            return Player::OnNext();
        case kPreviousFile:
            return Player::OnPrev();
        case kVolumeDown:
            return Player::volumeDown();
        case kVolumeUp:
            return Player::volumeUp();
    }
}

std::int32_t takePendingAction() {
    const std::int32_t action = appState.pendingKeyAction;
    appState.pendingKeyAction = kNoAction;
    return action;
}

// A gesture leads over the banner of the slide screen, which the full-width screen opens for it;
// the half-width screen has no banner to wait for.
void followGesture() {
    if (appState.pendingKeyAction == kNoAction || appState.screens.touch.held) {
        return;
    }
    Effects effects;
    switch (static_cast<ScreenMode>(appState.screenMode)) {
        case kFullWidth:
            return effects.act(ui::Action::HideBar, 0);
        case kHalfWidth:
            return carryOut(takePendingAction());
        case kSlideBanner:
            if (!appState.screens.bannerShown) {
                effects.showBanner();
            }
            return;
        case kFileList:
        case kHidden:
            return;
    }
}

void endBar() {
    app::stopTimer(app::kBarTimer);
    if (appState.screenMode == kFullWidth) {
        Effects effects;
        effects.act(ui::Action::HideBar, 0);
    }
}

// The file that was playing when the player last ended, once the first frame is on screen. A play
// command that came first has started it already.
void startPendingFile() {
    if (appState.resumePending != 0 && appState.imageLoaded != 0) {
        Player::OnPlay();
    }
}

}  // namespace

bool followsTimers(std::int32_t mode) {
    return mode == kFullWidth || mode == kHalfWidth || mode == kSlideBanner;
}

void screenTimer(platform::WParam id) {
    if (!followsTimers(appState.screenMode)) {
        return;
    }
    if (id == app::kPositionTimer) {
        followPosition();
    } else if (id == app::kScreenTimer) {
        startPendingFile();
        followClock();
        followGesture();
    } else if (id == app::kBarTimer) {
        endBar();
    }
}

void slideBannerEnded() {
    if (appState.screenMode != kSlideBanner || appState.pendingKeyAction == kNoAction) {
        return;
    }
    carryOut(takePendingAction());
    if (appState.screenMode == kSlideBanner) {
        // The slide screen may have been reached from the list, or while hidden before that.
        const std::int32_t before = appState.previousScreenMode;
        setScreenMode(before == kHalfWidth ? kHalfWidth : kFullWidth);
    }
}

platform::Answer slideActivated(platform::WParam wParam, platform::LParam lParam) {
    constexpr platform::WParam kStateBits = 0xFFFF, kInactive = 0;
    if ((wParam & kStateBits) == kInactive) {
        forgetTouch();  // the release goes to another window
    }
    return platform::defaultAnswer(appState.mainWindow, platform::kActivateMessage, wParam, lParam);
}

// Something on the unit has changed for everybody: what the banner tells is drawn again.
platform::Answer slideBroadcast() {
    if (appState.screenMode == kSlideBanner) {
        refreshVolume();
    }
    return 0;
}

}  // namespace screens
