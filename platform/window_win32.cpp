#include "platform/window.h"

#include <windows.h>

#include "platform/wide.h"

namespace platform {

static_assert(kCreateMessage == WM_CREATE && kDestroyMessage == WM_DESTROY);
static_assert(kActivateMessage == WM_ACTIVATE && kPaintMessage == WM_PAINT);
static_assert(kCloseMessage == WM_CLOSE && kTimerMessage == WM_TIMER);
static_assert(kMouseMoveMessage == WM_MOUSEMOVE && kButtonDownMessage == WM_LBUTTONDOWN);
static_assert(kButtonUpMessage == WM_LBUTTONUP);

void invalidate(Window window) {
    InvalidateRect(window, nullptr, FALSE);
}

void invalidate(Window window, const Rect& area) {
    const RECT rectangle = {area.left, area.top, area.right, area.bottom};
    InvalidateRect(window, &rectangle, FALSE);
}

void updateWindow(Window window) {
    UpdateWindow(window);
}

Rect clientArea(Window window) {
    RECT client{};
    GetClientRect(window, &client);
    return {client.left, client.top, client.right, client.bottom};
}

void placeWindow(Window window, int left, int width, int height) {
    SetWindowPos(window, HWND_BOTTOM, left, 0, width, height, SWP_SHOWWINDOW);
}

void showWindow(Window window, Visible visible) {
    ShowWindow(window, visible == Visible::Yes ? SW_SHOW : SW_HIDE);
}

void bringToFront(Window window) {
    SetForegroundWindow(window);
}

void destroyWindow(Window window) {
    DestroyWindow(window);
}

void setTimer(Window window, std::uintptr_t id, std::uint32_t milliseconds) {
    SetTimer(window, id, milliseconds, nullptr);
}

void killTimer(Window window, std::uintptr_t id) {
    KillTimer(window, id);
}

void capturePointer(Window window) {
    SetCapture(window);
}

void releasePointer() {
    ReleaseCapture();
}

std::uint32_t registerMessage(const char16_t* name) {
    return RegisterWindowMessageW(wide(name));
}

Window findWindow(const char16_t* title) {
    return FindWindowW(nullptr, wide(title));
}

void postMessage(Window window, std::uint32_t message, WParam wParam, LParam lParam) {
    PostMessageW(window, message, wParam, lParam);
}

void broadcastMessage(std::uint32_t message, WParam wParam, LParam lParam) {
    PostMessageW(HWND_BROADCAST, message, wParam, lParam);
}

Answer sendMessage(Window window, std::uint32_t message, WParam wParam, LParam lParam) {
    return SendMessageW(window, message, wParam, lParam);
}

void sendValues(Window window, std::uintptr_t identifier, std::span<std::int32_t> values) {
    COPYDATASTRUCT data{identifier, static_cast<DWORD>(values.size_bytes()), values.data()};
    SendMessageW(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data));
}

Answer defaultAnswer(Window window, std::uint32_t message, WParam wParam, LParam lParam) {
    return DefWindowProcW(window, message, wParam, lParam);
}

void postQuit(int exitValue) {
    PostQuitMessage(exitValue);
}

}  // namespace platform
