// The four screens as the shell sees them: what is loaded, drawn, touched and timed in the screen
// mode that is showing (0 full width, 1 half width, 2 file list, 3 slide banner). Modes without a
// screen do nothing. Window thread only.
#pragma once

#include <windows.h>

namespace ui {

// Loads or unloads the bitmap set of a mode: 0 set A, 1 set B, 2 set C, 3 set D. A file that is
// missing leaves its slot empty, and what is drawn from it is left out.
void loadScreen(int mode);
void unloadScreen(int mode);
// Whether any bitmap of the mode's set is loaded; false for a mode without a screen.
[[nodiscard]] bool isScreenLoaded(int mode);

// Draws the current screen into `target`, an 800 x 480 back buffer, with `source` to select its
// bitmaps into. Only what meets `damaged` needs to be drawn; the screen may narrow it.
void paintScreen(HDC target, HDC source, RECT& damaged);

// Touches in client pixels of the main window.
void mouseDown(int x, int y);
void mouseMove(int x, int y);
void mouseUp(int x, int y);

// Every timer of the main window, after the shell's own step. The file list and the hidden player
// follow none: what waits for a timer waits until another screen is entered.
void screenTimer(UINT_PTR id);
bool followsTimers(int mode);

// Called when setScreenMode enters a mode (after the window was placed, before the refresh) and
// leaves the file list.
void enterScreen(int mode);
void leaveFileList();

// Screen 3's handlers of WM_ACTIVATE and of the system-wide broadcast.
LRESULT slideActivated(WPARAM wParam, LPARAM lParam);
LRESULT slideBroadcast(WPARAM wParam, LPARAM lParam);

// The banner of screen 3 has ended: carries the pending key action out and leaves the screen.
void slideBannerEnded();

// Where the picture is shown in a mode, in client pixels of the main window.
RECT videoRectangle(int mode);

// Marks what has to be drawn anew: everything, the volume bar and mute key, or the file list with
// its rows.
void refreshScreen();
void refreshVolume();
// What the cover says about the sound, while the car drives.
void refreshSoundSentence();
void refreshFileList();

// Playback has stopped: nothing is shown as played, the position display stands at 0.
void clearProgress();

// A message loop of its own (a message box) may have swallowed the release of a touch: forgets it.
void forgetTouch();

}  // namespace ui
