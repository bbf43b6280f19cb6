// The PC's keyboard is the panel's: the unit has none, and the player's windows take it whenever
// they come to the front.
#include "simulator/hub/panel.h"

namespace hub {
namespace {

HWND keyboardPanel = nullptr;
HWND focused = nullptr;  // the panel's control that had the keyboard when the panel lost it

void pressAgain(const KBDLLHOOKSTRUCT& key) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = static_cast<WORD>(key.vkCode);
    input.ki.wScan = static_cast<WORD>(key.scanCode);
    input.ki.dwFlags = ((key.flags & LLKHF_UP) != 0 ? KEYEVENTF_KEYUP : 0) |
                       ((key.flags & LLKHF_EXTENDED) != 0 ? KEYEVENTF_EXTENDEDKEY : 0);
    SendInput(1, &input, sizeof(input));
}

// Before Windows decides which window a key goes to. Wine drops a key while whose hook another
// process's window comes to the front, so that key is pressed once more.
LRESULT CALLBACK takeKeys(int code, WPARAM message, LPARAM parameter) {
    const auto& key = *reinterpret_cast<const KBDLLHOOKSTRUCT*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(GetForegroundWindow(), &process);
    if (code == HC_ACTION && process != GetCurrentProcessId() &&
        (key.flags & LLKHF_INJECTED) == 0) {
        SetForegroundWindow(GetLastActivePopup(keyboardPanel));
        pressAgain(key);
        return 1;
    }
    return CallNextHookEx(nullptr, code, message, parameter);
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
