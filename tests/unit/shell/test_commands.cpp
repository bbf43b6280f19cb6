// Commands of the process manager, row by row.
#include "tests/unit/shell/shell_unit.h"

namespace {

using test::taken;
using test::theGraph;
using test::unit;

class Commands : public test::ShellUnit {
protected:
    static constexpr char kStopped[] = R"(graph key 0x000000
redraw
kill 100
graph owner Video
graph place 801,481 10x10 on layer 10
graph stop
graph delete filters
graph destroy
redraw
redraw
)";
};

TEST_F(Commands, FullWidth) {
    EXPECT_LINES(command(0), R"(
redraw
graph place 0,0 800x480 on layer 36
timer 103 6000
graph layer 10
front
show
redraw
timer 103 6000
)");
    EXPECT_EQ(appState.screenMode, kFullWidth);
}

TEST_F(Commands, HalfWidth) {
    EXPECT_LINES(command(1), R"(
place 400,400,480
redraw
graph place 0,60 400x260 on layer 36
update
graph layer 10
front
show
redraw
post Processmanager MSG_MovietoProcessManager 6,0
)");
    EXPECT_EQ(appState.screenMode, kHalfWidth);
}

TEST_F(Commands, Hide) {
    EXPECT_LINES(command(2), R"(
graph layer 12
hide
)");
    EXPECT_EQ(appState.screenMode, kHidden);
    EXPECT_EQ(appState.videoLayerState, 12);
    EXPECT_LINES(command(0), R"(
redraw
graph place 0,0 800x480 on layer 36
timer 103 6000
graph layer 10
front
show
redraw
timer 103 6000
)");
    EXPECT_EQ(appState.videoLayerState, 10);
}

TEST_F(Commands, ExitIsPreparedAtOnceWhenSkinAndRequestAreDone) {
    appState.imageLoaded = appState.playLoaded = 1;
    EXPECT_LINES(command(3, 3), R"(
kill 105
send Processmanager MSG_MovietoProcessManager 7,1
)");
    EXPECT_EQ(contents("ResidentFlash2/Data/Config.ini"),
              "[TRIP]\r\nAppProgram=2\r\nAppProgramMode=0\r\n");
    EXPECT_EQ(appState.exitMessageTimed, 0);
}

TEST_F(Commands, ExitIsPreparedLaterOtherwise) {
    for (const auto& [image, request] : {std::pair{1, 0}, std::pair{0, 1}, std::pair{0, 0}}) {
        appState.imageLoaded = static_cast<std::uint8_t>(image);
        appState.playLoaded = static_cast<std::uint8_t>(request);
        EXPECT_LINES(command(3, 3), R"(
send Processmanager MSG_MovietoProcessManager 7,0
timer 105 1000
)");
    }
}

TEST_F(Commands, PreparationTellsWhichScreenWasShown) {
    struct Case {
        std::int32_t mode;
        const char* written;
    };
    for (const Case& c : {Case{kFullWidth, "0"}, Case{kHalfWidth, "1"}, Case{kFileList, "0"},
                          Case{kSlideBanner, "0"}, Case{kHidden, "2"}}) {
        appState.screenMode = c.mode;
        command(3, 3);
        EXPECT_EQ(contents("ResidentFlash2/Data/Config.ini"),
                  std::string("[TRIP]\r\nAppProgram=2\r\nAppProgramMode=") + c.written + "\r\n");
    }
}

TEST_F(Commands, InConnectModeThePreparationOnlyTimesTheExitMessage) {
    appState.connectMode = 1;
    command(3, 3);
    EXPECT_EQ(appState.exitMessageTimed, 1);
    EXPECT_FALSE(exists("ResidentFlash2/Data/Config.ini"));
}

constexpr char kClosed[] = R"(release nothing
leave COM
values Orvi 1088 1,0
)";

TEST_F(Commands, ExitAtOnceTellsTheWaitingAnimationNothing) {
    for (const std::int32_t mode : {kFullWidth, kSlideBanner}) {
        SetUp();
        play();
        appState.screenMode = mode;
        EXPECT_LINES(command(3, 2), "\n" + std::string(kStopped) + kClosed + "destroy window\n");
        EXPECT_TRUE(appState.exiting);
    }
}

TEST_F(Commands, OtherExitsShowTheWaitingAnimation) {
    struct Case {
        std::int32_t mode;
        platform::LParam lParam;
        const char* before;
        const char* shown;
        const char* ended;
    };
    constexpr char kShown[] = "post ani_waiting MSG_TO_ANI_WAITING 1,0\n";
    constexpr char kEnded[] = "post ani_waiting MSG_TO_ANI_WAITING 0,0\n";
    for (const Case& c :
         {Case{kFullWidth, 0, "", kShown, kEnded}, Case{kFullWidth, 1, "", kShown, kEnded},
          Case{kSlideBanner, 4, "", kShown, kEnded}, Case{kFileList, 2, "", kShown, kEnded},
          Case{kHalfWidth, 2, "sleep 700\n", kShown, kEnded},
          Case{kHalfWidth, 0, "sleep 700\n", kShown, kEnded}, Case{kHidden, 2, "", "", ""}}) {
        SetUp();
        play();
        appState.screenMode = c.mode;
        EXPECT_LINES(command(3, c.lParam), std::string("\n") + c.before + c.shown + kStopped +
                                               kClosed + c.ended + "destroy window\n")
            << c.mode << " " << c.lParam;
    }
}

TEST_F(Commands, AnExitIsTakenOnce) {
    play();
    command(3, 0);
    EXPECT_EQ(command(3, 0), "");
    EXPECT_EQ(lines(platform::kCloseMessage), "");
}

TEST_F(Commands, SilenceAndSound) {
    appState.persisted.volume = 7;
    EXPECT_LINES(command(15007), "\ngraph volume 0\n");
    EXPECT_EQ(appState.audioSuppressed, 1);
    EXPECT_LINES(command(15008), "\ngraph volume 7\n");
    EXPECT_EQ(appState.audioSuppressed, 0);
}

TEST_F(Commands, SilenceChangesTheSentenceThatStandsForThePicture) {
    appState.drivingBlock = 1;
    EXPECT_LINES(command(15007), "\ngraph volume 0\nredraw 200,230,600,260\n");
    EXPECT_LINES(command(15008), "\ngraph volume 5\nredraw 200,230,600,260\n");
}

TEST_F(Commands, PreviousAndNextEvenWhileTheKeysAreLocked) {
    recordings(3, 1);
    appState.keyLock = 1;
    EXPECT_LINES(command(20502), R"(
print \r\n\n+++++Player::OnPrev: OnPrev\r\n
post Video ZEL_BSP_WMUSER_IR_KEY 7,0
)");
    EXPECT_EQ(appState.persisted.fileIndex, 0);
    appState.lastSkipTick -= 1700;
    EXPECT_LINES(command(20503), R"(
print \r\n\n+++++Player::OnNext: OnNext\r\n
post Video ZEL_BSP_WMUSER_IR_KEY 7,0
)");
    EXPECT_EQ(appState.persisted.fileIndex, 1);
}

TEST_F(Commands, StopLeavesTheSlideScreen) {
    play();
    appState.screens.displayedPosition = 5;
    EXPECT_LINES(command(20506), std::string("\n") + kStopped);
    EXPECT_EQ(appState.screens.displayedPosition, 0);
    EXPECT_EQ(command(20506), "");
    appState.screenMode = kSlideBanner;
    appState.previousScreenMode = kFullWidth;
    EXPECT_LINES(command(20506), R"(
redraw
graph place 0,0 800x480 on layer 36
timer 103 6000
graph layer 10
front
show
redraw
)");
    EXPECT_EQ(appState.screenMode, kFullWidth);
}

TEST_F(Commands, PlayStartsOrResumesButNeverPauses) {
    recordings(1);
    unit().quietPrint = true;
    EXPECT_NE(command(20507).find("graph run\n"), std::string::npos);
    EXPECT_EQ(command(20507), "");
    appState.persisted.playState = settings::kPaused;
    EXPECT_LINES(command(20507), R"(
graph run
redraw
)");
}

TEST_F(Commands, FileList) {
    EXPECT_LINES(command(20511), R"(
redraw
graph place 0,0 0x0 off layer 10
graph layer 10
front
show
redraw
)");
    EXPECT_EQ(appState.screenMode, kFileList);
}

TEST_F(Commands, Navigation) {
    EXPECT_LINES(command(20512), "\npost Processmanager MSG_MovietoProcessManager 1,0\n");
    unit().windows.clear();
    EXPECT_EQ(command(20512), "");
}

TEST_F(Commands, OthersAreIgnored) {
    for (const platform::WParam other :
         {4u, 5u, 7u, 15006u, 15009u, 20501u, 20504u, 20505u, 20508u, 20510u, 20513u}) {
        EXPECT_EQ(command(other, 3), "") << other;
    }
}

}  // namespace
