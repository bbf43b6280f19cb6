// The board's message box: a window of its own over whatever the unit shows, large enough for a
// finger, with Korean buttons. It runs its own message loop until it is answered, so the caller's
// other messages keep flowing meanwhile, and disables the owner for that time. Answered by touch,
// by WM_COMMAND with the button's number (posted by the unit's command), or by its own timer.
#include <windows.h>

#include <algorithm>
#include <cwchar>
#include <string>

#include "simulator/tape/tape.h"

namespace {

constexpr wchar_t kClass[] = L"headunit.box";
constexpr wchar_t kFace[] = L"나눔고딕";
constexpr int kScreenWidth = 800;
constexpr int kScreenHeight = 480;
constexpr int kBoxWidth = 380;  // fits the half-width screen too
constexpr int kBoxHeight = 250;
constexpr int kButtonWidth = 140;
constexpr int kButtonHeight = 60;
constexpr int kMargin = 20;
constexpr int kCorner = 12;   // of a button: width and height of its corners' ellipse
constexpr int kLine = 2;      // of the frame
constexpr int kLetters = 24;  // height of the font
// The colours of the player's skin.
constexpr COLORREF kBack = RGB(0x14, 0x1A, 0x20);
constexpr COLORREF kFrame = RGB(0x4A, 0x58, 0x64);
constexpr COLORREF kButton = RGB(0x31, 0x40, 0x4D);
constexpr COLORREF kButtonHeld = RGB(0xFF, 0xB0, 0x20);
constexpr COLORREF kInk = RGB(0xF4, 0xF0, 0xE6);
constexpr COLORREF kInkHeld = RGB(0x10, 0x15, 0x1A);
constexpr UINT_PTR kTimer = 1;

struct Box {
    std::wstring text;
    std::wstring title;
    HFONT font = nullptr;
    int answer = 0;  // 0 while it is open
};

struct Wish {
    HWND owner;
    const wchar_t* text;
    const wchar_t* title;
    UINT style;
    int topmost;
    DWORD milliseconds;  // 0: stays open until it is answered
};

// The texts begin with blank lines that move them down in the board's own box; here the text stands
// in the middle anyway.
std::wstring trimmed(const wchar_t* text) {
    std::wstring all = text == nullptr ? L"" : text;
    const auto first = all.find_first_not_of(L"\r\n ");
    return first == std::wstring::npos ? std::wstring() : all.substr(first);
}

void fill(HDC context, const RECT& area, COLORREF colour) {
    const HBRUSH brush = CreateSolidBrush(colour);
    FillRect(context, &area, brush);
    DeleteObject(brush);
}

// A button's tile; the corners show what lies under it.
void tile(HDC context, const RECT& area, COLORREF colour) {
    fill(context, area, kBack);
    SelectObject(context, GetStockObject(DC_BRUSH));
    SelectObject(context, GetStockObject(NULL_PEN));
    SetDCBrushColor(context, colour);
    RoundRect(context, area.left, area.top, area.right + 1, area.bottom + 1, kCorner, kCorner);
}

void paint(HWND window, const Box& box) {
    PAINTSTRUCT work;
    const HDC context = BeginPaint(window, &work);
    RECT area;
    GetClientRect(window, &area);
    fill(context, area, kFrame);
    InflateRect(&area, -kLine, -kLine);
    fill(context, area, kBack);
    InflateRect(&area, kLine, kLine);
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, kInk);
    const HGDIOBJ before = SelectObject(context, box.font);
    RECT place = {kMargin, kMargin, area.right - kMargin, area.bottom - kButtonHeight - kMargin};
    if (!box.title.empty()) {
        RECT head = {place.left, 8, place.right, 36};
        DrawTextW(context, box.title.c_str(), -1, &head, DT_CENTER | DT_SINGLELINE | DT_NOPREFIX);
        place.top = 36;
    }
    RECT measured = place;
    // A word wider than the box, such as a file name, ends in an ellipsis, and no line is cut in
    // half.
    constexpr UINT kHow =
        DT_CENTER | DT_WORDBREAK | DT_WORD_ELLIPSIS | DT_EDITCONTROL | DT_NOPREFIX;
    DrawTextW(context, box.text.c_str(), -1, &measured, kHow | DT_CALCRECT);
    place.top +=
        std::max<LONG>(0, (place.bottom - place.top - (measured.bottom - measured.top)) / 2);
    DrawTextW(context, box.text.c_str(), -1, &place, kHow);
    SelectObject(context, before);
    EndPaint(window, &work);
}

void drawButton(const DRAWITEMSTRUCT& item, HFONT font) {
    wchar_t caption[16];
    GetWindowTextW(item.hwndItem, caption, 16);
    RECT area = item.rcItem;
    const bool held = (item.itemState & ODS_SELECTED) != 0;
    tile(item.hDC, area, held ? kButtonHeld : kButton);
    SetBkMode(item.hDC, TRANSPARENT);
    SetTextColor(item.hDC, held ? kInkHeld : kInk);
    const HGDIOBJ before = SelectObject(item.hDC, font);
    DrawTextW(item.hDC, caption, -1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    SelectObject(item.hDC, before);
}

LRESULT CALLBACK boxProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* box = reinterpret_cast<Box*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (box == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    switch (message) {
        case WM_PAINT:
            paint(window, *box);
            return 0;
        case WM_DRAWITEM:
            drawButton(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam), box->font);
            return TRUE;
        case WM_COMMAND:
            if (GetDlgItem(window, LOWORD(wParam)) != nullptr) {
                box->answer = LOWORD(wParam);
            }
            return 0;
        case WM_TIMER:
            box->answer = IDOK;
            return 0;
        case WM_MOUSEACTIVATE:
            return MA_NOACTIVATE;
        case WM_CLOSE:
            return 0;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

void addButton(HWND window, int number, const wchar_t* caption, int left) {
    CreateWindowExW(0, L"BUTTON", caption, WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, left,
                    kBoxHeight - kButtonHeight - kMargin, kButtonWidth, kButtonHeight, window,
                    reinterpret_cast<HMENU>(static_cast<INT_PTR>(number)),
                    GetModuleHandleW(nullptr), nullptr);
}

// Over the middle of the owner where that is on the screen, else of the screen.
POINT placeFor(HWND owner) {
    RECT area = {0, 0, kScreenWidth, kScreenHeight};
    RECT screen = area;
    RECT of;
    if (owner != nullptr && IsWindowVisible(owner) && GetWindowRect(owner, &of)) {
        RECT common;
        if (IntersectRect(&common, &of, &screen)) {
            area = common;
        }
    }
    const int left = (area.left + area.right - kBoxWidth) / 2;
    const int top = (area.top + area.bottom - kBoxHeight) / 2;
    return {std::clamp(left, 0, kScreenWidth - kBoxWidth),
            std::clamp(top, 0, kScreenHeight - kBoxHeight)};
}

HWND openBox(const Wish& wish, Box& box) {
    WNDCLASSW description = {};
    description.lpfnWndProc = boxProcedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    description.lpszClassName = kClass;
    RegisterClassW(&description);
    const POINT at = placeFor(wish.owner);
    // Without an owner in the window manager's sense: the caller may be on its way to destruction,
    // and would take an owned window along.
    const DWORD extended = WS_EX_TOOLWINDOW | (wish.topmost != 0 ? WS_EX_TOPMOST : 0);
    const HWND window =
        CreateWindowExW(extended, kClass, wish.title, WS_POPUP | WS_CLIPCHILDREN, at.x, at.y,
                        kBoxWidth, kBoxHeight, nullptr, nullptr, description.hInstance, nullptr);
    if (window == nullptr) {
        return nullptr;
    }
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&box));
    if ((wish.style & MB_TYPEMASK) == MB_YESNO) {
        const int gap = (kBoxWidth - 2 * kButtonWidth) / 3;
        addButton(window, IDYES, L"예", gap);
        addButton(window, IDNO, L"아니오", 2 * gap + kButtonWidth);
    } else {
        addButton(window, IDOK, L"확인", (kBoxWidth - kButtonWidth) / 2);
    }
    if (wish.milliseconds > 0) {
        SetTimer(window, kTimer, wish.milliseconds, nullptr);
    }
    SetWindowPos(window, wish.topmost != 0 ? HWND_TOPMOST : HWND_TOP, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    return window;
}

void runUntilAnswered(Box& box) {
    MSG message;
    while (box.answer == 0) {
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got <= 0) {
            // The caller's own loop must still see that it is to end.
            PostQuitMessage(got == 0 ? static_cast<int>(message.wParam) : 1);
            return;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

const wchar_t* answerName(int answer) {
    switch (answer) {
        case IDOK:
            return L"ok";
        case IDYES:
            return L"yes";
        case IDNO:
            return L"no";
        default:
            return L"none";
    }
}

void record(const Wish& wish) {
    tape::Line line("box");
    line.text("from", L"Video").text("text", wish.text).text("title", wish.title);
    line.number("style", wish.style);
    if (wish.milliseconds > 0) {
        line.number("milliseconds", wish.milliseconds);
    }
}

int show(const Wish& wish) {
    Box box;
    box.text = trimmed(wish.text);
    box.title = wish.title == nullptr ? L"" : wish.title;
    box.font = CreateFontW(kLetters, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, DEFAULT_CHARSET, 0, 0,
                           CLEARTYPE_QUALITY, 0, kFace);
    const bool disable = wish.owner != nullptr && IsWindowEnabled(wish.owner);
    const HWND window = openBox(wish, box);
    if (window != nullptr) {
        if (disable) {
            EnableWindow(wish.owner, FALSE);
        }
        record(wish);  // only now: who reads the tape may answer at once
        runUntilAnswered(box);
        if (disable) {
            EnableWindow(wish.owner, TRUE);
        }
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        DestroyWindow(window);
    } else {
        record(wish);
    }
    DeleteObject(box.font);
    tape::Line("box").text("from", L"Video").text("answer", answerName(box.answer));
    const int unanswered = (wish.style & MB_TYPEMASK) == MB_YESNO ? IDNO : IDOK;
    return box.answer == 0 ? unanswered : box.answer;
}

}  // namespace

extern "C" __declspec(dllexport) int WINAPI
    ZEL_MessageBox(HWND owner, const wchar_t* text, const wchar_t* title, UINT style, int topmost) {
    return show({owner, text, title, style, topmost, 0});
}

extern "C" __declspec(dllexport) int WINAPI
    ZEL_MessageBoxTimer(HWND owner, const wchar_t* text, const wchar_t* title, UINT style,
                        int topmost, DWORD milliseconds) {
    return show({owner, text, title, style, topmost, milliseconds});
}
