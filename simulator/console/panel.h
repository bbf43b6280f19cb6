// The panel beside the unit's screen: everything that the car does to the player, as buttons, and
// the tape as it grows. Windows only.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace hub {

inline constexpr int kPanelLeft = 800;
inline constexpr int kPanelWidth = 420;
inline constexpr int kPanelHeight = 480;

// Opens the panel right of the screen. Null when the window cannot be made.
HWND openPanel(HINSTANCE instance);

// To be asked before a message is dispatched: true when it was a key of the panel.
bool translatePanelKey(HWND panel, MSG& message);

// Numbers of the controls that are more than a button.
enum Control : int {
    kVolumeChoice = 100,
    kFolderText,
    kSpeedText,
    kCommandChoice,
    kConnectText,
    kTapeList,
    kFirstButton = 200,
};

// What an edit control holds.
std::wstring textOf(HWND panel, int control);

// panel_box.cpp: the panel's dialogs stand over it, where the player's window never comes.

// Tells the user something, and returns when the box is answered.
void showBox(HWND panel, const std::wstring& text, const wchar_t* title);
// Moves a dialog of the panel there.
void placeOverPanel(HWND dialog);

// panel_storage.cpp: the slots. All of it goes through the `headunit` command, as only a program of
// the PC can make a folder of the PC appear in the unit.

// Starts `headunit` with these words for this unit; returns at once. What it does is on the tape.
void runHeadunit(const std::vector<std::wstring>& words);
void fillSlots(HWND panel);
// Puts the folder that the chosen slot shows into its field; unless `always`, only when it has
// changed and the user has not typed another.
void showSlot(HWND panel, bool always);
void insertCard(HWND panel, int);
void removeCard(HWND panel, int);
// Lets the user choose a folder of the PC for the field.
void browse(HWND panel, int);

// panel_tape.cpp: adds what is new on the tape to the panel's list.
void showTape(HWND list);

}  // namespace hub
