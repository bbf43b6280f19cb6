#include "ui/time_text.h"

#include <limits>

namespace ui {
namespace {

// Writes at least two digits and returns the place behind them.
char16_t* writeNumber(char16_t* out, std::int32_t number) {
    if (number >= 100) {
        out = writeNumber(out, number / 10);
        *out++ = static_cast<char16_t>(u'0' + number % 10);
        return out;
    }
    *out++ = static_cast<char16_t>(u'0' + number / 10);
    *out++ = static_cast<char16_t>(u'0' + number % 10);
    return out;
}

}  // namespace

void FormatSeconds(std::int32_t seconds, TimeText& text) {
    const std::int32_t shown = seconds < 0 ? 0 : seconds;
    const std::int32_t hours = shown / 3600;
    const std::int32_t minutes = (shown - hours * 3600) / 60;
    char16_t* out = writeNumber(text.data(), hours);
    *out++ = u':';
    out = writeNumber(out, minutes);
    *out++ = u':';
    out = writeNumber(out, shown - hours * 3600 - minutes * 60);
    *out = u'\0';
}

std::int32_t wholeSeconds(double seconds) {
    constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
    if (seconds >= kMost) {
        return kMost;
    }
    if (seconds > -kMost) {
        return static_cast<std::int32_t>(seconds);
    }
    return seconds < 0 ? -kMost : 0;
}

ClockFace clockFace(std::int32_t hour, std::int32_t minute) {
    const std::int32_t shown = hour <= 12 ? hour : hour - 12;
    return {hour >= 12, {shown / 10, shown % 10, minute / 10, minute % 10}};
}

}  // namespace ui
