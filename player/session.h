// What the units of the player share among themselves.
#pragma once

#include <cstdint>

#include "player/player.h"

namespace Player {

// Looks into the file and keeps the picture's shape and the audio format in AppState.
PictureShape probeFile(const char16_t* path);

// Whether request number `request` is no longer the last: a message box runs a message loop of its
// own, in which the next request or a stop may arrive.
[[nodiscard]] bool isOvertaken(std::uint32_t request);

// Writes the persisted record, except while the dash camera's storage is viewed: the file then
// belongs to the ordinary mode.
void saveState();

// Sets the graph's volume to the stored level, or to silence while the process manager wants it.
void applyVolume();

}  // namespace Player
