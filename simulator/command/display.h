// Where the unit's screen is seen: on a display of its own without a monitor (Xvfb), or in a window
// of the user's desktop.
#pragma once

#include <string>

#include "simulator/command/unit.h"

namespace headunit {

inline constexpr int kScreenWidth = 800;
inline constexpr int kScreenHeight = 480;
// Right of the screen, when it is wanted; on a narrow desktop less.
inline constexpr int kPanelWidth = 420;
inline constexpr int kNarrowestPanel = 224;

// Both throw when there is no display.
// Starts an Xvfb of that width in pixels for the unit and keeps its number.
void startOwnDisplay(const Unit& unit, int width);
// Uses the desktop of the user; gives its width.
int useDesktop(const Unit& unit, const std::string& display);

}  // namespace headunit
