// The timers of the main window: the shell's step and what the screens do after it.
#include "tests/unit/shell/shell_unit.h"
#include "ui/player_layout.h"

namespace {

using test::taken;
using test::theGraph;
using test::unit;

class Ticks : public test::ShellUnit {
protected:
    static void showTime(double position, double duration) {
        appState.screens.displayedPosition = position;
        appState.screens.displayedDuration = duration;
    }
};

TEST_F(Ticks, ThePositionIsReadAndShown) {
    play();
    showTime(0, 60);
    theGraph().position = 30;
    EXPECT_LINES(tick(100), "\nredraw 202,391,419,409\nredraw 632,377,792,401\n");
    EXPECT_EQ(appState.persisted.position, 30);
    EXPECT_EQ(appState.screens.displayedPosition, 30);
    EXPECT_EQ(tick(100), "");
}

TEST_F(Ticks, ThePositionIsFollowedUnlessAFingerLeadsIt) {
    struct Case {
        const char* name;
        std::int32_t mode;
        bool held;
        std::int32_t key;
        double shown;  // of 20 s where 10 s were shown
        bool drawn;
    };
    for (const Case& c :
         {Case{"no finger", kFullWidth, false, -1, 20, true},
          Case{"beside the keys", kFullWidth, true, -1, 20, true},
          Case{"on another key", kFullWidth, true, ui::kFullPlayKey, 20, true},
          Case{"on the bar", kFullWidth, true, ui::kFullLayout.progressKey, 10, false},
          Case{"on the bar", kHalfWidth, true, ui::kHalfLayout.progressKey, 10, false},
          Case{"on the slide screen", kSlideBanner, true, ui::kFullLayout.progressKey, 20,
               false}}) {
        SetUp();
        play();
        appState.screenMode = c.mode;
        showTime(10, 60);
        theGraph().position = 20;
        appState.screens.touch.held = c.held;
        appState.screens.touch.pressedKey = c.key;
        EXPECT_EQ(tick(100) != "", c.drawn) << c.name;
        EXPECT_EQ(appState.screens.displayedPosition, c.shown) << c.name;
    }
}

TEST_F(Ticks, NothingFollowsAStoppedPlayer) {
    showTime(10, 60);
    appState.persisted.endTime = 60;
    EXPECT_EQ(tick(100), "");
    EXPECT_EQ(appState.screens.displayedPosition, 10);
}

TEST_F(Ticks, ALengthThatGrowsIsPaintedApartFromTheTrack) {
    play();
    theGraph().position = 30;
    tick(100);
    appState.persisted.endTime = 61;
    EXPECT_LINES(tick(100), "\nredraw 202,391,627,409\nupdate\nredraw 632,401,792,425\n");
    EXPECT_EQ(appState.screens.displayedDuration, 61);
}

TEST_F(Ticks, AtTheEndTheNextFileIsAskedFor) {
    play(3);
    unit().quietPrint = false;
    theGraph().position = 59.9;
    EXPECT_EQ(tick(100).find("print"), std::string::npos);
    theGraph().position = 60;
    const std::string did = tick(100);
    EXPECT_TRUE(
        did.starts_with("print 2. CurTime=60.000000, EndTime=60.000000\\n\n"
                        "print \\r\\n\\n+++++Player::OnNext: OnNext\\r\\n\n"))
        << did;
    EXPECT_EQ(appState.persisted.fileIndex, 1);
}

TEST_F(Ticks, TheDrivingBlockMovesThePictureAtTheNextTick) {
    play();
    theGraph().position = 0.1;
    tick(100);
    appState.drivingBlock = 1;
    EXPECT_LINES(tick(100), "\nredraw\ngraph place 0,480 100x100 off layer 10\n");
    EXPECT_EQ(tick(100), "");
    EXPECT_FALSE(appState.videoArea);
    appState.drivingBlock = 0;
    EXPECT_LINES(tick(100), "\nredraw\ngraph place 0,0 800x480 on layer 36\n");
    EXPECT_TRUE(appState.videoArea);
}

TEST_F(Ticks, TheBannerEnds) {
    appState.screenMode = kSlideBanner;
    appState.screens.bannerShown = true;
    EXPECT_LINES(tick(102), "\nkill 102\nredraw\n");
    EXPECT_FALSE(appState.screens.bannerShown);
    EXPECT_EQ(appState.screenMode, kSlideBanner);
}

TEST_F(Ticks, TheBarHides) {
    EXPECT_LINES(tick(103), R"(
kill 103
kill 103
redraw
graph place 0,0 800x480 on layer 36
timer 102 3000
graph layer 10
front
show
redraw
)");
    EXPECT_EQ(appState.screenMode, kSlideBanner);
    EXPECT_FALSE(appState.screens.barShown);
    EXPECT_TRUE(appState.screens.bannerShown);
    EXPECT_LINES(tick(103), "\nkill 103\n");
    EXPECT_EQ(appState.screenMode, kSlideBanner);
}

TEST_F(Ticks, TheKeysAreFreedOnce) {
    appState.keyLock = 1;
    EXPECT_LINES(tick(104), "\nkill 104\n");
    EXPECT_EQ(appState.keyLock, 0);
}

TEST_F(Ticks, TheExitWaitsForSkinAndRequest) {
    for (const auto& [image, request] : {std::pair{0, 0}, std::pair{1, 0}, std::pair{0, 1}}) {
        appState.imageLoaded = static_cast<std::uint8_t>(image);
        appState.playLoaded = static_cast<std::uint8_t>(request);
        EXPECT_LINES(tick(105), "\nprint [OnTimer : 105] bImgLoad[" + std::to_string(image) +
                                    "] bPlayLoad[" + std::to_string(request) +
                                    "] 1=1 kill \\n\npost Video 0xF 0,0\n");
    }
    appState.imageLoaded = appState.playLoaded = 1;
    EXPECT_LINES(tick(105), R"(
print [OnTimer : 105] bImgLoad[1] bPlayLoad[1] 1=1 kill \n
kill 105
post Processmanager MSG_MovietoProcessManager 7,1
)");
}

TEST_F(Ticks, TheExitWaitsForAResumeThatAScreenCanStart) {
    struct Case {
        std::int32_t mode;
        std::uint8_t playLoaded;
    };
    for (const Case& c : {Case{kFullWidth, 0}, Case{kHalfWidth, 0}, Case{kSlideBanner, 0},
                          Case{kFileList, 1}, Case{kHidden, 1}}) {
        appState.screenMode = c.mode;
        appState.imageLoaded = 0;
        appState.resumePending = 1;
        appState.playLoaded = 0;
        tick(105);
        EXPECT_EQ(appState.playLoaded, c.playLoaded) << c.mode;
    }
}

TEST_F(Ticks, TheDrivingCheckReadsTheSettingAndRedrawsOnAChange) {
    appState.systemBroadcastValue = 20;
    EXPECT_EQ(tick(110) + tick(110), "");
    EXPECT_LINES(tick(110), "\nredraw\n");
    EXPECT_EQ(appState.drivingBlock, 1);
    EXPECT_EQ(tick(110), "");
    appState.systemBroadcastValue = 9;
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(tick(110), "");
    }
    appState.systemBroadcastValue = 5;
    EXPECT_EQ(tick(110) + tick(110) + tick(110) + tick(110), "");
    EXPECT_LINES(tick(110), "\nredraw\n");
    EXPECT_EQ(appState.drivingBlock, 0);
    appState.systemBroadcastValue = -1;
    EXPECT_EQ(tick(110) + tick(110), "");
    EXPECT_LINES(tick(110), "\nredraw\n");
    put("ResidentFlash2/Data/Config.ini", "[MISC]\nDMB=1\n");
    EXPECT_LINES(tick(110), "\nredraw\n");
    EXPECT_EQ(appState.dmbSetting, 1);
    EXPECT_EQ(appState.drivingBlock, 0);
}

TEST_F(Ticks, TheClockIsFollowedInFullWidth) {
    EXPECT_LINES(tick(101), "\nredraw 607,16,742,51\n");
    EXPECT_EQ(appState.screens.displayedMinute, 14 * 60 + 48);
    EXPECT_EQ(tick(101), "");
    unit().time.minute = 49;
    EXPECT_LINES(tick(101), "\nredraw 607,16,742,51\n");
    appState.screenMode = kHalfWidth;
    unit().time.minute = 50;
    EXPECT_EQ(tick(101), "");
}

TEST_F(Ticks, TheFileListAndTheHiddenPlayerFollowNone) {
    appState.imageLoaded = 1;
    appState.resumePending = 1;
    appState.pendingKeyAction = kPreviousFile;
    appState.persisted.endTime = 60;
    appState.persisted.playState = settings::kPlaying;
    for (const std::int32_t mode : {kFileList, kHidden}) {
        appState.screenMode = mode;
        showTime(30, 60);
        EXPECT_EQ(tick(100) + tick(101) + tick(103), "");
        EXPECT_EQ(appState.screens.displayedPosition, 30);
        EXPECT_EQ(appState.pendingKeyAction, kPreviousFile);
        EXPECT_EQ(appState.resumePending, 1);
    }
}

TEST_F(Ticks, AGestureLeadsOverTheBannerBackToAPlayer) {
    struct Case {
        std::int32_t before, after;
    };
    for (const Case& c : {Case{kFullWidth, kFullWidth}, Case{kHalfWidth, kHalfWidth},
                          Case{kFileList, kFullWidth}, Case{kHidden, kFullWidth}}) {
        SetUp();
        appState.pendingKeyAction = kVolumeDown;
        tick(101);
        EXPECT_EQ(appState.screenMode, kSlideBanner);
        EXPECT_EQ(appState.pendingKeyAction, kVolumeDown);
        appState.persisted.volume = 5;
        appState.previousScreenMode = c.before;
        tick(102);
        EXPECT_EQ(appState.persisted.volume, 4);
        EXPECT_EQ(appState.pendingKeyAction, kNoAction);
        EXPECT_EQ(appState.screenMode, c.after) << c.before;
    }
}

TEST_F(Ticks, TheSlideScreenShowsItsBannerForAGesture) {
    appState.screenMode = kSlideBanner;
    EXPECT_EQ(tick(101).find("timer 102"), std::string::npos);
    EXPECT_FALSE(appState.screens.bannerShown);
    appState.pendingKeyAction = kVolumeUp;
    EXPECT_LINES(tick(101), "\ntimer 102 3000\nredraw 180,0,620,64\n");
    EXPECT_TRUE(appState.screens.bannerShown);
    EXPECT_EQ(tick(101).find("timer 102"), std::string::npos) << "not begun again";
    EXPECT_EQ(appState.pendingKeyAction, kVolumeUp) << "until the banner ends";
}

TEST_F(Ticks, TheHalfWidthPlayerCarriesAGestureOutAtOnce) {
    recordings(3);
    appState.screenMode = kHalfWidth;
    struct Case {
        std::int32_t action;
        const char* line;
    };
    for (const Case& c : {Case{kNextFile, "print \\r\\n\\n+++++Player::OnNext"},
                          Case{kPreviousFile, "print \\r\\n\\n+++++Player::OnPrev"},
                          Case{kVolumeDown, "graph volume 4"}, Case{kVolumeUp, "graph volume 5"}}) {
        appState.pendingKeyAction = c.action;
        EXPECT_TRUE(tick(101).starts_with(c.line)) << c.action;
        EXPECT_EQ(appState.pendingKeyAction, kNoAction);
        EXPECT_EQ(appState.screenMode, kHalfWidth);
    }
}

TEST_F(Ticks, AGestureWaitsForTheFinger) {
    appState.pendingKeyAction = kNextFile;
    appState.screens.touch.held = true;
    tick(101);
    EXPECT_EQ(appState.screenMode, kFullWidth);
    EXPECT_EQ(appState.pendingKeyAction, kNextFile);
}

TEST_F(Ticks, OtherTimersAreIgnored) {
    for (const platform::WParam id : {0u, 99u, 106u, 109u, 111u}) {
        EXPECT_EQ(tick(id), "") << id;
    }
}

}  // namespace
