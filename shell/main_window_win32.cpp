#include "shell/main_window.h"

#include <windows.h>

#include "platform/wide.h"
#include "shell/message_table.h"

namespace shell {
namespace {

constexpr wchar_t kStartGate[] = L"Video.start";
constexpr DWORD kLongestStart = 5000;  // milliseconds

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return dispatchMessage(window, message, wParam, lParam);
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

bool registerWindowClass(platform::Instance instance) {
    WNDCLASSW windowClass{};
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = windowProcedure;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = platform::wide(kWindowName);
    return RegisterClassW(&windowClass) != 0;
}

platform::Window createMainWindow(platform::Instance instance, int left, int width, int height,
                                  StartGate& gate) {
    const wchar_t* const name = platform::wide(kWindowName);
    return CreateWindowExW(0, name, name, WS_VISIBLE, left, 0, width, height, nullptr, nullptr,
                           instance, &gate);
}

void openStartGate(platform::LParam creation) {
    const auto* const parameters = reinterpret_cast<const CREATESTRUCTW*>(creation);
    if (parameters->lpCreateParams != nullptr) {
        static_cast<StartGate*>(parameters->lpCreateParams)->open();
    }
}

void showFirst(platform::Window window, int show) {
    ShowWindow(window, show);
    UpdateWindow(window);
}

int runMessageLoop() {
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

}  // namespace shell
