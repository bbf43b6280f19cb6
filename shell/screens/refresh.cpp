// What is drawn anew, and when.
#include <windows.h>

#include "app/app_state.h"
#include "player/player.h"
#include "shell/screens/effects.h"
#include "shell/screens/screens.h"
#include "shell/screens/state_view.h"
#include "shell/shell.h"
#include "ui/bitmap_sets.h"
#include "ui/follow.h"
#include "ui/paint.h"

namespace ui {
namespace {

bool isPlaybackScreen() {
    return appState.screenMode == kFullWidth || appState.screenMode == kHalfWidth;
}

// Draws the progress bar and the times anew where the picture of them changes.
void showPosition(double position, double duration) {
    ScreenState& screens = appState.screens;
    const ShownTime before = {screens.displayedPosition, screens.displayedDuration};
    screens.displayedPosition = position;
    screens.displayedDuration = duration;
    if (!isPlaybackScreen()) {
        return;
    }
    Effects effects;
    const PlayerLayout& layout = layoutOf(appState.screenMode);
    const bool playing = appState.persisted.playState != settings::kStopped;
    followTime(layout, bitmapSize(screens, layout.knob), playing, before, {position, duration},
               effects);
}

void followPosition() {
    const Touch& touch = appState.screens.touch;
    const bool fingerLeads = isPlaybackScreen() && touch.held != 0 && touch.pressedKey >= 0 &&
                             touch.pressedKey == layoutOf(appState.screenMode).progressKey;
    if (!fingerLeads && appState.persisted.playState != settings::kStopped) {
        showPosition(appState.persisted.position, appState.persisted.endTime);
    }
}

void followClock() {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    const std::int32_t minute = now.wHour * 60 + now.wMinute;
    if (appState.screenMode == kFullWidth && minute != appState.screens.displayedMinute) {
        appState.screens.displayedMinute = minute;
        Effects effects;
        effects.invalidate(
            {kHalfDayMark.left, kClockArea.top, kClockArea.right, kClockArea.bottom});
    }
}

void carryOut(std::int32_t action) {
    switch (action) {
        case kNextFile:
            return Player::OnNext();
        case kPreviousFile:
            return Player::OnPrev();
        case kVolumeDown:
            return Player::volumeDown();
        case kVolumeUp:
            return Player::volumeUp();
        default:
            return;
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
    if (appState.pendingKeyAction == kNoAction || appState.screens.touch.held != 0) {
        return;
    }
    Effects effects;
    switch (appState.screenMode) {
        case kFullWidth:
            return effects.act(Action::HideBar, 0);
        case kHalfWidth:
            return carryOut(takePendingAction());
        case kSlideBanner:
            if (appState.screens.bannerShown == 0) {
                effects.showBanner();
            }
            return;
        default:
            return;
    }
}

void endBar() {
    KillTimer(appState.mainWindow, shell::kBarTimer);
    if (appState.screenMode == kFullWidth) {
        Effects effects;
        effects.act(Action::HideBar, 0);
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

bool followsTimers(int mode) {
    return mode == kFullWidth || mode == kHalfWidth || mode == kSlideBanner;
}

void screenTimer(UINT_PTR id) {
    if (!followsTimers(appState.screenMode)) {
        return;
    }
    switch (id) {
        case shell::kPositionTimer:
            return followPosition();
        case shell::kScreenTimer:
            startPendingFile();
            followClock();
            return followGesture();
        case shell::kBarTimer:
            return endBar();
        default:
            return;
    }
}

void slideBannerEnded() {
    if (appState.screenMode != kSlideBanner || appState.pendingKeyAction == kNoAction) {
        return;
    }
    carryOut(takePendingAction());
    if (appState.screenMode == kSlideBanner) {
        // The slide screen may have been come to from the list, or while hidden before that.
        const std::int32_t before = appState.previousScreenMode;
        shell::setScreenMode(before == kHalfWidth ? kHalfWidth : kFullWidth);
    }
}

LRESULT slideActivated(WPARAM wParam, LPARAM lParam) {
    if (LOWORD(wParam) == WA_INACTIVE) {
        forgetTouch();  // the release goes to another window
    }
    return DefWindowProcW(appState.mainWindow, WM_ACTIVATE, wParam, lParam);
}

// Something on the unit has changed for everybody: what the banner tells is drawn anew.
LRESULT slideBroadcast(WPARAM, LPARAM) {
    if (appState.screenMode == kSlideBanner) {
        refreshVolume();
    }
    return 0;
}

void refreshScreen() {
    InvalidateRect(appState.mainWindow, nullptr, FALSE);
}

void refreshSoundSentence() {
    if (appState.drivingBlock == 1 && followsTimers(appState.screenMode)) {
        Effects effects;
        effects.invalidate(layoutOf(appState.screenMode).soundSentence);
    }
}

void refreshVolume() {
    refreshSoundSentence();
    Effects effects;
    if (isPlaybackScreen()) {
        const PlayerLayout& layout = layoutOf(appState.screenMode);
        effects.invalidate(layout.volume.area);
        effects.invalidate(layout.keys[static_cast<std::size_t>(layout.muteKey)].area);
    } else if (appState.screenMode == kSlideBanner && appState.screens.bannerShown != 0) {
        effects.invalidate(kBannerArea);
    }
}

void refreshFileList() {
    const std::int32_t key = appState.screens.touch.pressedKey;
    if (appState.screenMode == kFileList && (isRowKey(key) || isBinKey(key))) {
        forgetTouch();  // another entry may stand under the finger now
    }
    refreshScreen();
}

void clearProgress() {
    appState.screens.displayedPosition = 0;
    refreshScreen();
}

}  // namespace ui
