// What a timer's message makes the running player draw anew, and what it does on which screen. The
// messages go through the window's own procedure.
#include "shell/shell.h"
#include "tests/device/player/unit.h"

namespace {

// As the places of the full-width screen have it: left, top, right, bottom.
constexpr RECT kNothing = {0, 0, 0, 0};
constexpr RECT kClock = {607, 16, 742, 51};
constexpr RECT kTimes = {632, 377, 792, 425};

class Ticks : public test::PlayerUnit {
protected:
    void SetUp() override {
        PlayerUnit::SetUp();
        shell::setScreenMode(kFullWidth);
        appState.persisted.playState = settings::kPlaying;  // with no graph it stands at 0
        appState.persisted.endTime = 60;
        handleMessages();
    }
    void TearDown() override {
        appState.resumePending = 0;
        appState.playLoaded = 1;
        appState.pendingKeyAction = kNoAction;
        KillTimer(appState.mainWindow, shell::kPositionTimer);
        PlayerUnit::TearDown();
    }
    // The box around what the tick has left to be painted.
    static RECT tick(UINT_PTR timer) {
        RECT box{};
        ValidateRect(appState.mainWindow, nullptr);
        SendMessageW(appState.mainWindow, WM_TIMER, timer, 0);
        GetUpdateRect(appState.mainWindow, &box, FALSE);
        return box;
    }
    static void showTime(double position, double duration) {
        appState.screens.displayedPosition = position;
        appState.screens.displayedDuration = duration;
    }
};

void expectBox(const RECT& box, const RECT& wanted) {
    EXPECT_TRUE(EqualRect(&box, &wanted) != 0)
        << box.left << "," << box.top << "," << box.right << "," << box.bottom;
}

TEST_F(Ticks, ThePositionIsFollowed) {
    showTime(30, 60);
    expectBox(tick(shell::kPositionTimer), {202, 377, 792, 409});
    EXPECT_EQ(appState.screens.displayedPosition, 0);
    expectBox(tick(shell::kPositionTimer), kNothing);
}

TEST_F(Ticks, ALengthThatGrowsIsPaintedApartFromTheTrack) {
    showTime(30, 50);
    expectBox(tick(shell::kPositionTimer), kTimes);
    EXPECT_EQ(appState.screens.displayedDuration, 60);
}

TEST_F(Ticks, TheClockIsFollowed) {
    SYSTEMTIME before{}, after{};
    do {  // once more when the minute ends meanwhile
        GetLocalTime(&before);
        appState.screens.displayedMinute = -1;
        expectBox(tick(shell::kScreenTimer), kClock);
        GetLocalTime(&after);
    } while (before.wMinute != after.wMinute);
    EXPECT_EQ(appState.screens.displayedMinute, before.wHour * 60 + before.wMinute);
    const RECT box = tick(shell::kScreenTimer);
    GetLocalTime(&after);
    if (before.wMinute == after.wMinute) {
        expectBox(box, kNothing);
    }
}

TEST_F(Ticks, TheFileListAndTheHiddenPlayerFollowNone) {
    for (const int mode : {kFileList, kHidden}) {
        shell::setScreenMode(mode);
        handleMessages();
        showTime(30, 60);
        appState.screens.displayedMinute = -1;
        appState.pendingKeyAction = kPreviousFile;
        appState.resumePending = appState.imageLoaded = 1;
        expectBox(tick(shell::kPositionTimer), kNothing);
        expectBox(tick(shell::kScreenTimer), kNothing);
        expectBox(tick(shell::kBarTimer), kNothing);
        EXPECT_EQ(appState.screens.displayedPosition, 30);
        EXPECT_EQ(appState.pendingKeyAction, kPreviousFile);
        EXPECT_EQ(appState.resumePending, 1);
        appState.resumePending = 0;
        shell::setScreenMode(kFullWidth);
        EXPECT_EQ(appState.pendingKeyAction, kNoAction);
    }
}

TEST_F(Ticks, TheExitWaitsForAResumeThatAScreenCanStart) {
    struct Case {
        int mode;
        std::uint8_t playLoaded;
    };
    for (const Case& c : {Case{kFullWidth, 0}, Case{kHalfWidth, 0}, Case{kSlideBanner, 0},
                          Case{kFileList, 1}, Case{kHidden, 1}}) {
        shell::setScreenMode(c.mode);
        appState.imageLoaded = 0;
        appState.resumePending = 1;
        appState.playLoaded = 0;
        tick(shell::kExitReadyTimer);
        EXPECT_EQ(appState.playLoaded, c.playLoaded) << c.mode;
        handleMessages();
    }
    KillTimer(appState.mainWindow, shell::kExitReadyTimer);
    appState.imageLoaded = 1;
}

TEST_F(Ticks, AGestureLeadsOverTheBannerBackToAPlayer) {
    struct Case {
        int before, after;
    };
    for (const Case& c : {Case{kFullWidth, kFullWidth}, Case{kHalfWidth, kHalfWidth},
                          Case{kFileList, kFullWidth}, Case{kHidden, kFullWidth}}) {
        shell::setScreenMode(kFullWidth);
        appState.pendingKeyAction = kVolumeDown;
        tick(shell::kScreenTimer);
        EXPECT_EQ(appState.screenMode, kSlideBanner);
        EXPECT_EQ(appState.pendingKeyAction, kVolumeDown);
        appState.persisted.volume = 5;
        appState.previousScreenMode = c.before;
        tick(shell::kBannerTimer);
        EXPECT_EQ(appState.persisted.volume, 4);
        EXPECT_EQ(appState.screenMode, c.after) << c.before;
    }
}

}  // namespace
