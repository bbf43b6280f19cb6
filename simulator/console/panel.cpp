#include "simulator/console/panel.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cwchar>
#include <string>

#include "simulator/command/json.h"
#include "simulator/console/hub.h"
#include "simulator/tape/messages.h"

namespace hub {
namespace {

constexpr wchar_t kFace[] = L"나눔고딕";
constexpr int kRow = 28;  // pixels from one row of controls to the next
constexpr UINT_PTR kTapeTimer = 1;
constexpr UINT kTapeMilliseconds = 200;
constexpr int kEndPatience = 2000;  // milliseconds

LRESULT choiceOf(HWND panel, int control) {
    return SendDlgItemMessageW(panel, control, CB_GETCURSEL, 0, 0);
}

void post(const char* message, long long wParam, long long lParam) {
    execute(std::string("message\tpost\t") + message + '\t' + std::to_string(wParam) + '\t' +
            std::to_string(lParam));
}

// Puts what was pressed on the tape as the verb of `headunit` that does the same.
void note(const std::string& verb) {
    execute("note\t" + verb);
}

// What the buttons do ---------------------------------------------------------------------------

void key(HWND, int number) {
    note(number == 5 ? "key prev" : (number == 6 ? "key next" : "key play"));
    post("ZEL_BSP_WMUSER_IR_KEY", number, 0);
}

void gesture(HWND, int number) {
    note(number == 1 ? "gesture prev" : "gesture next");
    post("ZEL_BSP_WMUSER_GESTURE", number, 0);
}

void mute(HWND, int on) {
    note(on != 0 ? "mute on" : "mute off");
    post("BSP_WMUSER_MUTE_NOTIFICATION", on, 0);
}

// A speed as the command takes it too: a whole number, decimal or 0x.
bool isSpeed(const std::string& text) {
    char* end = nullptr;
    errno = 0;
    const long long speed = std::strtoll(text.c_str(), &end, 0);
    return !text.empty() && *end == '\0' && errno == 0 && speed >= INT_MIN && speed <= INT_MAX;
}

void drive(HWND panel, int known) {
    const std::wstring text = textOf(panel, kSpeedText);
    const std::string speed = known != 0 ? narrow(text) : "off";
    if (known != 0 && !isSpeed(speed)) {
        showBox(panel, L"\"" + text + L"\" is no speed; write a whole number of km/h.", L"Drive");
        return;
    }
    note("drive " + speed);
    execute("speed\t" + speed);
}

void command(HWND panel, int) {
    const LRESULT choice = choiceOf(panel, kCommandChoice);
    const tape::Message* message = tape::findMessage("MSG_ProcessManagertoMovie");
    if (choice >= 0 && message != nullptr) {
        const tape::Meaning& meaning = message->meanings[static_cast<std::size_t>(choice)];
        const long long lParam = meaning.lParam == tape::kAny ? 0 : meaning.lParam;
        note(std::string("send ") + message->name + " " + std::to_string(meaning.wParam) + " " +
             std::to_string(lParam));
        post(message->name, meaning.wParam, lParam);
    }
}

void endPoint(HWND, int) {
    note("send MSG_ProcessManagerToOrviEndPoint 0 0");
    post("MSG_ProcessManagerToOrviEndPoint", 0, 0);
}

// An empty field takes the hand-over back.
void connectFolder(HWND panel, int) {
    const std::string folder = narrow(textOf(panel, kConnectText));
    note("connect " + (folder.empty() ? "off" : json::quoted(folder)));
    execute("connect\t" + folder);
}

// No process is told; a start powers the unit on again.
void cutPowerNow(HWND, int) {
    runHeadunit({L"cut", L"--stay"});
}

void playerDies(HWND, int) {
    note("cut --player");
    execute("kill\tmovie.exe");
}

void startAgain(HWND, int pip) {
    note(pip != 0 ? "restart --pip" : "restart");
    execute("kill\tmovie.exe");
    for (int waited = 0; waited < kEndPatience && isRunning(L"movie.exe"); waited += 10) {
        Sleep(10);
    }
    execute("power");
    execute(std::string("start\tmovie.exe\tH:\\\tH:\\ResidentFlash\\apps\\movie.exe") +
            (pip != 0 ? " PIP" : "") + "\toutput");
}

void askExit(HWND, int) {
    note("shutdown --stay");
    execute("shutdown");
}

void showHelp(HWND panel, int);

// Where everything stands ------------------------------------------------------------------------

struct Button {
    int row;
    int left;
    int width;
    const wchar_t* caption;
    void (*press)(HWND panel, int value);
    int value;
    WORD shortcut;  // virtual key; 0 none
};
constexpr auto kButtons = std::to_array<Button>({
    {0, 70, 84, L"Prev  F6", &key, 5, VK_F6},
    {0, 158, 84, L"Play  F5", &key, 7, VK_F5},
    {0, 246, 84, L"Next  F7", &key, 6, VK_F7},
    {0, 334, 80, L"Help  F1", &showHelp, 0, VK_F1},
    {1, 70, 84, L"Prev", &gesture, 1, 0},
    {1, 158, 84, L"Next", &gesture, 2, 0},
    {1, 246, 84, L"Mute on  F8", &mute, 1, VK_F8},
    {1, 334, 80, L"off  F9", &mute, 0, VK_F9},
    {2, 190, 110, L"Insert  F2", &insertCard, 1, VK_F2},
    {2, 304, 110, L"Remove  F3", &removeCard, 0, VK_F3},
    {3, 304, 110, L"&Browse...  Alt+B", &browse, 0, 0},
    {4, 130, 84, L"Drive  F4", &drive, 1, VK_F4},
    {4, 218, 112, L"Signal lost", &drive, 0, 0},
    {4, 334, 80, L"End point", &endPoint, 0, 0},
    {5, 304, 110, L"Send  F11", &command, 0, VK_F11},
    {6, 304, 110, L"Hand over", &connectFolder, 0, 0},
    {7, 8, 112, L"Power cut  F10", &cutPowerNow, 0, VK_F10},
    {7, 124, 84, L"Player dies", &playerDies, 0, 0},
    {7, 212, 52, L"Start", &startAgain, 0, 0},
    {7, 268, 66, L"Start PIP", &startAgain, 1, 0},
    {7, 338, 76, L"Exit  F12", &askExit, 0, VK_F12},
});

struct Label {
    int row;
    const wchar_t* text;
};
constexpr Label kLabels[] = {{0, L"Remote"}, {1, L"Gesture"},  {2, L"Storage"},    {3, L"Folder"},
                             {4, L"km/h"},   {5, L"Commands"}, {6, L"ConnectPath"}};

void showHelp(HWND panel, int) {
    std::wstring text;
    for (const Button& button : kButtons) {
        const std::wstring caption = button.caption;
        const auto mark = caption.find(L'&');
        if (button.shortcut != 0 || mark != std::wstring::npos) {
            text += (mark == std::wstring::npos ? caption : caption.substr(mark + 1)) + L"\n";
        }
    }
    // The box breaks the lines itself.
    text +=
        L"\nTab and Enter reach every control. Folder: the folder of the PC that the slot shows, "
        L"or nothing for the slot's own card; Browse chooses one, Insert puts it in. An empty "
        L"ConnectPath takes the hand-over back. After a power cut Start powers the unit on.\n"
        L"The list shows the tape: what passes between the processes, the newest last.";
    showBox(panel, text, L"Keys of the panel");
}

HFONT panelFont() {
    static const HFONT font = CreateFontW(14, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                                          DEFAULT_CHARSET, 0, 0, CLEARTYPE_QUALITY, 0, kFace);
    return font;
}

HWND add(HWND panel, const wchar_t* kind, const wchar_t* text, DWORD style, const RECT& area,
         int number) {
    const HWND control = CreateWindowExW(
        0, kind, text, WS_CHILD | WS_VISIBLE | style, area.left, area.top, area.right - area.left,
        area.bottom - area.top, panel, reinterpret_cast<HMENU>(static_cast<INT_PTR>(number)),
        GetModuleHandleW(nullptr), nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(panelFont()), FALSE);
    return control;
}

RECT place(int row, int left, int width) {
    const int top = 6 + row * kRow;
    return {left, top, left + width, top + kRow - 4};
}

void fillChoices(HWND panel) {
    fillSlots(panel);
    if (const tape::Message* message = tape::findMessage("MSG_ProcessManagertoMovie")) {
        for (const tape::Meaning& meaning : message->meanings) {
            const std::wstring text = std::to_wstring(meaning.wParam) + L"  " + wide(meaning.text);
            SendDlgItemMessageW(panel, kCommandChoice, CB_ADDSTRING, 0,
                                reinterpret_cast<LPARAM>(text.c_str()));
        }
    }
    SendDlgItemMessageW(panel, kCommandChoice, CB_SETCURSEL, 0, 0);
}

void createControls(HWND panel) {
    for (const Label& label : kLabels) {
        RECT area = place(label.row, 8, 76);
        area.top += 4;
        add(panel, L"STATIC", label.text, 0, area, -1);
    }
    for (std::size_t i = 0; i < kButtons.size(); ++i) {
        const Button& button = kButtons[i];
        add(panel, L"BUTTON", button.caption, WS_TABSTOP | BS_PUSHBUTTON,
            place(button.row, button.left, button.width), kFirstButton + static_cast<int>(i));
    }
    constexpr DWORD kChoice = WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST;
    RECT area = place(2, 70, 116);
    area.bottom += 160;
    add(panel, L"COMBOBOX", L"", kChoice, area, kVolumeChoice);
    area = place(5, 84, 216);
    area.bottom += 220;
    add(panel, L"COMBOBOX", L"", kChoice, area, kCommandChoice);
    constexpr DWORD kText = WS_TABSTOP | WS_BORDER | ES_AUTOHSCROLL;
    add(panel, L"EDIT", L"", kText, place(3, 70, 230), kFolderText);
    add(panel, L"EDIT", L"60", kText, place(4, 70, 56), kSpeedText);
    add(panel, L"EDIT", L"SDMMCDisk\\Record", kText, place(6, 84, 216), kConnectText);
    area = place(8, 4, kPanelWidth - 8);
    area.bottom = kPanelHeight - 4;
    add(panel, L"LISTBOX", L"", WS_VSCROLL | WS_HSCROLL | WS_BORDER | LBS_NOINTEGRALHEIGHT, area,
        kTapeList);
    SendDlgItemMessageW(panel, kTapeList, LB_SETHORIZONTALEXTENT, 900, 0);
    fillChoices(panel);
}

// Enter in a field does what the button beside it does; on a button it presses it.
void enter(HWND panel) {
    const int focus = GetDlgCtrlID(GetFocus());
    const auto index = static_cast<std::size_t>(focus - kFirstButton);
    if (focus == kFolderText) {
        insertCard(panel, 1);
    } else if (focus == kSpeedText) {
        drive(panel, 1);
    } else if (focus == kConnectText) {
        connectFolder(panel, 0);
    } else if (focus == kCommandChoice) {
        command(panel, 0);
    } else if (focus >= kFirstButton && index < kButtons.size()) {
        kButtons[index].press(panel, kButtons[index].value);
    }
}

void pressed(HWND panel, int number) {
    const auto index = static_cast<std::size_t>(number - kFirstButton);
    if (number >= kFirstButton && index < kButtons.size()) {
        kButtons[index].press(panel, kButtons[index].value);
    }
}

void onCommand(HWND panel, int control, int notification) {
    if (control == kVolumeChoice && notification == CBN_SELCHANGE) {
        showSlot(panel, true);
    } else if (control == IDOK) {
        enter(panel);
    } else if (notification == BN_CLICKED) {
        pressed(panel, control);
    }
}

LRESULT CALLBACK panelProcedure(HWND panel, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            createControls(panel);
            SetTimer(panel, kTapeTimer, kTapeMilliseconds, nullptr);
            return 0;
        case WM_TIMER:
            showTape(GetDlgItem(panel, kTapeList));
            showSlot(panel, false);
            return 0;
        case WM_COMMAND:
            onCommand(panel, LOWORD(wParam), HIWORD(wParam));
            return 0;
        case WM_CLOSE:
            return 0;
        default:
            return DefWindowProcW(panel, message, wParam, lParam);
    }
}

}  // namespace

std::wstring textOf(HWND panel, int control) {
    wchar_t text[1024] = {};
    GetDlgItemTextW(panel, control, text, 1024);
    return text;
}

HWND openPanel(HINSTANCE instance) {
    WNDCLASSW description = {};
    description.lpfnWndProc = panelProcedure;
    description.hInstance = instance;
    description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    description.lpszClassName = L"headunit.panel";
    RegisterClassW(&description);
    return CreateWindowExW(WS_EX_CONTROLPARENT, description.lpszClassName, L"Head unit",
                           WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, kPanelLeft, 0, kPanelWidth,
                           kPanelHeight, nullptr, nullptr, instance, nullptr);
}

bool translatePanelKey(HWND panel, MSG& message) {
    if (panel == nullptr || (message.hwnd != panel && !IsChild(panel, message.hwnd))) {
        return false;
    }
    if (message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN) {
        for (const Button& button : kButtons) {
            if (button.shortcut != 0 && message.wParam == button.shortcut) {
                button.press(panel, button.value);
                return true;
            }
        }
    }
    return IsDialogMessageW(panel, &message) != FALSE;
}

}  // namespace hub
