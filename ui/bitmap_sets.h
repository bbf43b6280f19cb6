// The bitmaps of the skin in memory. Windows only.
#pragma once

#include <windows.h>

#include "ui/screen_state.h"

namespace ui {

// Loads every file of the set from the resident flash into its slot; one that cannot be loaded
// leaves its slot empty. What the set held before is released. `window` gives the format of the
// background cache.
void loadSet(SkinSet set, ScreenState& screens, HWND window);
void unloadSet(SkinSet set, ScreenState& screens);

}  // namespace ui
