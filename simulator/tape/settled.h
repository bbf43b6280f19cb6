// How the unit asks the player's thread whether it has taken what is on its way to it: posted
// messages, touches, paints. A window that only takes messages, made in that thread beside the
// player's own, sets a timer when it is asked, and signals the event when the timer is due: Windows
// hands timers out last, after posted messages, input and paints. Windows only.
#pragma once

#include <string>

namespace tape {

constexpr wchar_t kSettledClass[] = L"headunit.settled";
// Posted to that window: wParam is the number of the event, below.
constexpr unsigned kSettledQuestion = 0x8000;  // WM_APP

inline std::wstring settledEvent(unsigned long long number) {
    return L"headunit.settled." + std::to_wstring(number);
}

}  // namespace tape
