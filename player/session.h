// What the units of the player share among themselves.
#pragma once

namespace Player {

// Looks into the selected file and keeps the picture's shape and the audio format in AppState.
void probeFile();

// Writes the persisted record, except while the dash camera's storage is viewed: the file then
// belongs to the ordinary mode.
void saveState();

// Sets the graph's volume to the stored level, or to silence while the process manager wants it.
void applyVolume();

}  // namespace Player
