// The start's share of the window manager: the class "Video", its one window, the message loop, and
// the gate between two starts. Windows only; the native tests put a recorder in its place.
#pragma once

#include "platform/window.h"

namespace shell {

// Lets one start at a time look for a running player and make its window.
class StartGate {
public:
    StartGate();
    ~StartGate();
    StartGate(const StartGate&) = delete;
    StartGate& operator=(const StartGate&) = delete;

    void open();

private:
    void* mutex_;
    bool held_;
};

// Opens the gate that createMainWindow was given. `creation` is the lParam of WM_CREATE: from then
// on the window can be found.
void openStartGate(platform::LParam creation);

// Class and title of the window.
inline constexpr char16_t kWindowName[] = u"Video";

// Registers the class with dispatchMessage as its window procedure: false when that fails.
[[nodiscard]] bool registerWindowClass(platform::Instance instance);

// Creates the window at (left, 0) and hands it the gate; null when that fails.
[[nodiscard]] platform::Window createMainWindow(platform::Instance instance, int left, int width,
                                                int height, StartGate& gate);

// Shows and draws the window.
void showFirst(platform::Window window, int show);

// Handles messages until the quit message; its value.
int runMessageLoop();

}  // namespace shell
