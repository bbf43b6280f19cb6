// What the screens do at each tick of the main window's timers, after the shell's own step.
#pragma once

#include <cstdint>

#include "platform/window.h"

namespace screens {

// Every timer of the main window. The file list and the hidden player follow none: what waits for a
// timer waits until another screen is entered.
void screenTimer(platform::WParam id);
[[nodiscard]] bool followsTimers(std::int32_t mode);

// The banner of screen 3 has ended: carries the pending key action out and leaves the screen.
void slideBannerEnded();

// Screen 3's handlers of WM_ACTIVATE and of the system-wide broadcast.
platform::Answer slideActivated(platform::WParam wParam, platform::LParam lParam);
platform::Answer slideBroadcast();

}  // namespace screens
