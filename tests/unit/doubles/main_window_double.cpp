// The start's share of the window manager, written down: "gate closed", "gate open", "class",
// "create L,W,H", "first show N", "loop".
#include "tests/unit/doubles/main_window_double.h"

#include "shell/main_window.h"
#include "tests/unit/doubles/record.h"
#include "tests/unit/doubles/unit_double.h"

namespace test {

StartDouble& starting() {
    static StartDouble theStart;
    return theStart;
}

}  // namespace test

namespace shell {

using test::note;

StartGate::StartGate() : mutex_(nullptr), held_(true) {
    note("gate closed");
}

StartGate::~StartGate() {
    open();
}

void StartGate::open() {
    if (held_) {
        note("gate open");
        held_ = false;
    }
}

void openStartGate(platform::LParam) {
    note("open the start's gate");
}

bool registerWindowClass(platform::Instance) {
    note("class");
    return test::starting().classRegisters;
}

platform::Window createMainWindow(platform::Instance, int left, int width, int height, StartGate&) {
    note("create %d,%d,%d", left, width, height);
    return test::starting().windowIsCreated ? test::playerWindow() : nullptr;
}

void showFirst(platform::Window, int show) {
    note("first show %d", show);
}

int runMessageLoop() {
    note("loop");
    return test::starting().quitValue;
}

}  // namespace shell
