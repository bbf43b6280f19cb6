// The waiting animation of the unit: records when the player wants it shown and hidden, and shows
// for that time the sign that tells the driver to wait: a ring of eight dots that turns in the
// middle of the picture, between the bars of the player's screen. A window of its own that takes
// neither touches nor the focus.
#include <windows.h>

#include <cmath>
#include <cstring>

#include "simulator/processes/peer.h"

namespace {

constexpr int kSide = 88;   // pixels
constexpr int kRing = 28;   // from the middle to the dots' middles
constexpr int kRadius = 7;  // of a dot
constexpr int kEdge = 2;    // around it, dark, so that it stands out from a bright picture
constexpr int kDots = 8;
constexpr UINT kStepMilliseconds = 100;
constexpr UINT_PTR kTimer = 1;
constexpr COLORREF kGround = RGB(20, 24, 30);
constexpr RECT kScreen = {0, 0, 800, 480};
constexpr int kPictureMiddle = 192;  // of what the player's bars leave of the picture, pixels

HWND window;
int leading;  // the brightest dot

HWND player() {
    return FindWindowW(L"Video", L"Video");
}

// Each dot is darker than the one before it.
COLORREF colourOf(int dot) {
    const int behind = (leading - dot + kDots) % kDots;
    const int light = 240 - behind * 26;
    return RGB(light, light, light);
}

RECT boxAround(int dot, int radius) {
    const double angle = 2.0 * 3.14159265358979 * dot / kDots;
    const int x = kSide / 2 + static_cast<int>(std::lround(kRing * std::sin(angle)));
    const int y = kSide / 2 - static_cast<int>(std::lround(kRing * std::cos(angle)));
    return {x - radius, y - radius, x + radius + 1, y + radius + 1};
}

void drawDots(HDC device) {
    SelectObject(device, GetStockObject(DC_BRUSH));
    SelectObject(device, GetStockObject(NULL_PEN));
    for (int dot = 0; dot < kDots; ++dot) {
        const RECT box = boxAround(dot, kRadius);
        SetDCBrushColor(device, colourOf(dot));
        Ellipse(device, box.left, box.top, box.right, box.bottom);
    }
}

// The window is nothing but its dots: what lies between them stays the player's.
void cutOut() {
    const HRGN dots = CreateRectRgn(0, 0, 0, 0);
    for (int dot = 0; dot < kDots; ++dot) {
        const RECT box = boxAround(dot, kRadius + kEdge);
        const HRGN one = CreateEllipticRgn(box.left, box.top, box.right + 1, box.bottom + 1);
        CombineRgn(dots, dots, one, RGN_OR);
        DeleteObject(one);
    }
    SetWindowRgn(window, dots, FALSE);  // which owns the region from now on
}

void paint() {
    PAINTSTRUCT paint;
    const HDC device = BeginPaint(window, &paint);
    const RECT all = {0, 0, kSide, kSide};
    SetDCBrushColor(device, kGround);
    FillRect(device, &all, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    drawDots(device);
    EndPaint(window, &paint);
}

// From now on the sign stands and turns, or is gone. Without a player there is nothing to wait for:
// when its window goes, so does the sign.
void show(bool wanted);

void turn() {
    if (player() == nullptr) {
        show(false);
        return;
    }
    leading = (leading + 1) % kDots;
    InvalidateRect(window, nullptr, FALSE);
}

LRESULT CALLBACK procedure(HWND receiver, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            paint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_TIMER:
            turn();
            return 0;
        case WM_NCHITTEST:
            return HTTRANSPARENT;
        default:
            return DefWindowProcA(receiver, message, wParam, lParam);
    }
}

// Makes the window, hidden. False when Windows refuses.
bool create() {
    WNDCLASSA description = {};
    description.lpfnWndProc = procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = tape::kWaitingSign;
    RegisterClassA(&description);
    // Windows lets touches through to other processes only where a window is layered and
    // transparent. For X it is a window as any other, whose touches would come back from here: Wine
    // loses a move that arrives from another process while the player takes the one before. So they
    // go past it there as well, see Screen::letThrough, which finds it by its title.
    constexpr DWORD kStyle =
        WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE | WS_EX_LAYERED | WS_EX_TRANSPARENT;
    window = CreateWindowExA(kStyle, tape::kWaitingSign, tape::kWaitingSign, WS_POPUP, 0, 0, kSide,
                             kSide, nullptr, nullptr, description.hInstance, nullptr);
    if (window == nullptr) {
        return false;
    }
    cutOut();
    return SetLayeredWindowAttributes(window, 0, 255, LWA_ALPHA);
}

void show(bool wanted) {
    if (!wanted) {
        KillTimer(window, kTimer);
        ShowWindow(window, SW_HIDE);
        return;
    }
    RECT area = kScreen;
    const HWND shown = player();
    if (shown != nullptr) {
        GetWindowRect(shown, &area);
    }
    // Not topmost, and raised only once: while a window above them is visible Wine does not carry
    // the order of the player's windows over to the X server, and its screen would stay under its
    // picture.
    SetWindowPos(window, HWND_TOP, (area.left + area.right - kSide) / 2,
                 area.top + kPictureMiddle - kSide / 2, kSide, kSide,
                 SWP_NOACTIVATE | SWP_SHOWWINDOW);
    SetTimer(window, kTimer, kStepMilliseconds, nullptr);
}

// wParam 1 shows the animation, 0 ends it.
LRESULT react(const peer::Received& received) {
    if (std::strcmp(received.message->name, "MSG_TO_ANI_WAITING") == 0 && received.wParam <= 1) {
        show(received.wParam == 1);
    }
    return 0;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR commandLine, int) {
    if (!create()) {
        return 1;
    }
    return peer::run({L"ani_waiting", tape::kWaiting, &react, nullptr,
                      peer::optionNumber(commandLine, L"--late ", 0)});
}
