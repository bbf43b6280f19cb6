// What the player's operations ask of the window around them. Declared once; defined once by the
// program (shell/player_host.cpp) and once by the tests, which write down what is asked.
#pragma once

#include <cstdint>

namespace Player::host {

// Marks what has to be drawn again: everything, the volume bar and mute key, or the file list.
void refreshScreen();
void refreshVolume();
void refreshFileList();

// Playback has stopped: the position display stands at 0.
void clearProgress();

// A message box without a title, open until it is answered. Its message loop lets the next requests
// in.
void showNotice(const char16_t* text);
// The same with the buttons yes and no: whether it was answered yes.
[[nodiscard]] bool ask(const char16_t* question);

// Changes the screen mode.
void showMode(std::int32_t mode);

// Hands the mode's video rectangle to the graph.
void placeVideo();
// Shows the video layer.
void showVideo();

// Shows or ends the waiting animation.
enum class Waiting { Ended = 0, Shown = 1 };
void signalWaitAnimation(Waiting waiting);

// Posts the remote control's play key to the player's own window.
void postPlayKey();

// Tells every process that the mute key was used.
void broadcastMute();

}  // namespace Player::host
