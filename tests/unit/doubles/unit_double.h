// The unit around the player, as the tests have it: its clock stands still until it is told to go
// on, its other processes are there or not, its message boxes are answered at once. Every call on
// platform/ is written down (record.h); the lines are named in unit_double.cpp.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/window.h"

namespace test {

struct UnitDouble {
    // Titles of the windows that are there.
    std::set<std::u16string> windows = {u"Processmanager", u"Orvi", u"ani_waiting"};

    std::uint32_t milliseconds = 100000;  // since the unit was started
    platform::LocalTime time = {14, 48};
    std::int32_t clientWidth = 800;
    int boxAnswer = 1;                     // 1 OK, 6 yes, 7 no
    std::function<void()> whileBoxIsOpen;  // called once by the next box
    std::function<void()> whileSleeping;   // called once by the next sleep
    bool imagingFactory = true;            // whether the unit has one
    std::int32_t connectMode = 0;          // what the dash camera has left
    std::u16string connectPath;
    bool quietPrint = false;  // leaves the printed lines out

    // Posted messages that the player's own window has not handled yet.
    struct Posted {
        std::uint32_t message;
        platform::WParam wParam;
        platform::LParam lParam;
    };
    std::vector<Posted> posted;

    // The timers of the player's window that run; nothing rings them but a test.
    struct Timer {
        std::uint32_t period, due;  // milliseconds, the second as the unit's clock counts them
    };
    std::map<std::uintptr_t, Timer> timers;
};

// The unit of the test that runs; made by freshUnit().
UnitDouble& unit();
void freshUnit();

// The player's own window and another process's, by title.
platform::Window playerWindow();
platform::Window windowOf(const std::u16string& title);

// The name under which a message number was registered; "0x..." for a fixed one.
std::string nameOfMessage(std::uint32_t message);

}  // namespace test
