// Screen modes and where the picture stands in them.
#pragma once

#include <cstdint>

namespace screens {

// The one place where the screen mode changes (0 to 4): leave step of the old screen, window
// placement, enter step of the new one, video layer. The mode that is showing is entered once more;
// any other number does nothing.
void setScreenMode(std::int32_t mode);

// Hands the current mode's video rectangle to the graph; nothing while hidden. `repaint` 1 draws
// the current frame at once.
void placeVideo(int repaint);

// 10 or 12: shows or hides the video layer and remembers it in AppState.
void setVideoHidden(int hidden);

}  // namespace screens
