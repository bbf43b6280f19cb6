// The board's libraries: message boxes and the key click. Both are loaded when first needed; on a
// unit without them a message box answers at once with "no" and a click is silent.
#pragma once

#include <cstdint>

#include "platform/window.h"

namespace platform {

inline constexpr std::uint32_t kOneButton = 0;  // styles of a box
inline constexpr std::uint32_t kYesNo = 4;
inline constexpr int kAnsweredYes = 6;

// A box runs a message loop of its own until it is answered. `topmost` 1 keeps it above every other
// window. The result is the button's number.
int showMessageBox(Window owner, const char16_t* text, const char16_t* title, std::uint32_t style,
                   int topmost);
// The same, closing itself after `milliseconds`.
int showTimedMessageBox(Window owner, const char16_t* text, const char16_t* title,
                        std::uint32_t style, int topmost, std::uint32_t milliseconds);

// 0 is the key click.
void playSound(int sound);

}  // namespace platform
