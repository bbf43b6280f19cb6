#include "app/driving_check.h"

namespace app {
namespace {

constexpr std::int32_t kNoSignal = -1;
constexpr std::int32_t kFastFrom = 10;  // km/h
constexpr std::int32_t kDeadBand = 9;   // km/h
constexpr std::int32_t kSecondsToBlock = 3;
constexpr std::int32_t kSecondsToFree = 5;

void count(std::int32_t speed, BlockCounters& counters) {
    if (speed == kNoSignal) {
        counters = {.noSignal = counters.noSignal + 1};
    } else if (speed >= kFastFrom) {
        counters = {.fast = counters.fast + 1};
    } else if (speed == kDeadBand) {
        counters = {};
    } else {
        counters = {.slow = counters.slow + 1};
    }
}

}  // namespace

int driveOneSecond(std::int32_t speed, std::int32_t dmbSetting, BlockCounters& counters,
                   std::int32_t& drivingBlock) {
    const std::int32_t before = drivingBlock;
    if (dmbSetting != 0) {
        counters = {};
        drivingBlock = 0;
    } else {
        count(speed, counters);
        if (counters.noSignal >= kSecondsToBlock || counters.fast >= kSecondsToBlock) {
            drivingBlock = 1;
        }
        if (counters.slow >= kSecondsToFree) {
            drivingBlock = 0;
        }
    }
    return drivingBlock != before ? 1 : 0;
}

}  // namespace app
