// The panel's dialogs. While one is open the panel takes nothing: it must never be where the player
// can cover it.
#include <algorithm>

#include "simulator/hub/panel.h"

namespace hub {
namespace {

HHOOK watch = nullptr;  // of the thread that runs the panel, while its box is being opened
HWND owner = nullptr;

// Before the box becomes the active window for the first time.
LRESULT CALLBACK placeFirst(int code, WPARAM window, LPARAM parameter) {
    if (code == HCBT_ACTIVATE) {
        UnhookWindowsHookEx(watch);
        placeOverPanel(owner, reinterpret_cast<HWND>(window));
        return 0;
    }
    return CallNextHookEx(watch, code, window, parameter);
}

}  // namespace

void showBox(HWND panel, const std::wstring& text, const wchar_t* title) {
    owner = panel;
    watch = SetWindowsHookExW(WH_CBT, &placeFirst, nullptr, GetCurrentThreadId());
    MessageBoxW(panel, text.c_str(), title, MB_OK);
}

void placeOverPanel(HWND panel, HWND dialog) {
    RECT area = {};
    RECT around = {};
    GetWindowRect(dialog, &area);
    GetWindowRect(panel, &around);
    const LONG width = area.right - area.left;
    const LONG height = area.bottom - area.top;
    const LONG left = std::max(around.left, (around.left + around.right - width) / 2);
    const LONG top = std::max<LONG>(0, (kPanelHeight - height) / 2);
    SetWindowPos(dialog, HWND_TOPMOST, left, top, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE);
}

}  // namespace hub
