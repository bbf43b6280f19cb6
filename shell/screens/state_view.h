// The player's record as the screens draw it. Windows only.
#pragma once

#include "ui/list_screen.h"
#include "ui/player_layout.h"
#include "ui/view.h"

namespace ui {

// `fileName` points into the record.
PlayerView playerView();

// Fills the rows anew.
ListView listView();

// The layout of a playback screen: mode 1 half width, else full width.
const PlayerLayout& layoutOf(int mode);

}  // namespace ui
