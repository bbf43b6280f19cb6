// The panel beside the unit's screen: everything that the car does to the player, as buttons, and
// the tape as it grows. Windows only.
#pragma once

#include <windows.h>

namespace hub {

inline constexpr int kPanelLeft = 800;
inline constexpr int kPanelWidth = 420;
inline constexpr int kPanelHeight = 480;

// Opens the panel right of the screen. Null when the window cannot be made.
HWND openPanel(HINSTANCE instance);

// To be asked before a message is dispatched: true when it was a key of the panel.
bool translatePanelKey(HWND panel, MSG& message);

// panel_tape.cpp: adds what is new on the tape to the panel's list.
void showTape(HWND list);

}  // namespace hub
