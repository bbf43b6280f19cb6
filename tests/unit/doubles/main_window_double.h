// What the tests tell the double of the start's window.
#pragma once

namespace test {

struct StartDouble {
    bool classRegisters = true;
    bool windowIsCreated = true;
    int quitValue = 0;  // of the message loop
};
StartDouble& starting();

}  // namespace test
