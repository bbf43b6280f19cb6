// The program from its entry to its exit value.
#pragma once

#include <windows.h>

namespace shell {

// Lets one start at a time look for a running player and make its window: a second start at the
// same moment then finds what the first has made. It is handed to WM_CREATE as creation parameter
// and opened there, because the window can be found from then on.
class StartGate {
public:
    StartGate();
    ~StartGate();
    StartGate(const StartGate&) = delete;
    StartGate& operator=(const StartGate&) = delete;

    void open();

private:
    HANDLE mutex_;
    bool held_;
};

// True when the first word of the first 32 characters is exactly "PIP".
[[nodiscard]] bool asksForHalfWidth(const wchar_t* commandLine);

// Runs the player until its window is gone. A second start hands its wish to the running player
// and ends at once with 0; 0 as well when the window cannot be made. Otherwise the value of the
// quit message.
int run(HINSTANCE instance, const wchar_t* commandLine, int show);

}  // namespace shell
