// Times as the screens show them.
#pragma once

#include <array>
#include <cstdint>

namespace ui {

// Room for every 32-bit number of seconds, the terminator included.
using TimeText = std::array<char16_t, 16>;

// "hh:mm:ss" with at least two digits each, hours without limit; "00:00:00" for a negative time.
void FormatSeconds(std::int32_t seconds, TimeText& text);

// Whole seconds of a position, cut at what 32 bits hold; 0 for what is not a number.
std::int32_t wholeSeconds(double seconds);

// What the clock shows for a local time: midnight is 0 and am, noon 12 and pm. Required.
struct ClockFace {
    bool afternoon;
    std::array<std::int32_t, 4> digits;  // tens and units of the hour, of the minute
};
ClockFace clockFace(std::int32_t hour, std::int32_t minute);

}  // namespace ui
