// The window procedure's dispatch.
#pragma once

#include "platform/window.h"

namespace shell {

// Hands the message to the first row of AppState::messageTable that names it, in table order, and
// without such a row to the system.
platform::Answer dispatchMessage(platform::Window window, std::uint32_t message,
                                 platform::WParam wParam, platform::LParam lParam);

}  // namespace shell
