// What stands on the panel, and where. Five pages of at most six rows, each twelve parts wide;
// below them the status and the tape.
#include <windows.h>

#include <commctrl.h>

#include <array>

#include "simulator/hub/panel.h"
#include "simulator/shared/fault_names.h"
#include "simulator/shared/messages.h"
#include "simulator/shared/slots.h"

namespace hub {
namespace {

constexpr int kRow = 28;   // pixels from one row of controls to the next
constexpr int kTabs = 28;  // height of the tabs
constexpr int kRows = 6;   // of the longest page
constexpr int kStatusTop = kTabs + kRows * kRow + 4;
constexpr int kStatusHeight = 34;
constexpr int kGap = 4;

constexpr wchar_t kButton[] = L"BUTTON";
constexpr wchar_t kLabel[] = L"STATIC";
constexpr wchar_t kField[] = L"EDIT";
constexpr wchar_t kChoice[] = L"COMBOBOX";
constexpr const wchar_t* kPageNames[] = {L"Car", L"Cards", L"Player", L"Messages", L"Faults"};
enum Page { kCar, kCards, kPlayerPage, kMessages, kFaults };

void connectFolder(HWND panel) {
    // An empty field takes the hand-over back.
    const std::string folder = narrow(textOf(panel, kConnectText));
    runHeadunit(panel, {"connect", folder.empty() ? "off" : folder});
}

void showHelp(HWND panel);

constexpr auto kControls = std::to_array<Control>({
    {kCar, 0, 0, 3, kLabel, L"Remote"},
    {kCar, 0, 3, 3, kButton, L"Prev F6", 0, "key prev", nullptr, VK_F6},
    {kCar, 0, 6, 3, kButton, L"Play F5", 0, "key play", nullptr, VK_F5},
    {kCar, 0, 9, 3, kButton, L"Next F7", 0, "key next", nullptr, VK_F7},
    {kCar, 1, 0, 3, kLabel, L"Gesture"},
    {kCar, 1, 3, 3, kButton, L"Prev", 0, "gesture prev"},
    {kCar, 1, 6, 3, kButton, L"Next", 0, "gesture next"},
    {kCar, 2, 0, 3, kLabel, L"Mute"},
    {kCar, 2, 3, 3, kButton, L"On F8", 0, "mute on", nullptr, VK_F8},
    {kCar, 2, 6, 3, kButton, L"Off F9", 0, "mute off", nullptr, VK_F9},
    {kCar, 3, 0, 3, kLabel, L"Speed"},
    {kCar, 3, 3, 2, kField, L"60", kSpeedText, "drive {102}"},
    {kCar, 3, 5, 3, kButton, L"km/h F4", 0, "drive {102}", nullptr, VK_F4},
    {kCar, 3, 8, 4, kButton, L"No signal", 0, "drive off"},
    {kCar, 4, 0, 3, kLabel, L"Camera"},
    {kCar, 4, 3, 9, kField, L"SDMMCDisk\\Record\\live.avi", kRecordText},
    {kCar, 5, 0, 3, kLabel, L"Seconds"},
    {kCar, 5, 3, 2, kField, L"60", kSecondsText},
    {kCar, 5, 5, 4, kButton, L"Record", 0, "record {108} {109}"},
    {kCar, 5, 9, 3, kButton, L"Stop", 0, "record off"},

    {kCards, 0, 0, 3, kLabel, L"Slot"},
    {kCards, 0, 3, 9, kChoice, L"", kSlotChoice},
    {kCards, 1, 0, 3, kLabel, L"Folder"},
    {kCards, 1, 3, 9, kField, L"", kFolderText, nullptr, &insertCard},
    {kCards, 2, 3, 9, kButton, L"&Browse... Alt+B", 0, nullptr, &browse},
    {kCards, 3, 3, 5, kButton, L"Insert F2", 0, nullptr, &insertCard, VK_F2},
    {kCards, 3, 8, 4, kButton, L"Pull F3", 0, nullptr, &removeCard, VK_F3},
    {kCards, 4, 0, 12, kLabel, L"Folder of the dash camera"},
    {kCards, 5, 0, 8, kField, L"SDMMCDisk\\Record", kConnectText, nullptr, &connectFolder},
    {kCards, 5, 8, 4, kButton, L"Hand over", 0, nullptr, &connectFolder},

    {kPlayerPage, 0, 0, 3, kLabel, L"Player"},
    {kPlayerPage, 0, 3, 4, kButton, L"Start", 0, "restart"},
    {kPlayerPage, 0, 7, 5, kButton, L"Start half", 0, "restart --pip"},
    {kPlayerPage, 1, 3, 4, kButton, L"Exit F12", 0, "shutdown --stay", nullptr, VK_F12},
    {kPlayerPage, 1, 7, 5, kButton, L"Crash", 0, "cut --player"},
    {kPlayerPage, 2, 0, 3, kLabel, L"Power"},
    {kPlayerPage, 2, 3, 4, kButton, L"Cut F10", 0, "cut --stay", nullptr, VK_F10},
    {kPlayerPage, 2, 7, 5, kButton, L"On", 0, "restart"},
    {kPlayerPage, 3, 0, 3, kLabel, L"Box"},
    {kPlayerPage, 3, 3, 3, kButton, L"OK", 0, "box ok"},
    {kPlayerPage, 3, 6, 3, kButton, L"Yes", 0, "box yes"},
    {kPlayerPage, 3, 9, 3, kButton, L"No", 0, "box no"},
    {kPlayerPage, 4, 0, 3, kLabel, L"Window"},
    {kPlayerPage, 4, 3, 4, kButton, L"Close", 0, "close"},
    {kPlayerPage, 5, 3, 4, kButton, L"Help F1", 0, nullptr, &showHelp, VK_F1},

    {kMessages, 0, 0, 12, kChoice, L"", kMessageChoice},
    {kMessages, 1, 0, 12, kChoice, L"", kMeaningChoice},
    {kMessages, 2, 0, 3, kLabel, L"wParam"},
    {kMessages, 2, 3, 9, kField, L"0", kFirstText},
    {kMessages, 3, 0, 3, kLabel, L"lParam"},
    {kMessages, 3, 3, 9, kField, L"0", kSecondText},
    {kMessages, 4, 3, 5, kButton, L"Post F11", 0, "send {103} {105} {106}", nullptr, VK_F11},
    {kMessages, 4, 8, 4, kButton, L"Send", 0, "send --sync {103} {105} {106}"},

    {kFaults, 0, 0, 12, kChoice, L"", kFaultChoice},
    {kFaults, 1, 0, 3, kLabel, L"Value"},
    {kFaults, 1, 3, 3, kField, L"1", kFaultText},
    {kFaults, 1, 6, 3, kButton, L"Set", 0, "fault {110} {111}"},
    {kFaults, 1, 9, 3, kButton, L"Off", 0, "fault {110} off"},
    {kFaults, 2, 0, 12, kLabel, L"They hold from the next file on."},
});

void showHelp(HWND panel) {
    std::wstring text;
    for (const Control& control : kControls) {
        if (control.shortcut != 0 || control.text == std::wstring(L"&Browse... Alt+B")) {
            text += std::wstring(kPageNames[control.page]) + L": " +
                    (control.text + (control.text[0] == L'&' ? 1 : 0)) + L"\n";
        }
    }
    // The box breaks the lines itself.
    text +=
        L"\nTab and Enter reach every control, Ctrl+Tab turns the page. Folder: the folder of the "
        L"PC "
        L"that is copied onto the slot's card, or nothing for the slot's own card. An empty folder "
        L"of "
        L"the dash camera takes its hand-over back. The list shows the tape, the newest line last.";
    showBox(panel, text, L"Keys of the panel");
}

DWORD styleOf(const Control& control) {
    if (control.kind == kButton) {
        return WS_TABSTOP | BS_PUSHBUTTON;
    }
    if (control.kind == kField) {
        return WS_TABSTOP | WS_BORDER | ES_AUTOHSCROLL;
    }
    return control.kind == kChoice ? WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST : SS_CENTERIMAGE;
}

HFONT fontOf(const wchar_t* face) {
    return CreateFontW(15, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, 0, 0,
                       ANTIALIASED_QUALITY, 0, face);
}

// Narrower than the other face, whose letters are all as wide.
HFONT captionFont() {
    static const HFONT font = fontOf(L"NanumGothic");
    return font;
}

HWND add(HWND panel, const wchar_t* kind, const wchar_t* text, DWORD style, const RECT& area,
         int number) {
    const HWND control = CreateWindowExW(0, kind, text, WS_CHILD | style, area.left, area.top,
                                         area.right - area.left, area.bottom - area.top, panel,
                                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(number)),
                                         GetModuleHandleW(nullptr), nullptr);
    // Fields, lists and the status may hold paths.
    const bool isCaption = kind == kButton || kind == std::wstring(WC_TABCONTROLW) ||
                           (kind == kLabel && number != kStatus);
    SendMessageW(control, WM_SETFONT,
                 reinterpret_cast<WPARAM>(isCaption ? captionFont() : panelFont()), FALSE);
    return control;
}

// On a narrow panel the key's name is left to the help.
std::wstring captionOf(const Control& control, int width) {
    const std::wstring text = control.text;
    return width < kWidePanel && control.shortcut != 0 ? text.substr(0, text.rfind(L' ')) : text;
}

RECT placeOf(const Control& control, int width) {
    const int top = kTabs + 4 + control.row * kRow;
    const int left = kGap + control.left * (width - kGap) / 12;
    const int right = kGap + (control.left + control.width) * (width - kGap) / 12 - kGap;
    const int list = control.kind == kChoice ? 200 : 0;
    return {left, top, right, top + kRow - 4 + list};
}

void choose(HWND panel, int control, const std::wstring& text) {
    SendDlgItemMessageW(panel, control, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
    SendDlgItemMessageW(panel, control, CB_SETCURSEL, 0, 0);
}

void fillChoices(HWND panel) {
    for (const headunit::Slot& slot : headunit::kSlots) {
        choose(panel, kSlotChoice, wide(slot.name));
    }
    for (const tape::Message& message : tape::messages()) {
        choose(panel, kMessageChoice, wide(message.name));
    }
    for (const headunit::Fault& fault : headunit::kFaults) {
        choose(panel, kFaultChoice, wide(std::string(fault.name)));
    }
}

}  // namespace

std::span<const Control> controls() {
    return kControls;
}

int numberOf(const Control& control) {
    return control.number != 0 ? control.number
                               : kFirstControl + static_cast<int>(&control - kControls.data());
}

HFONT panelFont() {
    static const HFONT font = fontOf(kPanelFace);
    return font;
}

void createControls(HWND panel, int width) {
    constexpr INITCOMMONCONTROLSEX kUsed = {sizeof(kUsed), ICC_TAB_CLASSES | ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&kUsed);
    const HWND tabs = add(panel, WC_TABCONTROLW, L"", WS_VISIBLE | WS_TABSTOP | TCS_FOCUSNEVER,
                          {0, 2, width, kTabs}, kPages);
    if (width < kWidePanel) {  // all five side by side
        SendMessageW(tabs, TCM_SETPADDING, 0, MAKELPARAM(3, 3));
        SendMessageW(tabs, TCM_SETMINTABWIDTH, 0, 20);
    }
    for (int page = 0; page < static_cast<int>(std::size(kPageNames)); ++page) {
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = const_cast<wchar_t*>(kPageNames[page]);
        SendMessageW(tabs, TCM_INSERTITEMW, static_cast<WPARAM>(page),
                     reinterpret_cast<LPARAM>(&item));
    }
    SendMessageW(tabs, TCM_SETPADDING, 0, MAKELPARAM(3, 3));
    for (const Control& control : kControls) {
        add(panel, control.kind, captionOf(control, width).c_str(), styleOf(control),
            placeOf(control, width), numberOf(control));
    }
    fillChoices(panel);
    add(panel, kLabel, L"", WS_VISIBLE, {kGap, kStatusTop, width, kStatusTop + kStatusHeight},
        kStatus);
    createTapeList(panel, {2, kStatusTop + kStatusHeight, width - 2, kPanelHeight - 2});
    showPage(panel, 0);
}

void showPage(HWND panel, int page) {
    SendDlgItemMessageW(panel, kPages, TCM_SETCURSEL, static_cast<WPARAM>(page), 0);
    for (const Control& control : kControls) {
        ShowWindow(GetDlgItem(panel, numberOf(control)), control.page == page ? SW_SHOW : SW_HIDE);
    }
}

std::wstring textOf(HWND panel, int control) {
    wchar_t text[1024] = {};
    GetDlgItemTextW(panel, control, text, 1024);
    return text;
}

}  // namespace hub
