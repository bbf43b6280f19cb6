// headunit drive --chart: when the player's driving check blocks the picture.
#include <cstring>

#include "app/driving_check.h"
#include "simulator/command/verbs.h"

namespace headunit {
namespace {

std::string row(const char* name, int speed, int blockedAtFirst) {
    app::BlockCounters counters;
    std::int32_t blocked = blockedAtFirst;
    std::string text = "  " + std::string(name) + std::string(11 - std::strlen(name), ' ');
    for (int second = 1; second <= 8; ++second) {
        app::driveOneSecond(speed, 0, counters, blocked);
        text += blocked != 0 ? " #" : " .";
    }
    return text + "\n";
}

}  // namespace

std::string drivingChart() {
    struct Row {
        const char* name;
        int speed;
    };
    constexpr Row kRows[] = {{"no signal", -1}, {"0 km/h", 0},   {"5 km/h", 5},  {"8 km/h", 8},
                             {"9 km/h", 9},     {"10 km/h", 10}, {"60 km/h", 60}};
    std::string text;
    for (const int blocked : {0, 1}) {
        text += std::string(blocked != 0 ? "blocked" : "free") +
                " at first; seconds 1 to 8 (# blocked, . free):\n";
        for (const Row& each : kRows) {
            text += row(each.name, each.speed, blocked);
        }
    }
    return text + "With [MISC] DMB other than 0 nothing is ever blocked.";
}

}  // namespace headunit
