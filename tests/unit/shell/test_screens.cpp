// What the keys of the screens set off, action by action, and the change of the screen mode.
#include "shell/screens/effects.h"
#include "shell/screens/refresh.h"
#include "shell/screens/screen_mode.h"
#include "shell/screens/screens.h"
#include "shell/screens/state_view.h"
#include "tests/unit/shell/screens_unit.h"

namespace {

using test::taken;
using test::theGraph;
using test::unit;
using ui::Action;

class Screens : public test::ScreensUnit {};

TEST_F(Screens, EveryActionOfThePlaybackScreens) {
    play(3, 1);
    struct Case {
        Action action;
        const char* lines;
    };
    const Case cases[] = {
        {Action::None, "\n"},
        {Action::Scroll, "\n"},
        {Action::Refuse,
         "\nbox 0,1 \\r\\nTandema 재생모드\\r\\n현재 상태에서는 동작하지 않습니다.\n"},
        {Action::GoHome, "\npost Processmanager MSG_MovietoProcessManager 0,0\n"},
        {Action::GoNavigation, "\npost Processmanager MSG_MovietoProcessManager 1,0\n"},
        {Action::Close, "\npost Processmanager MSG_MovietoProcessManager 4,0\n"},
        {Action::PlayPause, "\npost Video ZEL_BSP_WMUSER_IR_KEY 7,0\n"},
        {Action::VolumeDown, "\ngraph volume 4\nredraw 360,437,549,467\nredraw 200,425,280,480\n"},
        {Action::VolumeUp, "\ngraph volume 5\nredraw 360,437,549,467\nredraw 200,425,280,480\n"},
        {Action::ToggleMute,
         "\nbroadcast MSG_MovietoProcessManager 3,0\nredraw 360,437,549,467\n"
         "redraw 200,425,280,480\n"},
        {Action::StartPopup, "\nprogram \\ResidentFlash\\apps\\Popup.exe\n"},
        {Action::SwitchCamera, "\n"},
    };
    for (const Case& c : cases) {
        EXPECT_LINES(act(c.action), c.lines) << static_cast<int>(c.action);
    }
}

TEST_F(Screens, CloseLeavesItsMarkInTheSettings) {
    act(Action::Close);
    EXPECT_EQ(contents("ResidentFlash2/Data/Config.ini"),
              "[TRIP]\r\nAppProgram=5\r\nAppProgramMode=5\r\nAppProgramModeTimer=5\r\n");
}

TEST_F(Screens, SkipsStopAndSeek) {
    play(3, 1);
    appState.screens.displayedPosition = 20;
    EXPECT_LINES(act(Action::Seek), "\ngraph seek 20\n");
    appState.persisted.endTime = 0;
    EXPECT_EQ(act(Action::Seek), "");
    EXPECT_TRUE(act(Action::Stop).starts_with("graph key 0x000000\n"));
    appState.persisted.endTime = 60;
    EXPECT_EQ(act(Action::Seek), "");
    EXPECT_LINES(act(Action::NextFile), "\npost Video ZEL_BSP_WMUSER_IR_KEY 7,0\n");
    EXPECT_EQ(appState.persisted.fileIndex, 2);
    appState.lastSkipTick -= 1700;
    EXPECT_LINES(act(Action::PreviousFile), "\npost Video ZEL_BSP_WMUSER_IR_KEY 7,0\n");
    EXPECT_EQ(appState.persisted.fileIndex, 1);
}

TEST_F(Screens, ThePictureOfTheHalfWidthLeadsToTheFullWidthWhileOneIsShown) {
    appState.screenMode = kHalfWidth;
    EXPECT_EQ(act(Action::ShowFullWidth), "");
    EXPECT_EQ(appState.screenMode, kHalfWidth);
    appState.persisted.playState = settings::kPaused;
    act(Action::ShowFullWidth);
    EXPECT_EQ(appState.screenMode, kFullWidth);
    appState.persisted.playState = settings::kStopped;
    appState.screenMode = kSlideBanner;
    act(Action::ShowFullWidth);
    EXPECT_EQ(appState.screenMode, kFullWidth);
}

TEST_F(Screens, TheListKeyShowsTheListAndARefusalLeavesTheSlideScreen) {
    play(2);
    act(Action::ShowList);
    EXPECT_EQ(appState.screenMode, kFileList);
    mode(kHalfWidth);
    mode(kSlideBanner);
    act(Action::Stop);
    theGraph().nullVideoDecoder = true;
    send(u"ZEL_BSP_WMUSER_IR_KEY", 7);
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
    EXPECT_EQ(appState.screenMode, kHalfWidth);
}

TEST_F(Screens, ABoxLetsThePositionGoOnThatAFingerHeld) {
    play(2);
    touch(0x201, 600, 400);  // on the progress bar
    ASSERT_TRUE(appState.screens.touch.restartPosition);
    EXPECT_TRUE(
        act(Action::Refuse).starts_with("release\ntimer 100 300\ntimer 103 6000\nredraw\nbox "));
    EXPECT_FALSE(appState.screens.touch.restartPosition);
}

TEST_F(Screens, WhatPlaysIsHeardUnlessItIsSilent) {
    struct Case {
        std::int32_t state, muted, suppressed, volume;
        bool audible;
    };
    for (const Case& c :
         {Case{1, 0, 0, 1, true}, Case{0, 0, 0, 5, false}, Case{2, 0, 0, 5, false},
          Case{1, 1, 0, 5, false}, Case{1, 0, 1, 5, false}, Case{1, 0, 0, 0, false}}) {
        appState.persisted.playState = c.state;
        appState.persisted.volume = c.volume;
        appState.muted = c.muted;
        appState.audioSuppressed = c.suppressed;
        EXPECT_EQ(screens::playerView().audible, c.audible)
            << c.state << c.muted << c.suppressed << c.volume;
    }
}

TEST_F(Screens, WhatIsSeenIsThePlayersState) {
    using settings::kPaused, settings::kPlaying, settings::kStopped;
    for (const std::int32_t state : {kStopped, kPlaying, kPaused}) {
        appState.persisted.playState = state;
        EXPECT_EQ(screens::playerView().playing, state != kStopped) << state;
        EXPECT_EQ(screens::playerView().paused, state == kPaused) << state;
    }
    for (const std::int32_t flag : {0, 1, 2}) {
        appState.connectMode = appState.muted = appState.drivingBlock = flag;
        const ui::PlayerView view = screens::playerView();
        EXPECT_EQ(view.connectMode, flag == 1) << flag;
        EXPECT_EQ(view.muted, flag == 1) << flag;
        EXPECT_EQ(view.drivingBlock, flag == 1) << flag;
    }
    for (const bool flag : {false, true}) {
        appState.videoArea = appState.screens.barShown = flag;
        appState.screens.bannerShown = !flag;
        const ui::PlayerView view = screens::playerView();
        EXPECT_EQ(view.videoArea, flag);
        EXPECT_EQ(view.barShown, flag);
        EXPECT_EQ(view.bannerShown, !flag);
    }
}

TEST_F(Screens, TheCameraIsSeenInConnectModeAlone) {
    catalogue::copyPath(appState.persisted.file, u"\\SDMMCDisk\\Record\\1_R.avi");
    for (const std::int32_t connect : {0, 1, 2}) {
        appState.connectMode = connect;
        EXPECT_EQ(screens::playerView().camera, connect == 1 ? 1 : -1) << connect;
    }
}

TEST_F(Screens, TheNumbersThatAreSeen) {
    appState.persisted.volume = 7;
    appState.persisted.endTime = 61;
    appState.screens.displayedPosition = 12;
    appState.screens.touch.pressedKey = 3;
    catalogue::copyPath(appState.persisted.file, u"\\SDMMCDisk\\Record\\a.avi");
    const ui::PlayerView view = screens::playerView();
    EXPECT_EQ(view.volume, 7);
    EXPECT_EQ(view.duration, 61);
    EXPECT_EQ(view.displayedPosition, 12);
    EXPECT_EQ(view.pressedKey, 3);
    EXPECT_EQ(view.hour, 14);
    EXPECT_EQ(view.minute, 48);
    EXPECT_EQ(std::u16string_view(view.fileName), u"a.avi");
}

TEST_F(Screens, AnEmptyAreaIsNotDrawn) {
    screens::Effects effects;
    taken();
    effects.invalidate({5, 6, 5, 9});
    effects.invalidate({5, 6, 9, 6});
    EXPECT_EQ(taken(), "");
    effects.invalidate({5, 6, 6, 7});
    EXPECT_EQ(taken(), "redraw 5,6,6,7\n");
}

TEST_F(Screens, ATimerBeginsAgainOnlyWhereItIsWanted) {
    screens::Effects effects;
    const auto started = [&effects](ui::ScreenTimer timer) {
        taken();
        effects.startTimer(timer);
        return taken();
    };
    for (const std::int32_t mode : {kFullWidth, kHalfWidth, kFileList, kSlideBanner}) {
        appState.screenMode = mode;
        EXPECT_EQ(started(ui::ScreenTimer::Bar), mode == kFullWidth ? "timer 103 6000\n" : "");
    }
    for (const std::int32_t state : {settings::kStopped, settings::kPlaying, settings::kPaused}) {
        appState.persisted.playState = state;
        EXPECT_EQ(started(ui::ScreenTimer::Position),
                  state == settings::kStopped ? "" : "timer 100 300\n");
    }
}

TEST_F(Screens, OnlyScreensHaveBitmaps) {
    taken();
    for (const std::int32_t mode : {-1, static_cast<int>(kHidden), 5}) {
        screens::loadScreen(mode);
        screens::unloadScreen(mode);
        EXPECT_FALSE(screens::isScreenLoaded(mode)) << mode;
    }
    EXPECT_EQ(taken(), "");
}

TEST_F(Screens, AFileIsStartedInTheWindowInThisOrder) {
    recordings(1);
    appState.persisted.position = 12;
    const std::string did = lines(u"ZEL_BSP_WMUSER_IR_KEY", 7);
    EXPECT_NE(did.find("graph key 0x000000\nredraw\ngraph place 0,0 800x480 on layer 36\n"),
              std::string::npos)
        << did;
}

TEST_F(Screens, ABoxWhileThePositionGoesOnStartsNoTimerForIt) {
    play(2);
    touch(0x201, 650, 450);  // on a key
    EXPECT_TRUE(act(Action::Refuse).starts_with("release\ntimer 103 6000\nredraw\nbox "));
}

TEST_F(Screens, TheBoxForgetsTheTouch) {
    appState.screens.touch.held = true;
    EXPECT_TRUE(act(Action::Refuse).starts_with("release\ntimer 103 6000\nredraw\nbox "));
    EXPECT_FALSE(appState.screens.touch.held);
}

TEST_F(Screens, EveryChangeOfTheModeInOrder) {
    EXPECT_LINES(mode(kHalfWidth), R"(
place 400,400,480
redraw
graph place 0,60 400x260 on layer 36
update
graph layer 10
front
show
redraw
)");
    EXPECT_EQ(appState.previousScreenMode, kFullWidth);
    EXPECT_LINES(mode(kSlideBanner), R"(
place 0,800,480
redraw
graph place 0,0 800x480 on layer 36
timer 102 3000
graph layer 10
front
show
redraw
)");
    EXPECT_TRUE(appState.screens.bannerShown);
    EXPECT_LINES(mode(kFileList), R"(
redraw
graph place 0,0 0x0 off layer 10
graph layer 10
front
show
redraw
)");
    EXPECT_LINES(mode(kHidden), "\ngraph layer 12\nhide\n");
    EXPECT_EQ(appState.previousScreenMode, kFileList);
    EXPECT_EQ(appState.videoLayerState, 12);
    EXPECT_EQ(mode(-1) + mode(5), "");
    EXPECT_EQ(appState.screenMode, kHidden);
}

TEST_F(Screens, EnteringAScreenShowsTheTimesAndForgetsTheFinger) {
    appState.persisted.position = 12;
    appState.persisted.endTime = 61;
    for (const std::int32_t entered : {kHalfWidth, kSlideBanner, kFullWidth, kFileList}) {
        appState.screens.touch.held = true;
        appState.screens.displayedPosition = appState.screens.displayedDuration = 0;
        appState.screens.barShown = appState.screens.listShown = false;
        mode(entered);
        EXPECT_FALSE(appState.screens.touch.held) << entered;
        EXPECT_EQ(appState.screens.displayedPosition, 12) << entered;
        EXPECT_EQ(appState.screens.displayedDuration, 61) << entered;
        EXPECT_EQ(appState.screens.barShown, entered == kFullWidth) << entered;
        EXPECT_EQ(appState.screens.listShown, entered == kFileList) << entered;
    }
}

TEST_F(Screens, AGestureOutlivesOnlyTheWayFromTheFullWidthToTheSlideScreen) {
    struct Case {
        std::int32_t before, after;
        bool kept;
    };
    for (const Case& c :
         {Case{kFullWidth, kSlideBanner, true}, Case{kHalfWidth, kSlideBanner, false},
          Case{kFileList, kSlideBanner, false}, Case{kFullWidth, kHalfWidth, false},
          Case{kFullWidth, kFileList, false}, Case{kSlideBanner, kFullWidth, false}}) {
        mode(c.before);
        appState.pendingKeyAction = kNextFile;
        mode(c.after);
        EXPECT_EQ(appState.pendingKeyAction, c.kept ? kNextFile : kNoAction) << c.before << c.after;
    }
}

TEST_F(Screens, TheModeThatShowsKeepsTheOneBeforeIt) {
    mode(kHalfWidth);
    EXPECT_EQ(mode(kHalfWidth).find("place 0,800,480"), std::string::npos);
    EXPECT_EQ(appState.previousScreenMode, kFullWidth);
}

TEST_F(Screens, TheModeThatShowsIsEnteredOnceMore) {
    EXPECT_LINES(mode(kFullWidth), R"(
redraw
graph place 0,0 800x480 on layer 36
timer 103 6000
graph layer 10
front
show
redraw
)");
    EXPECT_EQ(appState.previousScreenMode, kFullWidth);
}

TEST_F(Screens, ThePictureIsPlacedWithinTheWindow) {
    unit().clientWidth = 300;
    taken();
    screens::placeVideo(1);
    EXPECT_LINES(taken(), "\ngraph place 0,0 300x480 on layer 36 repaint\n");
    EXPECT_EQ(appState.outputRectangle, (platform::Rect{0, 0, 300, 480}));
    appState.drivingBlock = 1;
    screens::placeVideo(0);
    EXPECT_LINES(taken(), "\ngraph place 0,480 100x100 off layer 10\n");
    EXPECT_EQ(appState.outputRectangle, (platform::Rect{0, 0, 300, 480}));
    appState.screenMode = kHidden;
    screens::placeVideo(0);
    EXPECT_EQ(taken(), "");
    appState.drivingBlock = 0;
    appState.screenMode = kHalfWidth;
    screens::placeVideo(0);
    EXPECT_LINES(taken(), "\ngraph place 0,60 300x260 on layer 36\n");
}

}  // namespace
