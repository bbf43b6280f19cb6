// The window procedure's dispatch.
#pragma once

#include "platform/window.h"

namespace shell {

// Fills AppState::messageTable and the fields that keep numbers. A static initialiser has done it
// before the program's entry runs. Always true.
bool registerMessages();

// Hands the message to the first row of AppState::messageTable that names it, in table order, and
// without such a row to the system.
platform::Answer dispatchMessage(platform::Window window, std::uint32_t message,
                                 platform::WParam wParam, platform::LParam lParam);

}  // namespace shell
