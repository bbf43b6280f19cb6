// What the board, the vendor's demultiplexer, the recorder, the navigation application and the
// vehicle report.
#include <windows.h>

#include <limits>

#include "app/app_state.h"
#include "catalogue/volumes.h"
#include "platform/print.h"
#include "player/player.h"
#include "settings/hand_over.h"
#include "shell/handlers.h"
#include "shell/registered_messages.h"
#include "shell/screens/screens.h"
#include "shell/shell.h"

namespace shell {
namespace {

constexpr WPARAM kVolumeGone = 0;
constexpr WPARAM kVolumeArrived = 1;

void reportStorage(WPARAM wParam, std::int64_t slot) {
    if (wParam == kVolumeGone || wParam == kVolumeArrived) {
        Player::storageChanged(wParam == kVolumeArrived ? 1 : 0, slot);
    }
}

bool isReadFailure(UINT message) {
    static const UINT readFailure = RegisterWindowMessageW(vendor::kReadFailMessage);
    return message == readFailure;
}

}  // namespace

LRESULT onCardOrReadFailure(HWND, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!isReadFailure(message)) {
        reportStorage(wParam, lParam);
        return 0;
    }
    Player::stopPlayback();
    signalWaitAnimation(0);
    showNotice(L"\n\n재생 파일 읽기를 실패 하였습니다.");
    return 0;
}

LRESULT onUsbStorage(HWND, UINT, WPARAM wParam, LPARAM lParam) {
    constexpr std::int64_t kHighest =
        std::numeric_limits<std::int64_t>::max() - catalogue::kFirstUsbVolume;
    // A negative index names no USB volume, though behind the cards' slots it would name a card.
    constexpr std::int64_t kNoVolume = -1;
    const std::int64_t slot =
        lParam < 0 || lParam > kHighest ? kNoVolume : lParam + catalogue::kFirstUsbVolume;
    reportStorage(wParam, slot);
    if (wParam == kVolumeGone && appState.connectMode == 1 && settings::usbSetupFileExists() == 0) {
        postToProcessManager(kClosePlayer, 0);
    }
    return 0;
}

LRESULT onMuteNotification(HWND, UINT, WPARAM wParam, LPARAM) {
    appState.muted = wParam == 1 ? 1 : 0;
    ui::refreshVolume();
    return 0;
}

LRESULT onBroadcast(HWND, UINT, WPARAM wParam, LPARAM lParam) {
    return ui::slideBroadcast(wParam, lParam);
}

LRESULT onRecorderQuery(HWND, UINT, WPARAM, LPARAM) {
    return appState.screenMode == kHalfWidth ? 1 : 0;
}

LRESULT onNavigation(HWND, UINT, WPARAM wParam, LPARAM) {
    constexpr WPARAM kHidePicture = 2;
    platform::print("[Reelvue]%s : wParam(%d)\r\n", "DoOrviBroadcastMain",
                    static_cast<int>(wParam));
    if (wParam == kHidePicture) {
        setVideoHidden(1);
    }
    return 0;
}

// The navigation has taken the sound system over and given it back: the file is opened once more
// at the same place.
LRESULT onEndPoint(HWND, UINT, WPARAM, LPARAM) {
    const double position = appState.filterControl.GetPosition();
    const std::int32_t stateBefore = appState.persisted.playState;
    Player::stopPlayback();
    if (appState.screenMode == kSlideBanner) {
        setScreenMode(appState.previousScreenMode);
    }
    Player::playAgain(stateBefore, position);
    return 0;
}

LRESULT onSystemBroadcast(HWND, UINT, WPARAM wParam, LPARAM lParam) {
    constexpr WPARAM kVehicleSpeed = 1;
    constexpr std::int32_t kNoSignal = -1;
    appState.systemBroadcastValue =
        wParam == kVehicleSpeed ? static_cast<std::int32_t>(lParam) : kNoSignal;
    return 0;
}

}  // namespace shell
