// The player's operations: what is played and when. They keep their state in AppState, mostly in
// its persisted record, and drive the graph there. Window thread only.
#pragma once

#include <cstdint>

namespace Player {

// Once, when the window is created: takes up where the last run ended.
void initialisePlayback();

// The play key: starts the selected file, pauses or resumes. Every file is started through it.
void OnPlay();

// Step through the play list with wrap-around; requests within 1700 ms of the last are ignored.
void OnNext();
void OnPrev();

// Stops and takes the graph apart; nothing when stopped already.
void stopPlayback();

// On exit: writes the record, stops, frees the lists and COM, tells the navigation application.
void saveAndClose();

// Stops the graph and takes it apart: on stop, before the next file, and when the window goes away
// without the exit request. Nothing without a graph.
void releaseGraph();

// Renders and starts the file unless it must be refused: 1 playing, 0 refused.
[[nodiscard]] int openAndRun(const char16_t* path);

// Stores the position and seeks there; a file that then stands at 0 is taken as ended.
void seekTo(double seconds);

// One step, 0 to 10; a change always unmutes.
void volumeUp();
void volumeDown();
// The same towards a level chosen on the volume bar, 0 to 10; unmutes as well.
void setVolumeLevel(std::int32_t level);

// Toggles mute and broadcasts it.
void toggleMute();

// After a stop: opens the chosen file at `position` (seconds) as it was in `stateBefore` - played,
// paused again, or left stopped. A file that is refused stays stopped.
void playAgain(std::int32_t stateBefore, double position);

// The recording of the other camera that belongs to the same moment, at the same position;
// nothing when there is none.
void switchCamera();

// 1 rear, 0 front, -1 when the name of the recording tells neither.
std::int32_t cameraOfCurrentFile();

// Tells the navigation application that it may take or leave the sound.
void OrviExecMutimedia(std::int32_t a, std::int32_t b);

// A volume arrived (1) or went away (0): stops what is played from it, lists anew what is shown.
void storageChanged(std::int32_t arrived, std::int64_t slot);

// Deletes recording `index` of the browse listing after asking; the rest of the list plays on.
void DeleteBrowseFile(std::int32_t index);

// Writes one line of kernel debug output for the HRESULTs it knows. `flag` has no effect.
int reportRenderError(long hr, int flag);

}  // namespace Player
