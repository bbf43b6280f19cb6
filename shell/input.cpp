// Touches, gestures and the remote control.
#include "app/app_state.h"
#include "player/player.h"
#include "shell/handlers.h"
#include "shell/peers/peers.h"
#include "shell/screens/screens.h"
#include "shell/screens/ticks.h"

namespace shell {
namespace {

// The two halves of a touch's lParam, as signed 16-bit numbers.
std::int32_t touchX(LParam lParam) {
    return static_cast<std::int16_t>(lParam & 0xFFFF);
}
std::int32_t touchY(LParam lParam) {
    return static_cast<std::int16_t>(lParam >> 16 & 0xFFFF);
}

}  // namespace

Answer onActivate(Window, std::uint32_t, WParam wParam, LParam lParam) {
    return screens::slideActivated(wParam, lParam);
}

Answer onMouseDown(Window, std::uint32_t, WParam, LParam lParam) {
    screens::mouseDown(touchX(lParam), touchY(lParam));
    return 0;
}

Answer onMouseUp(Window, std::uint32_t, WParam, LParam lParam) {
    screens::mouseUp(touchX(lParam), touchY(lParam));
    appState.pendingKeyAction = kNoAction;
    return 0;
}

Answer onMouseMove(Window, std::uint32_t, WParam, LParam lParam) {
    screens::mouseMove(touchX(lParam), touchY(lParam));
    return 0;
}

Answer onGesture(Window, std::uint32_t, WParam wParam, LParam) {
    // The numbers of the gestures run against those of the actions. Required.
    constexpr WParam kGesturePrevious = 1, kGestureNext = 2;
    if (wParam == kGesturePrevious) {
        appState.pendingKeyAction = kPreviousFile;
    } else if (wParam == kGestureNext) {
        appState.pendingKeyAction = kNextFile;
    }
    return 0;
}

Answer onRemoteKey(Window, std::uint32_t, WParam wParam, LParam) {
    switch (wParam) {
        case kRemotePrevious:
            if (appState.keyLock == 0) {
                Player::OnPrev();
            }
            break;
        case kRemoteNext:
            if (appState.keyLock == 0) {
                Player::OnNext();
            }
            break;
        case kRemotePlay:
            Player::OnPlay();
            break;
        default:
            break;
    }
    return 0;
}

}  // namespace shell
