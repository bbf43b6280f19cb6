// Where the unit's screen is seen: on a display of its own without a monitor (Xvfb), or in a window
// of the user's desktop.
#pragma once

#include <string>

#include "simulator/command/unit.h"

namespace headunit {

inline constexpr int kScreenWidth = 800;
inline constexpr int kScreenHeight = 480;
inline constexpr int kPanelWidth = 420;  // right of the screen, when it is wanted

// Starts an Xvfb of that width in pixels for the unit and keeps its number. False with the reason.
bool startOwnDisplay(const Unit& unit, int width, std::string& why);
// Uses the desktop of the user (DISPLAY).
void useDesktop(const Unit& unit, const std::string& display);

// The X window that shows the unit, and where it stands on its display. False when it cannot be
// found.
struct Place {
    std::string window;  // as xdotool and import take it
    int left = 0;
    int top = 0;
};
bool findPlace(const Unit& unit, Place& place);

// Takes a picture of the screen (800 x 480, PNG). False with the reason.
bool takePicture(const Unit& unit, const fs::path& file, std::string& why);

// Moves the pointer to a point of the screen, or of the panel beside it, and presses or releases.
enum class Pointer { Press, Release, Move };
bool movePointer(const Unit& unit, int x, int y, Pointer action, std::string& why);
// Releases where the pointer is.
bool releasePointer(const Unit& unit, std::string& why);

// Presses and releases a key of the PC's keyboard by the name that X gives it ("F2", "Return",
// "alt+b"), or types a text. What has the focus takes it. False with the reason.
bool pressKey(const Unit& unit, const std::string& key, std::string& why);
bool typeText(const Unit& unit, const std::string& text, std::string& why);

}  // namespace headunit
