// Entry of the program that runs the unit: its hidden window sees every broadcast and carries the
// one-second clock of the vehicle's speed.
#include <cwchar>

#include "simulator/hub/hub.h"
#include "simulator/hub/panel.h"
#include "simulator/tape/registered.h"
#include "simulator/tape/tape.h"

namespace {

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (const tape::Message* known = tape::registeredMessage(message)) {
        // Nobody sends this window anything by its name: what arrives went to all.
        if (!hub::isOwnBroadcast(message)) {
            tape::recordMessage("broadcast", known->sender, "all", known->name, wParam, lParam);
        }
        return 0;
    }
    switch (message) {
        case hub::kTakenQuestion:
            SetTimer(window, hub::kTakenTimer, USER_TIMER_MINIMUM, nullptr);
            return 0;
        case WM_TIMER:
            if (wParam == hub::kTakenTimer) {
                KillTimer(window, wParam);
                hub::inputTaken();
            } else {
                hub::speedTick();
            }
            return 0;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

HWND createWindow(HINSTANCE instance) {
    WNDCLASSW description = {};
    description.lpfnWndProc = windowProcedure;
    description.hInstance = instance;
    description.lpszClassName = L"headunit.hub";
    RegisterClassW(&description);
    return CreateWindowExW(WS_EX_TOOLWINDOW, description.lpszClassName, L"", WS_POPUP, 0, 0, 0, 0,
                           nullptr, nullptr, instance, nullptr);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR commandLine, int) {
    SetCurrentDirectoryW(L"H:\\");
    tape::begin();
    const HWND window = createWindow(instance);
    hub::setHubWindow(window);
    if (window == nullptr || !hub::startServer()) {
        return 1;
    }
    SetTimer(window, hub::kSpeedTimer, 1000, nullptr);
    const wchar_t* const wanted = std::wcsstr(commandLine, L"--panel ");
    const HWND panel = wanted != nullptr ? hub::openPanel(instance, _wtoi(wanted + 8)) : nullptr;
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (hub::translatePanelKey(panel, message)) {
            continue;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}
