// Time: the unit's local time, its counter of milliseconds, and waiting.
#pragma once

#include <cstdint>

namespace platform {

// Milliseconds since the unit was started; begins again at 0 after 49.7 days.
[[nodiscard]] std::uint32_t tickCount();

struct LocalTime {
    std::int32_t hour, minute;  // 0 to 23, 0 to 59
};
[[nodiscard]] LocalTime localTime();

// Stops the thread, and no message is handled meanwhile.
void sleep(std::uint32_t milliseconds);

}  // namespace platform
