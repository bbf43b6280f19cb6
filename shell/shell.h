// Operations of the application shell that the other parts call.
#pragma once

#include <windows.h>

namespace shell {

// Timers of the main window.
enum TimerId : UINT_PTR {
    kPositionTimer = 100,   // 300 ms while a file is played
    kScreenTimer = 101,     // 300 ms from creation to destruction
    kBannerTimer = 102,     // 3000 ms, once
    kBarTimer = 103,        // 6000 ms, once
    kKeyLockTimer = 104,    // 1000 ms, once
    kExitReadyTimer = 105,  // 1000 ms until skin and play request are done
    kDrivingTimer = 110,    // 1000 ms
};
inline constexpr UINT kPositionPeriod = 300;
inline constexpr UINT kScreenPeriod = 300;
inline constexpr UINT kBannerPeriod = 3000;
inline constexpr UINT kBarPeriod = 6000;
inline constexpr UINT kKeyLockPeriod = 1000;
inline constexpr UINT kExitReadyPeriod = 1000;
inline constexpr UINT kDrivingPeriod = 1000;

// How long the half-width player waits before it starts a file and before it exits, milliseconds.
inline constexpr DWORD kHalfWidthPause = 700;

// Values of wParam in messages to the process manager.
enum ProcessManagerRequest : WPARAM {
    kGoHome = 0,
    kGoNavigation = 1,  // also: the file list was left towards the half-width player
    kMuteToggled = 3,   // broadcast
    kClosePlayer = 4,
    kSkinLoaded = 5,
    kHalfWidthShown = 6,
    kExitReady = 7,
};

// The one place where the screen mode changes (0 to 4): leave step of the old screen, window
// placement, enter step of the new one, video layer. The mode that is showing is entered once more;
// any other number does nothing.
void setScreenMode(int mode);

// Hands the current mode's video rectangle to the graph; nothing while hidden. `repaint` 1 draws
// the current frame at once.
void placeVideo(int repaint);

// 10 or 12: shows or hides the video layer and remembers it in AppState.
void setVideoHidden(int hidden);

// Posts to the process manager: 1, or 0 when there is none.
int postToProcessManager(WPARAM wParam, LPARAM lParam);

// Sends to the process manager and waits until it has answered.
void sendToProcessManager(WPARAM wParam, LPARAM lParam);

// 1 shows the waiting animation, 0 ends it; nothing while hidden or without one.
void signalWaitAnimation(int show);

// Toggles `muted` and broadcasts it (3, 0) to all top-level windows.
void toggleMute();

// Posts the remote control's key `key` to the player's own window (7: play).
void postRemoteKey(WPARAM key);
inline constexpr WPARAM kRemotePrevious = 5;
inline constexpr WPARAM kRemoteNext = 6;
inline constexpr WPARAM kRemotePlay = 7;

// What the process manager finds in the settings file when it starts programs again: written by
// the exit preparation (which program, which screen) and by the screens' own close keys.
void writeExitPreparation();
void writeScreenExit();

// Shows `text` in the board's message box, without a title, until it is answered.
void showNotice(const wchar_t* text);

}  // namespace shell
