// The window procedure of the class "Video".
#pragma once

#include <windows.h>

namespace shell {

// Hands the message to the first row of AppState::messageTable that names it, in table order, and
// without such a row to the system.
LRESULT CALLBACK dispatchMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace shell
