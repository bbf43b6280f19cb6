// The timers of the main window: what the shell does at each tick before the screen has its turn.
#include <array>

#include "app/app_state.h"
#include "app/driving_check.h"
#include "app/paths.h"
#include "app/timers.h"
#include "platform/print.h"
#include "player/player.h"
#include "settings/ini_store.h"
#include "shell/handlers.h"
#include "shell/peers/peers.h"
#include "shell/screens/screen_mode.h"
#include "shell/screens/ticks.h"

namespace shell {
namespace {

void followPosition(Window) {
    appState.persisted.position = appState.filterControl.GetPosition();
    if (appState.persisted.position >= appState.persisted.endTime) {
        platform::print("2. CurTime=%f, EndTime=%f\n", appState.persisted.position,
                        appState.persisted.endTime);
        Player::OnNext();
    }
    if (appState.drivingBlock != appState.drivingBlockAtLastTick) {
        appState.drivingBlockAtLastTick = appState.drivingBlock;
        screens::placeVideo(0);
    }
}

void endBanner(Window window) {
    app::stopTimer(app::kBannerTimer);
    appState.screens.bannerShown = false;
    platform::invalidate(window);
    screens::slideBannerEnded();
}

void freeKeys(Window) {
    app::stopTimer(app::kKeyLockTimer);
    appState.keyLock = 0;
}

void reportExitReady(Window window) {
    // A stored file that no screen is there to start is nothing to wait for.
    if (appState.resumePending != 0 && !screens::followsTimers(appState.screenMode)) {
        appState.playLoaded = 1;
    }
    platform::print("[%s : %d] bImgLoad[%d] bPlayLoad[%d] 1=1 kill \n", "OnTimer",
                    static_cast<int>(app::kExitReadyTimer), appState.imageLoaded,
                    appState.playLoaded);
    if (appState.imageLoaded == 1 && appState.playLoaded == 1) {
        app::stopTimer(app::kExitReadyTimer);
        postToProcessManager(kExitReady, 1);
    } else {
        platform::postMessage(window, platform::kPaintMessage, 0, 0);
    }
}

void checkDriving(Window window) {
    appState.dmbSetting =
        settings::readIniInt(u"MISC", u"DMB", appState.dmbSetting, app::kConfigFile);
    if (app::driveOneSecond(appState.systemBroadcastValue, appState.dmbSetting,
                            appState.blockCounters, appState.drivingBlock) != 0) {
        platform::invalidate(window);
    }
}

struct StepRow {
    app::Timer id;
    void (*step)(Window window);
};
constexpr std::array<StepRow, 5> kSteps = {{
    {app::kPositionTimer, followPosition},
    {app::kBannerTimer, endBanner},
    {app::kKeyLockTimer, freeKeys},
    {app::kExitReadyTimer, reportExitReady},
    {app::kDrivingTimer, checkDriving},
}};

}  // namespace

Answer onTimer(Window window, std::uint32_t, WParam wParam, LParam) {
    for (const StepRow& row : kSteps) {
        if (row.id == wParam) {
            row.step(window);
        }
    }
    screens::screenTimer(wParam);
    return 0;
}

}  // namespace shell
