#include "ui/bars.h"

#include <algorithm>

namespace ui {
namespace {

constexpr std::int32_t kKnobRoom = 10;  // pixels
constexpr std::int32_t kIconRoom = 20;
constexpr std::int32_t kLoudest = kLoudestVolume;
constexpr std::int32_t kMille = 1000;

}  // namespace

std::int32_t progressTravel(const ProgressBar& bar) {
    return bar.area.right - bar.area.left - kKnobRoom;
}

std::int32_t knobX(const ProgressBar& bar, double position, double duration, bool playing) {
    if (!playing || duration == 0) {
        return bar.area.left;
    }
    const double travel = progressTravel(bar);
    const double x = position * kMille / duration * travel * 0.001;
    // Positions that are not numbers fail both comparisons and stand at the left.
    const double clamped = x >= travel ? travel : x > 0 ? x : 0;
    return static_cast<std::int32_t>(bar.area.left + clamped);
}

double positionFromTouch(const ProgressBar& bar, std::int32_t x, double duration) {
    const std::int64_t reached = std::min(x, bar.area.right - kKnobRoom);
    const std::int64_t perMille = (reached - bar.area.left) * kMille / progressTravel(bar);
    const double position = static_cast<double>(perMille) * duration * 0.001;
    if (position >= duration) {
        return duration;
    }
    return position > 0 ? position : 0;
}

Rect knobTrack(const ProgressBar& bar, std::int32_t fromX, std::int32_t toX, Size knob) {
    return {std::min(fromX, toX), bar.knobTop,
            std::max(fromX, toX) + std::max(knob.width, kKnobSize.width),
            bar.knobTop + std::max(knob.height, kKnobSize.height)};
}

std::int32_t volumeIconX(const VolumeBar& bar, std::int32_t level) {
    const std::int32_t travel = bar.area.right - bar.area.left - kIconRoom;
    const std::int32_t perMille = std::clamp(level, 0, kLoudest) * kMille / kLoudest;
    return bar.area.left + std::clamp(perMille * travel / kMille, 0, travel);
}

std::int32_t levelFromTouch(const VolumeBar& bar, std::int32_t x) {
    const std::int64_t travel = bar.area.right - bar.area.left;
    const std::int64_t reached = std::min(x, bar.area.right);
    const std::int64_t perMille = (reached - bar.area.left) * kMille / travel;
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(perMille * kLoudest / kMille, 0, kLoudest));
}

}  // namespace ui
