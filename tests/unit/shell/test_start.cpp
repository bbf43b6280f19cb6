// From the entry to the exit value.
#include "shell/start.h"

#include "tests/unit/doubles/main_window_double.h"
#include "tests/unit/shell/shell_unit.h"

namespace {

using test::starting;
using test::taken;
using test::unit;

class Start : public test::ShellUnit {
protected:
    static std::string run(const char16_t* commandLine, int& exitValue) {
        exitValue = shell::run(nullptr, commandLine, 5);
        return taken();
    }
};

TEST_F(Start, OnlyTheFirstWordPipAsksForTheHalfWidth) {
    struct Case {
        const char16_t* line;
        bool half;
    };
    const Case cases[] = {
        {u"PIP", true},
        {u"", false},
        {u" PIP", true},
        {u"\tPIP x", true},
        {u"PIP\t", true},
        {u"pip", false},
        {u"PIPX", false},
        {u"XPIP", false},
        {u"PI", false},
        {u"x PIP", false},
        {u"                             PIP", true},    // the 30th to 32nd character
        {u"                              PIP", false},  // one is not examined any more
        {u"PIP                              x", true},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(shell::asksForHalfWidth(c.line), c.half) << test::shown(c.line);
    }
}

TEST_F(Start, FullWidth) {
    int exitValue = 0;
    starting().quitValue = 3;
    EXPECT_LINES(run(u"", exitValue), R"(
gate closed
class
create 0,800,480
first show 5
loop
post ani_waiting MSG_TO_ANI_WAITING 0,0
gate open
)");
    EXPECT_EQ(exitValue, 3);
    EXPECT_EQ(appState.launchAsPip, 0);
    EXPECT_EQ(appState.screenMode, kFullWidth);
}

TEST_F(Start, HalfWidth) {
    int exitValue = 0;
    EXPECT_LINES(run(u"PIP", exitValue), R"(
gate closed
class
create 400,400,480
first show 5
loop
post ani_waiting MSG_TO_ANI_WAITING 0,0
gate open
)");
    EXPECT_EQ(appState.launchAsPip, 1);
    EXPECT_EQ(appState.screenMode, kHalfWidth);
}

TEST_F(Start, TheInstanceIsKept) {
    int any = 0;
    const auto instance = reinterpret_cast<platform::Instance>(&any);
    shell::run(instance, u"", 5);
    EXPECT_EQ(appState.hInstance, instance);
}

TEST_F(Start, ASecondStartHandsItsWishOverAndEnds) {
    unit().windows.insert(u"Video");
    int exitValue = 9;
    EXPECT_LINES(run(u"PIP", exitValue), R"(
gate closed
post Video MSG_ProcessManagertoMovie 1,0
post Processmanager MSG_MovietoProcessManager 5,0
gate open
)");
    EXPECT_EQ(exitValue, 0);
    EXPECT_LINES(run(u"", exitValue), R"(
gate closed
post Video MSG_ProcessManagertoMovie 0,0
post Processmanager MSG_MovietoProcessManager 5,0
gate open
)");
}

TEST_F(Start, AFailureEndsInSilence) {
    int exitValue = 9;
    starting().classRegisters = false;
    EXPECT_LINES(run(u"", exitValue), "\ngate closed\nclass\ngate open\n");
    EXPECT_EQ(exitValue, 0);
    starting() = {.classRegisters = true, .windowIsCreated = false};
    EXPECT_LINES(run(u"", exitValue), "\ngate closed\nclass\ncreate 0,800,480\ngate open\n");
    EXPECT_EQ(exitValue, 0);
}

}  // namespace
