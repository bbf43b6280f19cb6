// The timers of the main window. A timer runs until it is stopped; starting one that runs begins
// its period again.
#pragma once

#include <array>
#include <cstdint>

namespace app {

enum Timer : std::uintptr_t {
    kPositionTimer = 100,   // while a file is played
    kScreenTimer = 101,     // from creation to destruction
    kBannerTimer = 102,     // once: the banner of the slide screen ends
    kBarTimer = 103,        // once: the control bar hides
    kKeyLockTimer = 104,    // once: next and previous are taken again
    kExitReadyTimer = 105,  // until skin and play request are done
    kDrivingTimer = 110,    // from creation to destruction
};

struct TimerRow {
    Timer id;
    std::uint32_t milliseconds;
};
inline constexpr auto kTimers = std::to_array<TimerRow>({
    {kPositionTimer, 300},
    {kScreenTimer, 300},
    {kBannerTimer, 3000},
    {kBarTimer, 6000},
    {kKeyLockTimer, 1000},
    {kExitReadyTimer, 1000},
    {kDrivingTimer, 1000},
});

void startTimer(Timer timer);
void stopTimer(Timer timer);

}  // namespace app
