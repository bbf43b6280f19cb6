#include "shell/screens/refresh.h"

#include "app/app_state.h"
#include "platform/window.h"
#include "shell/screens/effects.h"
#include "shell/screens/state_view.h"
#include "shell/screens/ticks.h"
#include "ui/paint.h"

namespace screens {

void refreshScreen() {
    platform::invalidate(appState.mainWindow);
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
        const ui::PlayerLayout& layout = layoutOf(appState.screenMode);
        effects.invalidate(layout.volume.area);
        effects.invalidate(layout.keys[static_cast<std::size_t>(layout.muteKey)].area);
    } else if (appState.screenMode == kSlideBanner && appState.screens.bannerShown) {
        effects.invalidate(ui::kBannerArea);
    }
}

void refreshFileList() {
    const std::int32_t key = appState.screens.touch.pressedKey;
    if (appState.screenMode == kFileList && (ui::isRowKey(key) || ui::isBinKey(key))) {
        forgetTouch();  // another entry may stand under the finger now
    }
    refreshScreen();
}

void clearProgress() {
    appState.screens.displayedPosition = 0;
    refreshScreen();
}

void forgetTouch() {
    const ui::Touch touch = appState.screens.touch;
    appState.screens.touch = {};
    if (!touch.held) {
        return;
    }
    Effects effects;
    effects.releasePointer();
    if (touch.restartPosition) {
        effects.startTimer(ui::ScreenTimer::Position);
    }
    effects.startTimer(ui::ScreenTimer::Bar);
    refreshScreen();
}

}  // namespace screens
