// The whole player without its window: real handlers, screens and operations, and recorders for the
// system, the graph and the bitmaps.
#pragma once

#include <string>

#include "tests/unit/doubles/player_unit.h"

namespace test {

class ShellUnit : public PlayerUnit {
protected:
    void SetUp() override;

    // Sends a message to the window procedure, by its registered name or its number.
    static platform::Answer send(const char16_t* name, platform::WParam wParam = 0,
                                 platform::LParam lParam = 0);
    static platform::Answer send(std::uint32_t message, platform::WParam wParam = 0,
                                 platform::LParam lParam = 0);
    // The same; the lines that it left.
    static std::string lines(const char16_t* name, platform::WParam wParam = 0,
                             platform::LParam lParam = 0);
    static std::string lines(std::uint32_t message, platform::WParam wParam = 0,
                             platform::LParam lParam = 0);
    static std::string command(platform::WParam wParam, platform::LParam lParam = 0);
    static std::string tick(platform::WParam timer);
    static std::string touch(std::uint32_t message, std::int32_t x, std::int32_t y);

    // Lets time go by: the timers that run ring in the order of their times, and what plays goes
    // on. Nothing is written down of it.
    static void pass(std::uint32_t milliseconds);

    // Handles what the player has posted to itself, until nothing is left.
    static void handlePosted();

    // `count` recordings, the one at `index` playing; nothing is written down of it.
    void play(int count = 2, std::int32_t index = 0);
};

}  // namespace test
