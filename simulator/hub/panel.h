// The panel beside the unit's screen: everything that happens around the player, as keys on pages,
// what the unit is doing, and the tape as it grows. Whatever is pressed is a verb of the `headunit`
// command, which the panel runs and which puts it on the tape. Windows only.
#pragma once

#include <windows.h>

#include <span>
#include <string>

#include "simulator/hub/hub.h"

namespace hub {

inline constexpr int kPanelLeft = 800;
inline constexpr int kPanelHeight = 480;
// From here on a caption has room for its key, and the tape for the kind of its lines.
inline constexpr int kWidePanel = 320;
inline constexpr wchar_t kPanelFace[] = L"NanumGothicCoding";  // its backslash is one

// Opens the panel right of the screen, `width` pixels wide. Null when the window cannot be made.
HWND openPanel(HINSTANCE instance, int width);

// From any thread: a box over the panel shall say why a command that the panel ran was refused,
// UTF-8. False without a panel.
bool tellPanel(const std::string& why);

// To be asked before a message is dispatched: true when it was a key of the panel.
bool translatePanelKey(HWND panel, MSG& message);

// --- panel_layout.cpp: the controls ---

// Numbers of the controls that are more than a button.
enum ControlNumber : int {
    kPages = 90,
    kStatus,
    kTapeList,
    kSlotChoice = 100,
    kFolderText,
    kSpeedText,
    kMessageChoice,
    kMeaningChoice,
    kFirstText,
    kSecondText,
    kConnectText,
    kRecordText,
    kSecondsText,
    kFaultChoice,
    kFaultText,
    kFirstControl = 200,  // those without a number of their own
};

using Press = void (*)(HWND panel);

struct Control {
    int page;
    int row;
    int left;             // in twelfths of the page's width
    int width;            // likewise
    const wchar_t* kind;  // Windows' name of the class
    const wchar_t* text;  // caption, or what stands in the field at first
    int number = 0;       // 0: nobody asks for it
    const char* verb =
        nullptr;            // a button's: words of `headunit`; "{103}" is what control 103 holds
    Press press = nullptr;  // what the button does instead
    WORD shortcut = 0;      // virtual key; 0 none
};

std::span<const Control> controls();
// The control's own number, counted from kFirstControl where it has none.
int numberOf(const Control& control);
// Makes all of them; the first page shows.
void createControls(HWND panel, int width);
void showPage(HWND panel, int page);
HFONT panelFont();
// What an edit control or a choice holds.
std::wstring textOf(HWND panel, int control);

// --- panel.cpp ---

// Starts `headunit` with these words for this unit; returns at once. When it is refused it asks the
// hub for tellPanel(): Wine hands no pipe on to a program of the PC.
void runHeadunit(HWND panel, const Words& words);

// --- panel_box.cpp: the panel's dialogs stand over it, where the player's window never comes ---

// Tells the user something, and returns when the box is answered.
void showBox(HWND panel, const std::wstring& text, const wchar_t* title);
// Moves a dialog of the panel there.
void placeOverPanel(HWND panel, HWND dialog);

// --- panel_keyboard.cpp ---

// From now on every key of the PC goes to the panel, or to its box, whichever window is in front.
void takeKeyboard(HWND panel, HINSTANCE instance);
// The control that had the keyboard gets it back with the panel.
void onActivate(HWND panel, bool active);

// --- panel_storage.cpp: the slots ---

// Puts the folder that the chosen slot shows into its field; unless `always`, only when it has
// changed and the user has not typed another.
void showSlot(HWND panel, bool always);
void insertCard(HWND panel);
void removeCard(HWND panel);
// Lets the user choose a folder of the PC for the field.
void browse(HWND panel);

// --- panel_tape.cpp ---

void createTapeList(HWND panel, const RECT& area);
// Adds what is new on the tape to the panel's list.
void showTape(HWND list);

}  // namespace hub
