// What has to be drawn again, and when.
#pragma once

namespace screens {

// Marks everything, the volume bar and mute key, or the file list with its rows.
void refreshScreen();
void refreshVolume();
// What the cover says about the sound, while the car drives.
void refreshSoundSentence();
void refreshFileList();

// Playback has stopped: nothing is shown as played, the position display stands at 0.
void clearProgress();

// A message loop of its own (a message box) may have swallowed the release of a touch: forgets it.
void forgetTouch();

}  // namespace screens
