// The other processes of the unit, found by the titles of their windows. One that is missing turns
// what is sent to it into nothing.
#pragma once

#include "platform/window.h"

namespace shell {

// Values of wParam in messages to the process manager.
enum ProcessManagerRequest : platform::WParam {
    kGoHome = 0,
    kGoNavigation = 1,  // also: the file list was left towards the half-width player
    kMuteToggled = 3,   // broadcast
    kClosePlayer = 4,
    kSkinLoaded = 5,
    kHalfWidthShown = 6,
    kExitReady = 7,
};

// Keys of the remote control.
enum RemoteKey : platform::WParam { kRemotePrevious = 5, kRemoteNext = 6, kRemotePlay = 7 };

// Posts to the process manager: 1, or 0 when there is none.
int postToProcessManager(platform::WParam wParam, platform::LParam lParam);

// Sends to the process manager and waits until it has answered.
void sendToProcessManager(platform::WParam wParam, platform::LParam lParam);

// 1 shows the waiting animation, 0 ends it; nothing while hidden or without one.
void signalWaitAnimation(int show);

// Tells all top-level windows that the mute key was used.
void broadcastMute();

// Posts a key of the remote control to the player's own window.
void postRemoteKey(RemoteKey key);

// What the process manager finds in the settings file when it starts programs again: written by
// the exit preparation (which program, which screen) and by the screens' own close keys.
void writeExitPreparation();
void writeScreenExit();

}  // namespace shell
