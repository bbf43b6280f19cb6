// The timers of the main window: what the shell does at each tick before the screen has its turn.
#include <windows.h>

#include <array>

#include "app/app_state.h"
#include "app/paths.h"
#include "platform/print.h"
#include "player/player.h"
#include "settings/ini_store.h"
#include "shell/handlers.h"
#include "shell/screens/screens.h"
#include "shell/shell.h"

namespace shell {
namespace {

void followPosition(HWND) {
    appState.persisted.position = appState.filterControl.GetPosition();
    if (appState.persisted.position >= appState.persisted.endTime) {
        platform::print("2. CurTime=%f, EndTime=%f\n", appState.persisted.position,
                        appState.persisted.endTime);
        Player::OnNext();
    }
    if (appState.drivingBlock != appState.drivingBlockAtLastTick) {
        appState.drivingBlockAtLastTick = appState.drivingBlock;
        placeVideo(0);
    }
}

void endBanner(HWND window) {
    KillTimer(window, kBannerTimer);
    appState.screens.bannerShown = 0;
    InvalidateRect(window, nullptr, FALSE);
    ui::slideBannerEnded();
}

void freeKeys(HWND window) {
    KillTimer(window, kKeyLockTimer);
    appState.keyLock = 0;
}

void reportExitReady(HWND window) {
    // A stored file that no screen is there to start is nothing to wait for.
    if (appState.resumePending != 0 && !ui::followsTimers(appState.screenMode)) {
        appState.playLoaded = 1;
    }
    platform::print("[%s : %d] bImgLoad[%d] bPlayLoad[%d] 1=1 kill \n", "OnTimer",
                    static_cast<int>(kExitReadyTimer), appState.imageLoaded, appState.playLoaded);
    if (appState.imageLoaded == 1 && appState.playLoaded == 1) {
        KillTimer(window, kExitReadyTimer);
        postToProcessManager(kExitReady, 1);
    } else {
        PostMessageW(window, WM_PAINT, 0, 0);
    }
}

void checkDriving(HWND window) {
    appState.dmbSetting =
        settings::readIniInt(u"MISC", u"DMB", appState.dmbSetting, app::kConfigFile);
    if (app::driveOneSecond(appState.systemBroadcastValue, appState.dmbSetting,
                            appState.blockCounters, appState.drivingBlock) != 0) {
        InvalidateRect(window, nullptr, FALSE);
    }
}

struct TimerRow {
    UINT_PTR id;
    void (*step)(HWND window);
};
constexpr std::array<TimerRow, 5> kTimers = {{
    {kPositionTimer, followPosition},
    {kBannerTimer, endBanner},
    {kKeyLockTimer, freeKeys},
    {kExitReadyTimer, reportExitReady},
    {kDrivingTimer, checkDriving},
}};

}  // namespace

LRESULT onTimer(HWND window, UINT, WPARAM wParam, LPARAM) {
    for (const TimerRow& row : kTimers) {
        if (row.id == wParam) {
            row.step(window);
        }
    }
    ui::screenTimer(wParam);
    return 0;
}

}  // namespace shell
