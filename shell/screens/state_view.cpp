#include "shell/screens/state_view.h"

#include <windows.h>

#include "app/app_state.h"
#include "player/player.h"
#include "shell/screens/effects.h"
#include "ui/bitmap_sets.h"

namespace ui {

PlayerView playerView() {
    const settings::PersistedState& persisted = appState.persisted;
    const ScreenState& screens = appState.screens;
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return {
        .connectMode = appState.connectMode == 1,
        .playing = persisted.playState != settings::kStopped,
        .paused = persisted.playState == settings::kPaused,
        .muted = appState.muted == 1,
        .audible = persisted.playState == settings::kPlaying && appState.muted != 1 &&
                   appState.audioSuppressed == 0 && persisted.volume > 0,
        .videoArea = appState.videoArea == 1,
        .drivingBlock = appState.drivingBlock == 1,
        .barShown = screens.barShown != 0,
        .bannerShown = screens.bannerShown != 0,
        .volume = persisted.volume,
        .camera = appState.connectMode == 1 ? Player::cameraOfCurrentFile() : -1,
        .pressedKey = screens.touch.pressedKey,
        .knob = bitmapSize(screens, layoutOf(appState.screenMode).knob),
        .displayedPosition = screens.displayedPosition,
        .duration = persisted.endTime,
        .hour = now.wHour,
        .minute = now.wMinute,
        .fileName = catalogue::lastComponent(persisted.file),
    };
}

ListView listView() {
    ListRows& table = appState.screens.rows;
    fillRows(appState, table);
    return {
        .table = &table,
        .path = appState.browseFolderPath,
        .page = appState.browsePage,
        .pageCount = appState.browsePageCount,
        .pressedKey = appState.screens.touch.pressedKey,
        .goingUp = appState.screens.touch.goingUp != 0,
        .hasParent = hasParentFolder(),
    };
}

const PlayerLayout& layoutOf(int mode) {
    return mode == kHalfWidth ? kHalfLayout : kFullLayout;
}

}  // namespace ui
