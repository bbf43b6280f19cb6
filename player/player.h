// The player's operations: what is played and when. They keep their state in AppState, mostly in
// its persisted record, and drive the graph there; what they ask of the window stands in host.h.
// Window thread only.
#pragma once

#include <cstdint>

namespace Player {

// --- session.cpp: from one run to the next -------------------------------------------------------

// Once, when the window is created: takes up where the last run ended.
void initialisePlayback();

// On exit: writes the record, stops, frees the lists and COM, tells the navigation application.
void saveAndClose();

// Tells the navigation application that it may take or leave the sound.
void OrviExecMutimedia(std::int32_t a, std::int32_t b);

// --- playback.cpp --------------------------------------------------------------------------------

// The play key: starts the selected file, pauses or resumes. Every file is started through it.
void OnPlay();

// Step through the play list with wrap-around; requests within 1700 ms of the last are ignored.
void OnNext();
void OnPrev();

// Stops and takes the graph apart; nothing when stopped already.
void stopPlayback();

// Stops the graph and takes it apart: on stop, before the next file, and when the window goes away
// without the exit request. Nothing without a graph.
void releaseGraph();

// --- open.cpp ------------------------------------------------------------------------------------

// The picture's width and height divided by their greatest common divisor, 0 when unknown.
struct PictureShape {
    std::uint32_t aspectX, aspectY;
};

// Renders and starts the file unless it must be refused: 1 playing, 0 refused or overtaken by
// another request while a message box was open.
[[nodiscard]] int openAndRun(const char16_t* path, const PictureShape& shape);

// --- controls.cpp --------------------------------------------------------------------------------

// Stores the position and seeks there; a file that then stands at 0 is taken as ended.
void seekTo(double seconds);

// One step, 0 to 10; a change always unmutes.
void volumeUp();
void volumeDown();
// The same towards a level chosen on the volume bar, 0 to 10; unmutes as well.
void setVolumeLevel(std::int32_t level);

// Toggles mute and broadcasts it.
void toggleMute();

// While the process manager asks for silence (1) the graph has volume 0, else the stored one (0).
void suppressAudio(std::int32_t suppressed);

// After a stop: opens the chosen file at `position` (seconds) as it was in `stateBefore` - played,
// paused again, or left stopped. A file that is refused stays stopped.
void playAgain(std::int32_t stateBefore, double position);

// The recording of the other camera that belongs to the same moment, at the same position;
// nothing when there is none.
void switchCamera();

// 1 rear, 0 front, -1 when the name of the recording tells neither.
std::int32_t cameraOfCurrentFile();

// --- recordings.cpp ------------------------------------------------------------------------------

// A volume arrived (1) or went away (0): stops what is played from it, lists again what is shown.
void storageChanged(std::int32_t arrived, std::int64_t slot);

// Deletes recording `index` of the browse listing after asking; the rest of the list plays on.
void DeleteBrowseFile(std::int32_t index);

// --- error_report.cpp ----------------------------------------------------------------------------

// Writes one line of kernel debug output for the results (32-bit HRESULT values) that it knows.
// `flag` has no effect. Always 0.
int reportRenderError(std::int32_t hr, int flag);

}  // namespace Player
