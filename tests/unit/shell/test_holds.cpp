// What a finger that stays on the screen keeps from happening, by the clock.
#include "app/timers.h"
#include "tests/unit/shell/shell_unit.h"

namespace {

using test::theGraph;

constexpr std::uint32_t kDown = 0x201, kUp = 0x202, kMove = 0x200;

class Holds : public test::ShellUnit {};

TEST_F(Holds, AKeyThatIsHeldKeepsTheBar) {
    play();
    app::startTimer(app::kBarTimer);
    pass(5999);
    EXPECT_EQ(appState.screenMode, kFullWidth);
    touch(kDown, 650, 450);
    pass(20000);
    EXPECT_EQ(appState.screenMode, kFullWidth);
    EXPECT_TRUE(appState.screens.barShown);
    EXPECT_TRUE(appState.screens.touch.held);
    touch(kUp, 5, 300);  // off the key, which then does nothing
    pass(5999);
    EXPECT_EQ(appState.screenMode, kFullWidth);
    pass(1);
    EXPECT_EQ(appState.screenMode, kSlideBanner);
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
}

TEST_F(Holds, AFingerBesideTheKeysKeepsTheBarToo) {
    play();
    app::startTimer(app::kBarTimer);
    touch(kDown, 5, 300);
    pass(60000 - 300);
    EXPECT_EQ(appState.screenMode, kFullWidth);
    touch(kUp, 5, 300);
    pass(6000);
    EXPECT_EQ(appState.screenMode, kSlideBanner);
}

// The progress bars of the two players, and where their middle lies.
TEST_F(Holds, TheProgressBarThatIsHeldKeepsTheFile) {
    struct Case {
        std::int32_t mode;
        ui::Point press, middle;
    };
    for (const Case& c :
         {Case{kFullWidth, {600, 400}, {415, 400}}, Case{kHalfWidth, {235, 340}, {127, 340}}}) {
        SetUp();
        play(3);
        appState.screenMode = c.mode;
        pass(57900);  // of 60 s
        EXPECT_EQ(appState.persisted.fileIndex, 0);
        touch(kDown, c.press.x, c.press.y);
        const double shown = appState.screens.displayedPosition;
        pass(10000);
        EXPECT_GT(theGraph().position, 60);
        EXPECT_EQ(appState.persisted.fileIndex, 0) << c.mode;
        EXPECT_EQ(appState.screens.displayedPosition, shown) << "where the finger is";
        touch(kMove, c.middle.x, c.middle.y);
        touch(kUp, c.middle.x, c.middle.y);
        EXPECT_NEAR(theGraph().position, 30, 3) << c.mode;
        EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
        pass(300);
        EXPECT_EQ(appState.persisted.position, theGraph().position) << "read again";
        pass(40000);
        EXPECT_EQ(appState.persisted.fileIndex, 1) << c.mode;
        TearDown();
    }
    SetUp();
}

}  // namespace
