// Entry of the program that runs the unit: its hidden window sees every broadcast and carries the
// one-second clock of the vehicle's speed.
#include <cwchar>

#include "simulator/console/hub.h"
#include "simulator/console/panel.h"
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
        case WM_TIMER:
            hub::speedTick();
            return 0;
        case hub::kQuitMessage:
            hub::killAllChildren();
            PostQuitMessage(0);
            return 0;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

HWND createWindow(HINSTANCE instance) {
    WNDCLASSW description = {};
    description.lpfnWndProc = windowProcedure;
    description.hInstance = instance;
    description.lpszClassName = L"headunit.unit";
    RegisterClassW(&description);
    return CreateWindowExW(WS_EX_TOOLWINDOW, description.lpszClassName, L"", WS_POPUP, 0, 0, 0, 0,
                           nullptr, nullptr, instance, nullptr);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR commandLine, int) {
    SetCurrentDirectoryW(L"H:\\");
    tape::begin();
    const HWND window = createWindow(instance);
    if (window == nullptr || !hub::startServer(window)) {
        return 1;
    }
    SetTimer(window, hub::kSpeedTimer, 1000, nullptr);
    const bool wanted = std::wcsstr(commandLine, L"--panel") != nullptr;
    const HWND panel = wanted ? hub::openPanel(instance) : nullptr;
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
