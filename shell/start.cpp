#include "shell/start.h"

#include <algorithm>
#include <string_view>

#include "app/app_state.h"
#include "platform/display.h"
#include "platform/wide.h"
#include "shell/message_table.h"
#include "shell/registered_messages.h"
#include "shell/shell.h"

namespace shell {
namespace {

constexpr wchar_t kWindowName[] = L"Video";  // class and title
constexpr wchar_t kStartGate[] = L"Video.start";
constexpr DWORD kLongestStart = 5000;  // milliseconds

bool registerWindowClass() {
    WNDCLASSW windowClass{};
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = dispatchMessage;
    windowClass.hInstance = appState.hInstance;
    windowClass.lpszClassName = kWindowName;
    return RegisterClassW(&windowClass) != 0;
}

HWND createMainWindow(StartGate& gate) {
    constexpr int kHalf = kScreenWidth / 2;
    int left = 0, width = 0;
    if (appState.screenMode == kFullWidth) {
        width = kScreenWidth;
    } else if (appState.screenMode == kHalfWidth) {
        left = kHalf;
        width = kHalf;
    } else {
        return nullptr;  // the player starts with a player screen
    }
    return CreateWindowExW(0, kWindowName, kWindowName, platform::kMainWindowStyle, left, 0, width,
                           kScreenHeight, nullptr, nullptr, appState.hInstance, &gate);
}

void handOver(HWND running) {
    const UINT command = RegisterWindowMessageW(platform::wide(kRegisteredMessages[kCommandRow]));
    PostMessageW(running, command, appState.launchAsPip == 1 ? 1 : 0, 0);
    postToProcessManager(kSkinLoaded, 0);
}

}  // namespace

StartGate::StartGate()
    : mutex_(CreateMutexW(nullptr, FALSE, kStartGate)),
      held_(mutex_ != nullptr && WaitForSingleObject(mutex_, kLongestStart) != WAIT_TIMEOUT) {
}

StartGate::~StartGate() {
    open();
    if (mutex_ != nullptr) {
        CloseHandle(mutex_);
    }
}

void StartGate::open() {
    if (held_) {
        ReleaseMutex(mutex_);
        held_ = false;
    }
}

bool asksForHalfWidth(const wchar_t* commandLine) {
    constexpr std::size_t kExamined = 32;
    std::wstring_view line = std::wstring_view(commandLine).substr(0, kExamined);
    line.remove_prefix(std::min(line.find_first_not_of(L" \t"), line.size()));
    return line.substr(0, line.find_first_of(L" \t")) == L"PIP";
}

int run(HINSTANCE instance, const wchar_t* commandLine, int show) {
    appState.launchAsPip = asksForHalfWidth(commandLine) ? 1 : 0;
    StartGate gate;
    if (const HWND running = FindWindowW(nullptr, kWindowName)) {
        handOver(running);
        return 0;
    }
    appState.screenMode = appState.launchAsPip;
    appState.hInstance = instance;
    const HWND window = registerWindowClass() ? createMainWindow(gate) : nullptr;
    if (window == nullptr) {
        return 0;
    }
    ShowWindow(window, show);
    UpdateWindow(window);

    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    signalWaitAnimation(0);
    return static_cast<int>(message.wParam);
}

}  // namespace shell
