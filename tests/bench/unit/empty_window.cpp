// The least that a program with a window can do: what the player's start is compared with.
// With the word "press" it stands in the left half of the screen, never takes the focus, and fills
// a rectangle of a key's size while the button is down: what the player's keys are compared with.
// "press-buffered" fills it in a bitmap of the screen's size first, made for each paint, which is
// the part of the player's way that its painting rules prescribe.
#include <windows.h>

#include <cwchar>

namespace {

constexpr COLORREF kGround = RGB(200, 200, 200);
constexpr COLORREF kPressed = RGB(255, 176, 32);
constexpr RECT kKey = {100, 360, 179, 420};  // as large as a key of the half-width screen

void fill(HDC device, const RECT& area, COLORREF colour) {
    const HBRUSH brush = CreateSolidBrush(colour);
    FillRect(device, &area, brush);
    DeleteObject(brush);
}

bool pressed = false;
bool buffered = false;

void draw(HDC device, const RECT& damaged) {
    fill(device, damaged, kGround);
    if (pressed) {
        fill(device, kKey, kPressed);
    }
}

void drawBuffered(HDC device, const RECT& damaged) {
    const HDC target = CreateCompatibleDC(device);
    const HDC source = CreateCompatibleDC(device);
    const HBITMAP bitmap = CreateCompatibleBitmap(device, 800, 480);
    const HGDIOBJ before = SelectObject(target, bitmap);
    draw(target, damaged);
    BitBlt(device, damaged.left, damaged.top, damaged.right - damaged.left,
           damaged.bottom - damaged.top, target, damaged.left, damaged.top, SRCCOPY);
    SelectObject(target, before);
    DeleteObject(bitmap);
    DeleteDC(source);
    DeleteDC(target);
}

void press(HWND window, bool down) {
    pressed = down;
    InvalidateRect(window, &kKey, FALSE);
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT: {
            PAINTSTRUCT paint{};
            const HDC device = BeginPaint(window, &paint);
            buffered ? drawBuffered(device, paint.rcPaint) : draw(device, paint.rcPaint);
            EndPaint(window, &paint);
            return 0;
        }
        case WM_LBUTTONDOWN:
            press(window, true);
            return 0;
        case WM_LBUTTONUP:
            press(window, false);
            return 0;
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR words, int show) {
    buffered = std::wcscmp(words, L"press-buffered") == 0;
    const bool half = buffered || std::wcscmp(words, L"press") == 0;
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = L"Empty";
    RegisterClassW(&windowClass);
    const HWND window = CreateWindowExW(half ? WS_EX_NOACTIVATE | WS_EX_TOPMOST : 0, L"Empty",
                                        L"Empty", WS_POPUP | WS_VISIBLE, 0, 0, half ? 400 : 800,
                                        480, nullptr, nullptr, instance, nullptr);
    ShowWindow(window, half ? SW_SHOWNOACTIVATE : show);
    UpdateWindow(window);
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
    return 0;
}
