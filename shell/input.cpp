// Touches, gestures and the remote control.
#include <windows.h>
#include <windowsx.h>

#include "app/app_state.h"
#include "player/player.h"
#include "shell/handlers.h"
#include "shell/screens/screens.h"
#include "shell/shell.h"

namespace shell {

LRESULT onActivate(HWND, UINT, WPARAM wParam, LPARAM lParam) {
    return ui::slideActivated(wParam, lParam);
}

LRESULT onMouseDown(HWND, UINT, WPARAM, LPARAM lParam) {
    ui::mouseDown(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
    return 0;
}

LRESULT onMouseUp(HWND, UINT, WPARAM, LPARAM lParam) {
    ui::mouseUp(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
    appState.pendingKeyAction = kNoAction;
    return 0;
}

LRESULT onMouseMove(HWND, UINT, WPARAM, LPARAM lParam) {
    ui::mouseMove(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
    return 0;
}

LRESULT onGesture(HWND, UINT, WPARAM wParam, LPARAM) {
    // The numbers of the gestures run against those of the actions. Required.
    constexpr WPARAM kGesturePrevious = 1, kGestureNext = 2;
    if (wParam == kGesturePrevious) {
        appState.pendingKeyAction = kPreviousFile;
    } else if (wParam == kGestureNext) {
        appState.pendingKeyAction = kNextFile;
    }
    return 0;
}

LRESULT onRemoteKey(HWND, UINT, WPARAM wParam, LPARAM) {
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
