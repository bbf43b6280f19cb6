// The PC's keyboard is the panel's: the unit has none, and the player's windows take it whenever
// they come to the front.
#include "simulator/hub/panel.h"

namespace hub {
namespace {

HWND keyboardPanel = nullptr;
HWND focused = nullptr;  // the panel's control that had the keyboard when the panel lost it

// Before Windows decides which window a key goes to.
LRESULT CALLBACK takeKeys(int code, WPARAM message, LPARAM key) {
    DWORD process = 0;
    GetWindowThreadProcessId(GetForegroundWindow(), &process);
    if (code == HC_ACTION && process != GetCurrentProcessId()) {
        SetForegroundWindow(GetLastActivePopup(keyboardPanel));
    }
    return CallNextHookEx(nullptr, code, message, key);
}

}  // namespace

void takeKeyboard(HWND panel, HINSTANCE instance) {
    keyboardPanel = panel;
    SetWindowsHookExW(WH_KEYBOARD_LL, &takeKeys, instance, 0);
}

void onActivate(HWND panel, bool active) {
    if (!active) {
        focused = GetFocus();
    } else if (IsChild(panel, focused) && IsWindowVisible(focused)) {
        SetFocus(focused);
    } else {
        SetFocus(panel);
    }
}

}  // namespace hub
