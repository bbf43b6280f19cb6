// The program from its entry to its exit value.
#pragma once

#include "platform/window.h"

namespace shell {

// True when the first word of the first 32 characters is exactly "PIP".
[[nodiscard]] bool asksForHalfWidth(const char16_t* commandLine);

// Runs the player until its window is gone. A second start hands its wish to the running player
// and ends at once with 0; 0 as well when the window cannot be made. Otherwise the value of the
// quit message. `show` is the system's show flag.
int run(platform::Instance instance, const char16_t* commandLine, int show);

}  // namespace shell
