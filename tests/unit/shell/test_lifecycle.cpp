// Creation, painting and destruction of the main window.
#include "tests/unit/shell/shell_unit.h"

namespace {

using test::taken;
using test::unit;

class Lifecycle : public test::ShellUnit {
protected:
    void SetUp() override {
        ShellUnit::SetUp();
        recordings(2);
        settings::PersistedState state;
        catalogue::copyPath(state.folder, test::kRecord);
        settings::writePersistedState(state);
        unit().quietPrint = true;
        appState.mainWindow = nullptr;
    }
    static std::string create() { return lines(platform::kCreateMessage); }
};

constexpr char kBegun[] = R"(
open the start's gate
read connect path
font 18 weight 700 set 1 quality 5 나눔고딕
font 25 weight 700 set 1 quality 5 나눔고딕
font 24 weight 700 set 1 quality 5 나눔고딕
font 16 weight 700 set 1 quality 5 나눔고딕
enter COM
imaging factory
)";
constexpr char kInitialised[] = R"(redraw
thread priorities 1
forget cached graphs
redraw
graph layer 10
values Orvi 1088 1,1
)";

TEST_F(Lifecycle, CreationInFullWidth) {
    put("ResidentFlash2/Data/Config.ini", "[MISC]\nDMB=3\n");
    EXPECT_LINES(create(), std::string(kBegun) + "load A\n" + kInitialised +
                               "timer 103 6000\ntimer 101 300\ntimer 110 1000\n");
    EXPECT_EQ(appState.mainWindow, test::playerWindow());
    EXPECT_EQ(appState.dmbSetting, 3);
    EXPECT_EQ(appState.videoLayerState, 10);
    EXPECT_NE(appState.imagingFactory, nullptr);
}

TEST_F(Lifecycle, TheBoxOfAGraphThatCannotBeMadeForgetsTheTouch) {
    put("SDMMCDisk/Record/01.avi", test::smallRecording());
    create();
    recordings(1);
    touch(0x201, 650, 450);
    ASSERT_TRUE(appState.screens.touch.held);
    test::theGraph().stands = false;
    test::theGraph().built = -1;
    bool held = true;
    test::theGraph().whileBuilding = [&held] { held = appState.screens.touch.held; };
    send(u"ZEL_BSP_WMUSER_IR_KEY", 7);
    EXPECT_FALSE(held);
}

TEST_F(Lifecycle, CreationInHalfWidth) {
    appState.screenMode = kHalfWidth;
    appState.dmbSetting = 5;  // stays without the setting
    EXPECT_LINES(create(), std::string(kBegun) + "load B\n" + kInitialised +
                               "timer 101 300\ntimer 110 1000\n"
                               "post Processmanager MSG_MovietoProcessManager 6,0\n");
    EXPECT_EQ(appState.dmbSetting, 5);
}

TEST_F(Lifecycle, CreationTakesTheDashCamerasFolder) {
    unit().connectMode = 1;
    unit().connectPath = u"SDMMCDisk\\Record";
    create();
    EXPECT_EQ(appState.connectMode, 1);
    EXPECT_EQ(test::shown(appState.persisted.file), R"(\SDMMCDisk\Record\01.avi)");
}

TEST_F(Lifecycle, CreationGoesOnWithoutAnImagingFactory) {
    unit().imagingFactory = false;
    create();
    EXPECT_EQ(appState.imagingFactory, nullptr);
    EXPECT_NE(lines(platform::kDestroyMessage).find("release nothing\n"), std::string::npos);
}

TEST_F(Lifecycle, TheFirstPaintLoadsTheRestOfTheSkinOnce) {
    create();
    EXPECT_LINES(lines(platform::kPaintMessage), R"(
paint 0,0,800,480
load B
load C
load D
post Processmanager MSG_MovietoProcessManager 5,0
)");
    EXPECT_EQ(appState.imageLoaded, 1);
    EXPECT_LINES(lines(platform::kPaintMessage), "\npaint 0,0,800,480\n");
}

TEST_F(Lifecycle, TheHalfWidthPlayerLoadsTheFullWidthSetLater) {
    appState.screenMode = kHalfWidth;
    create();
    EXPECT_LINES(lines(platform::kPaintMessage), R"(
paint 0,0,400,480
load A
load C
load D
post Processmanager MSG_MovietoProcessManager 5,0
)");
}

TEST_F(Lifecycle, AFileToBeResumedIsStartedByATickAfterTheFirstPaint) {
    std::filesystem::remove(root_ / "SDMMCDisk/Record/02.avi");
    settings::PersistedState state;
    catalogue::copyPath(state.folder, test::kRecord);
    state.playState = settings::kPlaying;
    state.position = 12;
    state.endTime = 60;
    settings::writePersistedState(state);
    create();
    EXPECT_EQ(tick(101).find("graph build"), std::string::npos);  // not before the first frame
    EXPECT_TRUE(lines(platform::kPaintMessage).ends_with("post Video 0x113 101,0\n"));
    taken();
    handlePosted();
    const std::string did = taken();
    EXPECT_NE(did.find("graph build \\SDMMCDisk\\Record\\01.avi"), std::string::npos) << did;
    EXPECT_NE(did.find("graph seek 12\n"), std::string::npos);
    EXPECT_EQ(appState.resumePending, 0);
}

TEST_F(Lifecycle, AHiddenPlayerPaintsNothing) {
    create();
    appState.screenMode = kHidden;
    appState.loadRestOfSkin = false;
    EXPECT_LINES(lines(platform::kPaintMessage), "\npaint 0,0,800,480 nothing\n");
}

constexpr char kTornDown[] = R"(
kill 101
kill 110
unload A
unload B
unload C
unload D
release object
delete font 18
delete font 25
delete font 24
delete font 16
kill 100
)";

TEST_F(Lifecycle, Destruction) {
    create();
    EXPECT_LINES(lines(platform::kDestroyMessage), std::string(kTornDown) + "leave COM\nquit 0\n");
    EXPECT_EQ(appState.imagingFactory, nullptr);
    for (const platform::FontHandle font : appState.fonts) {
        EXPECT_EQ(font, nullptr);
    }
}

TEST_F(Lifecycle, DestructionTakesAGraphApartThatStillPlays) {
    create();
    send(u"ZEL_BSP_WMUSER_IR_KEY", 7);
    EXPECT_LINES(lines(platform::kDestroyMessage),
                 std::string(kTornDown) +
                     "graph stop\ngraph delete filters\ngraph destroy\nleave COM\nquit 0\n");
}

constexpr char kExitText[] =
    "\\r\\nTandema 영상재생을 종료합니다. \\r\\n녹화모드 전환을 위해 USB 케이블을\\r\\n"
    "반드시 제거해 주시기바랍니다.\n";

TEST_F(Lifecycle, DestructionInConnectModeAsksForTheCable) {
    create();
    appState.connectMode = 1;
    EXPECT_LINES(lines(platform::kDestroyMessage),
                 std::string(kTornDown) + "leave COM\nbox unowned 0,1 " + kExitText + "quit 0\n");
}

TEST_F(Lifecycle, ItClosesItselfAfterAnExitRequest) {
    create();
    appState.connectMode = 1;
    appState.exitMessageTimed = 1;
    EXPECT_LINES(lines(platform::kDestroyMessage), std::string(kTornDown) +
                                                       "leave COM\ntimed box unowned 0,1 1000 ms " +
                                                       kExitText + "quit 0\n");
}

TEST_F(Lifecycle, CloseDestroysWithoutSaving) {
    create();
    send(u"ZEL_BSP_WMUSER_IR_KEY", 7);
    EXPECT_EQ(send(platform::kCloseMessage), 0);
    EXPECT_TRUE(taken().ends_with("redraw\ndestroy window\n"));
    EXPECT_TRUE(appState.exiting);
    EXPECT_EQ(lines(platform::kCloseMessage), "") << "once";
}

TEST_F(Lifecycle, AnExitDuringTheNoticeOfTheStartEndsTheInitialisation) {
    std::filesystem::remove_all(root_ / "SDMMCDisk/Record");
    settings::PersistedState state;
    catalogue::copyPath(state.folder, test::kRecord);
    settings::writePersistedState(state);
    // The folder's only entry goes away while the list is made: a link that leads nowhere.
    makeFolder("SDMMCDisk/Record");
    std::filesystem::create_symlink("nowhere", root_ / "SDMMCDisk/Record/01.avi");
    unit().whileBoxIsOpen = [] { send(u"MSG_ProcessManagertoMovie", 3, 2); };
    const std::string did = create();
    EXPECT_NE(did.find("box 0,1 \\n\\n재생 파일이 없습니다.\nrelease object\nleave COM\n"),
              std::string::npos)
        << did;
    EXPECT_EQ(did.find("values Orvi 1088 1,1"), std::string::npos) << did;
    EXPECT_EQ(did.find("graph layer"), std::string::npos) << did;
}

}  // namespace
