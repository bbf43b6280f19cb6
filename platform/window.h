// The unit's window manager as the player uses it: its own window, the windows of the other
// processes, and the messages between them. The native tests record what is asked of it.
#pragma once

#include <cstdint>
#include <span>

#include "platform/rect.h"

// The system's own handle types, as its header declares them.
struct HWND__;
struct HINSTANCE__;

namespace platform {

using Window = HWND__*;
using Instance = HINSTANCE__*;

// Numbers of the system's own messages, and what a message carries.
enum SystemMessage : std::uint32_t {
    kCreateMessage = 0x0001,
    kDestroyMessage = 0x0002,
    kActivateMessage = 0x0006,
    kPaintMessage = 0x000F,
    kCloseMessage = 0x0010,
    kTimerMessage = 0x0113,
    kMouseMoveMessage = 0x0200,
    kButtonDownMessage = 0x0201,
    kButtonUpMessage = 0x0202,
};
using WParam = std::uintptr_t;
using LParam = std::intptr_t;
using Answer = std::intptr_t;

// --- the player's own window --------------------------------------------------------------------

// Marks what has to be drawn again: everything, or a part of the client area.
void invalidate(Window window);
void invalidate(Window window, const Rect& area);
// Draws what is marked at once.
void updateWindow(Window window);
// Without the window's frame, in its own pixels.
[[nodiscard]] Rect clientArea(Window window);

// Puts the window below all others at (left, 0), and shows it.
void placeWindow(Window window, int left, int width, int height);
enum class Visible { No, Yes };
void showWindow(Window window, Visible visible);
void bringToFront(Window window);
void destroyWindow(Window window);

void setTimer(Window window, std::uintptr_t id, std::uint32_t milliseconds);
void killTimer(Window window, std::uintptr_t id);

// The window gets the touches outside of it as well until they are released.
void capturePointer(Window window);
void releasePointer();

// --- messages -----------------------------------------------------------------------------------

// The number that every process gets for the name.
[[nodiscard]] std::uint32_t registerMessage(const char16_t* name);

// The first window with that title, null without one.
[[nodiscard]] Window findWindow(const char16_t* title);

void postMessage(Window window, std::uint32_t message, WParam wParam, LParam lParam);
// To every top-level window.
void broadcastMessage(std::uint32_t message, WParam wParam, LParam lParam);
// Waits until the receiver has answered.
Answer sendMessage(Window window, std::uint32_t message, WParam wParam, LParam lParam);
// Sends the values as a copy-data block under `identifier` and waits until they were taken.
void sendValues(Window window, std::uintptr_t identifier, std::span<std::int32_t> values);

// What the system does with a message that the player does not handle itself.
Answer defaultAnswer(Window window, std::uint32_t message, WParam wParam, LParam lParam);

// Ends the message loop.
void postQuit(int exitValue);

}  // namespace platform
