#include "shell/screens/state_view.h"

#include "app/app_state.h"
#include "platform/clock.h"
#include "player/player.h"
#include "settings/persisted_state.h"
#include "shell/screens/file_list.h"
#include "shell/screens/list_rows.h"
#include "ui/bitmap_sets.h"

namespace screens {
namespace {

static_assert(ui::kLoudestVolume == settings::kLoudestVolume);

}  // namespace

ui::PlayerView playerView() {
    const settings::PersistedState& persisted = appState.persisted;
    const ui::ScreenState& screens = appState.screens;
    const platform::LocalTime now = platform::localTime();
    return {
        .connectMode = appState.connectMode == 1,
        .playing = persisted.playState != settings::kStopped,
        .paused = persisted.playState == settings::kPaused,
        .muted = appState.muted == 1,
        .audible = persisted.playState == settings::kPlaying && appState.muted != 1 &&
                   appState.audioSuppressed == 0 && persisted.volume > 0,
        .videoArea = appState.videoArea,
        .drivingBlock = appState.drivingBlock == 1,
        .barShown = screens.barShown,
        .bannerShown = screens.bannerShown,
        .volume = persisted.volume,
        .camera = appState.connectMode == 1 ? Player::cameraOfCurrentFile() : -1,
        .pressedKey = screens.touch.pressedKey,
        .knob = ui::bitmapSize(screens, layoutOf(appState.screenMode).knob),
        .displayedPosition = screens.displayedPosition,
        .duration = persisted.endTime,
        .hour = now.hour,
        .minute = now.minute,
        .fileName = catalogue::lastComponent(persisted.file),
    };
}

ui::ListView listView() {
    ui::ListRows& table = appState.screens.rows;
    fillRows(appState, table);
    return {
        .table = &table,
        .path = appState.browseFolderPath,
        .page = appState.browsePage,
        .pageCount = appState.browsePageCount,
        .pressedKey = appState.screens.touch.pressedKey,
        .goingUp = appState.screens.touch.goingUp,
        .hasParent = hasParentFolder(),
    };
}

const ui::PlayerLayout& layoutOf(std::int32_t mode) {
    return mode == kHalfWidth ? ui::kHalfLayout : ui::kFullLayout;
}

bool isPlaybackScreen() {
    return appState.screenMode == kFullWidth || appState.screenMode == kHalfWidth;
}

}  // namespace screens
