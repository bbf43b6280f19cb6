// The player's record as the screens draw it.
#pragma once

#include <cstdint>

#include "ui/list_screen.h"
#include "ui/player_layout.h"
#include "ui/view.h"

namespace screens {

// `fileName` points into the record.
ui::PlayerView playerView();

// Fills the rows again.
ui::ListView listView();

// The layout of a playback screen: mode 1 half width, else full width.
const ui::PlayerLayout& layoutOf(std::int32_t mode);

// Whether the screen that is showing is one of the two playback screens.
[[nodiscard]] bool isPlaybackScreen();

}  // namespace screens
