// The least that a program with a window can do: what the player's start is compared with.
#include <windows.h>

namespace {

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_PAINT) {
        PAINTSTRUCT paint{};
        const HDC device = BeginPaint(window, &paint);
        const HBRUSH brush = CreateSolidBrush(RGB(200, 200, 200));
        FillRect(device, &paint.rcPaint, brush);
        DeleteObject(brush);
        EndPaint(window, &paint);
        return 0;
    }
    if (message == WM_DESTROY) {
        PostQuitMessage(0);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int show) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = L"Empty";
    RegisterClassW(&windowClass);
    const HWND window = CreateWindowExW(0, L"Empty", L"Empty", WS_POPUP | WS_VISIBLE, 0, 0, 800,
                                        480, nullptr, nullptr, instance, nullptr);
    ShowWindow(window, show);
    UpdateWindow(window);
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
    return 0;
}
