// The four screens as the shell sees them: what is loaded, drawn, touched and entered in the screen
// mode that is showing (0 full width, 1 half width, 2 file list, 3 slide banner). Modes without a
// screen do nothing. Window thread only.
#pragma once

#include <cstdint>

#include "ui/canvas.h"

namespace screens {

// Loads or unloads the bitmap set of a mode: 0 set A, 1 set B, 2 set C, 3 set D. A file that is
// missing leaves its slot empty, and what is drawn from it is left out.
void loadScreen(std::int32_t mode);
void unloadScreen(std::int32_t mode);
// Whether any bitmap of the mode's set is loaded; false for a mode without a screen.
[[nodiscard]] bool isScreenLoaded(std::int32_t mode);

// Draws what is damaged of the current screen into the main window.
void paintWindow();

// Touches in client pixels of the main window.
void mouseDown(std::int32_t x, std::int32_t y);
void mouseMove(std::int32_t x, std::int32_t y);
void mouseUp(std::int32_t x, std::int32_t y);

// Called when setScreenMode enters a mode (after the window was placed, before the refresh) and
// leaves the file list.
void enterScreen(std::int32_t mode);
void leaveFileList();

// Where the picture is shown in a mode, in client pixels of the main window.
[[nodiscard]] ui::Rect videoRectangle(std::int32_t mode);

}  // namespace screens
