// What a program of the unit sends, as far as nobody but its own process can see it: kernel debug
// output, which on the unit goes to the debug port, and registered messages that the player (or a
// second start of it) posts to the player's window. Both are put on the tape and passed on. Here
// the power is cut after a number of messages, and a window of the unit's own beside the player's
// tells when the player has taken what was on its way to it (tape/settled.h).
#include <cwchar>

#include "simulator/coredll/settings.h"
#include "simulator/tape/faults.h"
#include "simulator/tape/registered.h"
#include "simulator/tape/settled.h"
#include "simulator/tape/tape.h"

namespace coredll {
namespace {

// The message that the unit still sees when its power is cut is the last one that left the player.
void cutPowerWhenDue() {
    static LONG sent = 0;
    const DWORD limit = tape::fault(L"CutAfterMessages");
    if (limit != 0 && static_cast<DWORD>(InterlockedIncrement(&sent)) >= limit) {
        tape::Line("command").text("text", L"power cut");
        TerminateProcess(GetCurrentProcess(), 9);
    }
}

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

}  // namespace

void createSettledWindow() {
    WNDCLASSW description = {};
    description.lpfnWndProc = &settledProcedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = tape::kSettledClass;
    RegisterClassW(&description);
    CreateWindowExW(0, tape::kSettledClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                    description.hInstance, nullptr);
}

}  // namespace coredll

extern "C" {

void WINAPI unitOutputDebugStringW(const wchar_t* text) {
    if (coredll::isProgramOfUnit()) {
        tape::Line("debug").text("text", text);
    }
    OutputDebugStringW(text);
}

BOOL WINAPI unitPostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const tape::Message* const known =
        coredll::isProgramOfUnit() ? tape::registeredMessage(message) : nullptr;
    if (known == nullptr) {
        return PostMessageW(window, message, wParam, lParam);
    }
    // Other windows record what reaches them; the player's own does not.
    wchar_t title[16] = {};
    if (window != HWND_BROADCAST && GetWindowTextW(window, title, 16) > 0 &&
        std::wcscmp(title, L"Video") == 0) {
        tape::recordMessage("post", tape::kPlayer, tape::kPlayer, known->name, wParam, lParam);
    }
    const BOOL result = PostMessageW(window, message, wParam, lParam);
    coredll::cutPowerWhenDue();
    return result;
}

LRESULT WINAPI unitSendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const LRESULT result = SendMessageW(window, message, wParam, lParam);
    if (coredll::isProgramOfUnit() &&
        (message == WM_COPYDATA || tape::registeredMessage(message) != nullptr)) {
        coredll::cutPowerWhenDue();
    }
    return result;
}

}  // extern "C"
