#include <cwchar>

#include "simulator/tape/faults.h"
#include "simulator/tape/registered.h"
#include "simulator/tape/tap.h"
#include "simulator/tape/tape.h"

namespace tap {
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

bool leavesThePlayer(UINT message) {
    return message == WM_COPYDATA || tape::registeredMessage(message) != nullptr;
}

}  // namespace

void WINAPI debugString(const wchar_t* text) {
    tape::Line("debug").text("text", text);
    OutputDebugStringW(text);
}

BOOL WINAPI postMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const tape::Message* known = tape::registeredMessage(message);
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
    cutPowerWhenDue();
    return result;
}

LRESULT WINAPI sendMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const LRESULT result = SendMessageW(window, message, wParam, lParam);
    if (leavesThePlayer(message)) {
        cutPowerWhenDue();
    }
    return result;
}

}  // namespace tap
