// The graph of the tests: every operation of CFilterControl is written down (record.h), and answers
// as the test has it.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>

namespace test {

struct GraphDouble {
    int built = 1;       // result of CreateFilterForPlaying
    bool stands = true;  // false: not even a graph can be made
    std::int32_t renderResult = 0;
    bool nullVideoDecoder = false;
    bool audioRenderer = true;
    int run = 1, pause = 1;
    std::uint32_t filterStatus = 1;
    double position = 0, duration = 60;       // seconds
    bool seeks = true;                        // the position follows a seek
    std::function<void()> whileBuilding;      // called once by the next CreateFilterForPlaying
    std::function<void()> whileSettingClock;  // called once by the next SetAudioClock

    struct Event {
        long code;
        std::intptr_t param1, param2;
    };
    std::deque<Event> events;
};

// Of the test that runs.
GraphDouble& theGraph();
void freshGraph();

}  // namespace test
