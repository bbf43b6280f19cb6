// What the board, the vendor's demultiplexer, the recorder, the navigation application and the
// vehicle report.
#include <limits>

#include "app/app_state.h"
#include "catalogue/volumes.h"
#include "platform/board.h"
#include "platform/print.h"
#include "player/player.h"
#include "settings/hand_over.h"
#include "shell/handlers.h"
#include "shell/peers/peers.h"
#include "shell/screens/effects.h"
#include "shell/screens/refresh.h"
#include "shell/screens/screen_mode.h"
#include "shell/screens/ticks.h"

namespace shell {
namespace {

constexpr WParam kVolumeGone = 0;
constexpr WParam kVolumeArrived = 1;

void reportStorage(WParam wParam, std::int64_t slot) {
    if (wParam == kVolumeGone || wParam == kVolumeArrived) {
        Player::storageChanged(wParam == kVolumeArrived ? 1 : 0, slot);
    }
}

}  // namespace

Answer onCardOrReadFailure(Window, std::uint32_t message, WParam wParam, LParam lParam) {
    if (message != appState.readFailureMessage) {
        reportStorage(wParam, lParam);
        return 0;
    }
    Player::stopPlayback();
    signalWaitAnimation(0);
    screens::showBox(u"\n\n재생 파일 읽기를 실패 하였습니다.", platform::kOneButton);
    return 0;
}

Answer onUsbStorage(Window, std::uint32_t, WParam wParam, LParam lParam) {
    constexpr std::int64_t kHighest =
        std::numeric_limits<std::int64_t>::max() - catalogue::kFirstUsbVolume;
    // A negative index names no USB volume, though behind the cards' slots it would name a card.
    constexpr std::int64_t kNoVolume = -1;
    const std::int64_t index = lParam;
    const std::int64_t slot =
        index < 0 || index > kHighest ? kNoVolume : index + catalogue::kFirstUsbVolume;
    reportStorage(wParam, slot);
    if (wParam == kVolumeGone && appState.connectMode == 1 && settings::usbSetupFileExists() == 0) {
        postToProcessManager(kClosePlayer, 0);
    }
    return 0;
}

Answer onMuteNotification(Window, std::uint32_t, WParam wParam, LParam) {
    appState.muted = wParam == 1 ? 1 : 0;
    screens::refreshVolume();
    return 0;
}

Answer onBroadcast(Window, std::uint32_t, WParam, LParam) {
    return screens::slideBroadcast();
}

Answer onRecorderQuery(Window, std::uint32_t, WParam, LParam) {
    return appState.screenMode == kHalfWidth ? 1 : 0;
}

Answer onNavigation(Window, std::uint32_t, WParam wParam, LParam) {
    constexpr WParam kHidePicture = 2;
    platform::print("[Reelvue]%s : wParam(%d)\r\n", "DoOrviBroadcastMain",
                    static_cast<int>(wParam));
    if (wParam == kHidePicture) {
        screens::setVideoHidden(1);
    }
    return 0;
}

// The navigation has taken the sound system over and given it back: the file is opened once more
// at the same place.
Answer onEndPoint(Window, std::uint32_t, WParam, LParam) {
    const double position = appState.filterControl.GetPosition();
    const std::int32_t stateBefore = appState.persisted.playState;
    Player::stopPlayback();
    if (appState.screenMode == kSlideBanner) {
        screens::setScreenMode(appState.previousScreenMode);
    }
    Player::playAgain(stateBefore, position);
    return 0;
}

Answer onSystemBroadcast(Window, std::uint32_t, WParam wParam, LParam lParam) {
    constexpr WParam kVehicleSpeed = 1;
    constexpr std::int32_t kNoSignal = -1;
    appState.systemBroadcastValue =
        wParam == kVehicleSpeed ? static_cast<std::int32_t>(lParam) : kNoSignal;
    return 0;
}

}  // namespace shell
