#include "simulator/processes/peer.h"

#include <cstdlib>
#include <cwchar>

#include "simulator/tape/registered.h"

namespace peer {
namespace {

Peer self;
UINT requestMessage;

// A message posted to every window reaches the hidden witness too. The witness is topmost, and
// broadcasts are handed out from the top of the z-order down, so its copy always comes first: the
// copy for the real window that follows is then known to be one of a broadcast, and that is
// recorded once for the whole unit by the program that runs it.
MSG lastWitnessed;

LRESULT CALLBACK witnessProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (tape::registeredMessage(message) != nullptr) {
        lastWitnessed = {window, message, wParam, lParam, 0, {}};
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

bool isBroadcastCopy(UINT message, WPARAM wParam, LPARAM lParam) {
    const bool same = lastWitnessed.message == message && lastWitnessed.wParam == wParam &&
                      lastWitnessed.lParam == lParam;
    if (same) {
        lastWitnessed = {};
    }
    return same;
}

LRESULT receive(const tape::Message& known, UINT message, WPARAM wParam, LPARAM lParam) {
    const bool sent = InSendMessageEx(nullptr) != ISMEX_NOSEND;
    if (!sent && isBroadcastCopy(message, wParam, lParam)) {
        return 0;
    }
    tape::recordMessage(sent ? "send" : "post", known.sender, self.name, known.name, wParam,
                        lParam);
    if (sent && self.answerAfter > 0) {
        Sleep(self.answerAfter);
    }
    return self.react == nullptr ? 0 : self.react({&known, wParam, lParam});
}

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (const tape::Message* known = tape::registeredMessage(message)) {
        return receive(*known, message, wParam, lParam);
    }
    if (message == requestMessage && self.request != nullptr) {
        self.request(wParam);
        return 1;
    }
    if (message == WM_COPYDATA) {
        tape::recordCopyData(tape::kPlayer, self.name,
                             *reinterpret_cast<const COPYDATASTRUCT*>(lParam));
        if (self.answerAfter > 0) {
            Sleep(self.answerAfter);
        }
        return TRUE;
    }
    if (message == WM_DESTROY) {
        PostQuitMessage(0);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND createHidden(const wchar_t* className, const wchar_t* title, WNDPROC procedure, DWORD style) {
    WNDCLASSW description = {};
    description.lpfnWndProc = procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = className;
    RegisterClassW(&description);
    return CreateWindowExW(style, className, title, WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                           description.hInstance, nullptr);
}

}  // namespace

int run(const Peer& peer) {
    self = peer;
    requestMessage = RegisterWindowMessageW(kRequestMessage);
    const HWND witness =
        createHidden(L"headunit.witness", L"", witnessProcedure, WS_EX_TOPMOST | WS_EX_TOOLWINDOW);
    if (witness == nullptr ||
        createHidden(peer.title, peer.title, windowProcedure, WS_EX_TOOLWINDOW) == nullptr) {
        return 1;
    }
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}

void postToPlayer(const char* name, const char* message, WPARAM wParam, LPARAM lParam) {
    const HWND player = FindWindowW(nullptr, L"Video");
    if (player == nullptr) {
        return;
    }
    tape::recordMessage("post", name, tape::kPlayer, message, wParam, lParam);
    PostMessageW(player, RegisterWindowMessageA(message), wParam, lParam);
}

DWORD optionNumber(const wchar_t* commandLine, const wchar_t* option, DWORD fallback) {
    const wchar_t* found = std::wcsstr(commandLine, option);
    return found == nullptr
               ? fallback
               : static_cast<DWORD>(std::wcstoul(found + std::wcslen(option), nullptr, 10));
}

}  // namespace peer
