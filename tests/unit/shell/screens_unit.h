// Actions of the screens and changes of the screen mode, and the lines that they leave.
#pragma once

#include <string>

#include "shell/screens/effects.h"
#include "shell/screens/screen_mode.h"
#include "tests/unit/shell/shell_unit.h"

namespace test {

class ScreensUnit : public ShellUnit {
protected:
    // `row` of the list, for the actions that have one.
    static std::string act(ui::Action action, std::int32_t row = 0) {
        taken();
        screens::Effects effects;
        effects.act(action, row);
        return taken();
    }
    static std::string mode(std::int32_t mode) {
        taken();
        screens::setScreenMode(mode);
        return taken();
    }
};

}  // namespace test
