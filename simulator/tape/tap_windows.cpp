#include <cwchar>

#include "simulator/tape/settled.h"
#include "simulator/tape/tap.h"
#include "simulator/tape/tape.h"

namespace tap {
namespace {

LRESULT CALLBACK settledProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == tape::kSettledQuestion) {
        SetTimer(window, wParam, USER_TIMER_MINIMUM, nullptr);
        return 0;
    }
    if (message == WM_TIMER) {
        KillTimer(window, wParam);
        const HANDLE event =
            OpenEventW(EVENT_MODIFY_STATE, FALSE, tape::settledEvent(wParam).c_str());
        if (event != nullptr) {
            SetEvent(event);
            CloseHandle(event);
        }
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void createSettledWindow() {
    WNDCLASSW description = {};
    description.lpfnWndProc = &settledProcedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = tape::kSettledClass;
    RegisterClassW(&description);
    CreateWindowExW(0, tape::kSettledClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                    description.hInstance, nullptr);
}

}  // namespace

HWND WINAPI createWindow(DWORD extended, const wchar_t* className, const wchar_t* title,
                         DWORD style, int left, int top, int width, int height, HWND parent,
                         HMENU menu, HINSTANCE program, void* parameter) {
    const HWND window = CreateWindowExW(extended, className, title, style, left, top, width, height,
                                        parent, menu, program, parameter);
    const DWORD error = GetLastError();
    if (window != nullptr && title != nullptr && std::wcscmp(title, L"Video") == 0) {
        createSettledWindow();
    }
    SetLastError(error);
    return window;
}

}  // namespace tap
