// The bitmaps of the skin in memory.
#pragma once

#include "platform/window.h"
#include "ui/screen_state.h"

namespace ui {

// The folders of the sets, A to D, on the unit's resident flash.
inline constexpr char16_t kSkinFolder[] = u"\\ResidentFlash\\Image\\Movie\\";

// Loads every file of the set from below `folder` into its slot; one that cannot be loaded leaves
// its slot empty. What the set held before is released. `window` gives the format of the
// background cache.
void loadSet(SkinSet set, ScreenState& screens, platform::Window window,
             const char16_t* folder = kSkinFolder);
void unloadSet(SkinSet set, ScreenState& screens);

// Whether anything of the set is in memory.
bool isSetLoaded(SkinSet set, const ScreenState& screens);

// In pixels; 0 x 0 for a slot that is empty.
Size bitmapSize(const ScreenState& screens, Bitmap bitmap);

}  // namespace ui
