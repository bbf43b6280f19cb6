// Decides once a second whether the picture is blocked because the vehicle moves.
#pragma once

#include <cstdint>

namespace app {

// Consecutive seconds in each of the three states of the speed signal.
struct BlockCounters {
    std::int32_t noSignal = 0;
    std::int32_t fast = 0;
    std::int32_t slow = 0;
};

// One second's step. `speed` is in km/h, -1 without a signal; `dmbSetting` nonzero switches the
// block off. Returns 1 when `drivingBlock` changed and the screen must be redrawn.
//
// No signal or 10 km/h and more for 3 seconds block; below 9 km/h for 5 seconds frees. Exactly
// 9 km/h is the dead band between the two: it restarts every count and changes nothing.
int driveOneSecond(std::int32_t speed, std::int32_t dmbSetting, BlockCounters& counters,
                   std::int32_t& drivingBlock);

}  // namespace app
