#include "simulator/hub/panel.h"

#include <commctrl.h>

#include <cwchar>
#include <memory>

#include "simulator/shared/messages.h"

namespace hub {
namespace {

constexpr UINT_PTR kTimer = 1;
constexpr UINT kTimerMilliseconds = 200;
constexpr UINT kRefused = WM_APP + 2;  // lParam: a std::wstring of why, now the panel's
constexpr wchar_t kClass[] = L"headunit.panel";

std::wstring environmentText(const wchar_t* name) {
    wchar_t text[1024] = {};
    const DWORD length = GetEnvironmentVariableW(name, text, 1024);
    return length < 1024 ? text : L"";
}

// The words of a button's verb, with what the named controls hold.
Words wordsOf(HWND panel, const char* verb) {
    Words words;
    headunit::splitWords(verb, words);
    for (std::string& word : words) {
        if (word.starts_with("{")) {
            word = narrow(textOf(panel, std::atoi(word.c_str() + 1)));
        }
    }
    return words;
}

void press(HWND panel, const Control& control) {
    if (control.press != nullptr) {
        control.press(panel);
    } else if (control.verb != nullptr) {
        runHeadunit(panel, wordsOf(panel, control.verb));
    }
}

const Control* findControl(int number) {
    for (const Control& control : controls()) {
        if (numberOf(control) == number) {
            return &control;
        }
    }
    return nullptr;
}

// What the chosen message can mean; the chosen meaning's values.
void showMeanings(HWND panel) {
    const tape::Message* message = tape::findMessage(narrow(textOf(panel, kMessageChoice)));
    SendDlgItemMessageW(panel, kMeaningChoice, CB_RESETCONTENT, 0, 0);
    for (const tape::Meaning& meaning : message->meanings) {
        const std::wstring text = std::to_wstring(meaning.wParam) + L" " + wide(meaning.text);
        SendDlgItemMessageW(panel, kMeaningChoice, CB_ADDSTRING, 0,
                            reinterpret_cast<LPARAM>(text.c_str()));
    }
    SendDlgItemMessageW(panel, kMeaningChoice, CB_SETCURSEL, 0, 0);
}

void showValues(HWND panel) {
    const tape::Message* message = tape::findMessage(narrow(textOf(panel, kMessageChoice)));
    const LRESULT choice = SendDlgItemMessageW(panel, kMeaningChoice, CB_GETCURSEL, 0, 0);
    const bool known = choice >= 0 && choice < std::ssize(message->meanings);
    const tape::Meaning meaning =
        known ? message->meanings[static_cast<std::size_t>(choice)] : tape::Meaning{0, 0, ""};
    const long long second = meaning.lParam == tape::kAny ? 0 : meaning.lParam;
    SetDlgItemTextW(panel, kFirstText, std::to_wstring(meaning.wParam).c_str());
    SetDlgItemTextW(panel, kSecondText, std::to_wstring(second).c_str());
}

void chosen(HWND panel, int control) {
    if (control == kSlotChoice) {
        showSlot(panel, true);
    } else if (control == kMessageChoice || control == kMeaningChoice) {
        if (control == kMessageChoice) {
            showMeanings(panel);
        }
        showValues(panel);
    }
}

void onCommand(HWND panel, int number, int notification) {
    // Enter in a field does what the button beside it does; on a button it presses it.
    const Control* control = findControl(number == IDOK ? GetDlgCtrlID(GetFocus()) : number);
    if (notification == CBN_SELCHANGE && control != nullptr && control->verb == nullptr) {
        chosen(panel, number);
    } else if (control != nullptr && (number == IDOK || notification == BN_CLICKED)) {
        press(panel, *control);
    }
}

void onTimer(HWND panel) {
    showTape(GetDlgItem(panel, kTapeList));
    showSlot(panel, false);
    const std::wstring status = statusLine();
    if (status != textOf(panel, kStatus)) {
        SetDlgItemTextW(panel, kStatus, status.c_str());
    }
}

void onNotify(HWND panel, const NMHDR& head) {
    if (head.code == TCN_SELCHANGE) {
        showPage(panel, static_cast<int>(SendDlgItemMessageW(panel, kPages, TCM_GETCURSEL, 0, 0)));
    } else if (head.code == static_cast<UINT>(NM_CLICK)) {
        SetFocus(head.hwndFrom);  // the list does not take it by itself under Wine
    }
}

LRESULT CALLBACK panelProcedure(HWND panel, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_TIMER:
            onTimer(panel);
            return 0;
        case WM_COMMAND:
            onCommand(panel, LOWORD(wParam), HIWORD(wParam));
            return 0;
        case WM_NOTIFY:
            onNotify(panel, *reinterpret_cast<const NMHDR*>(lParam));
            return 0;
        case kRefused: {
            const std::unique_ptr<std::wstring> text(reinterpret_cast<std::wstring*>(lParam));
            showBox(panel, *text, L"Refused");
            return 0;
        }
        case WM_ACTIVATE:
            onActivate(panel, LOWORD(wParam) != WA_INACTIVE);
            return 0;
        case WM_CLOSE:
            return 0;
        default:
            return DefWindowProcW(panel, message, wParam, lParam);
    }
}

void turnPage(HWND panel, int by) {
    const LRESULT count = SendDlgItemMessageW(panel, kPages, TCM_GETITEMCOUNT, 0, 0);
    const LRESULT page = SendDlgItemMessageW(panel, kPages, TCM_GETCURSEL, 0, 0);
    showPage(panel, static_cast<int>((page + by + count) % count));
}

}  // namespace

void runHeadunit(HWND panel, const Words& words) {
    // Wine's name for the PC's own paths.
    std::wstring program = L"\\\\?\\unix" + environmentText(L"HEADUNIT_COMMAND");
    for (wchar_t& c : program) {
        c = c == L'/' ? L'\\' : c;
    }
    std::wstring line =
        L"headunit --tell-panel --device \"" + environmentText(L"HEADUNIT_DEVICE") + L"\"";
    for (const std::string& word : words) {
        line += L" \"" + wide(word) + L"\"";
    }
    STARTUPINFOW start = {};
    start.cb = sizeof(start);
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &start, &process)) {
        showBox(panel, L"Wine could not start " + program, L"Refused");
        return;
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

bool tellPanel(const std::string& why) {
    const HWND panel = FindWindowW(kClass, nullptr);
    auto text = std::make_unique<std::wstring>(wide(why));
    if (panel == nullptr ||
        !PostMessageW(panel, kRefused, 0, reinterpret_cast<LPARAM>(text.get()))) {
        return false;
    }
    text.release();
    return true;
}

HWND openPanel(HINSTANCE instance, int width) {
    WNDCLASSW description = {};
    description.lpfnWndProc = panelProcedure;
    description.hInstance = instance;
    description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    description.lpszClassName = kClass;
    RegisterClassW(&description);
    const HWND panel = CreateWindowExW(WS_EX_CONTROLPARENT, description.lpszClassName, L"Head unit",
                                       WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, kPanelLeft, 0,
                                       width, kPanelHeight, nullptr, nullptr, instance, nullptr);
    if (panel != nullptr) {
        createControls(panel, width);
        chosen(panel, kMessageChoice);
        takeKeyboard(panel, instance);
        SetTimer(panel, kTimer, kTimerMilliseconds, nullptr);
    }
    return panel;
}

bool translatePanelKey(HWND panel, MSG& message) {
    if (panel == nullptr || (message.hwnd != panel && !IsChild(panel, message.hwnd))) {
        return false;
    }
    if (message.message == WM_KEYDOWN && message.wParam == VK_TAB && GetKeyState(VK_CONTROL) < 0) {
        turnPage(panel, GetKeyState(VK_SHIFT) < 0 ? -1 : 1);
        return true;
    }
    if (message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN) {
        for (const Control& control : controls()) {
            if (control.shortcut != 0 && message.wParam == control.shortcut) {
                press(panel, control);
                return true;
            }
        }
    }
    return IsDialogMessageW(panel, &message) != FALSE;
}

}  // namespace hub
