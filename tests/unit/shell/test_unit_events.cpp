// What the board, the demultiplexer, the recorder, the navigation and the vehicle report.
#include <limits>

#include "shell/peers/peers.h"
#include "tests/unit/shell/shell_unit.h"

namespace {

using test::taken;
using test::theGraph;
using test::unit;

class UnitEvents : public test::ShellUnit {};

constexpr char16_t kCard[] = u"ZEL_BSP_WMUSER_SDCARD";
constexpr char16_t kUsb[] = u"ZEL_BSP_WMUSER_MNT_USB";
constexpr char kUsbGone[] = "\npost Processmanager MSG_MovietoProcessManager 4,0\n";

TEST_F(UnitEvents, ACardThatGoesStopsWhatPlaysFromIt) {
    play();
    EXPECT_EQ(lines(kCard, 0, 1), "");
    EXPECT_EQ(lines(kCard, 1, 0), "");
    EXPECT_EQ(lines(kCard, 2, 0), "");
    EXPECT_EQ(lines(kUsb, 0, 0), "");
    EXPECT_EQ(lines(kUsb, 0, -2), "");  // would be the card's slot
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
    EXPECT_NE(lines(kCard, 0, 0), "");
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
}

TEST_F(UnitEvents, TheProcessManagerIsToldWhenThereIsOne) {
    unit().windows = {u"Processmanager"};
    EXPECT_EQ(shell::postToProcessManager(shell::kClosePlayer, 0), 1);
    EXPECT_EQ(taken(), "post Processmanager MSG_MovietoProcessManager 4,0\n");
    unit().windows.clear();
    EXPECT_EQ(shell::postToProcessManager(shell::kClosePlayer, 0), 0);
    EXPECT_EQ(taken(), "");
}

TEST_F(UnitEvents, UsbSlotsStandBehindTheCards) {
    put("USB/01.avi", test::smallRecording());
    catalogue::ListPlayFolder(appState, u"\\USB");
    send(u"ZEL_BSP_WMUSER_IR_KEY", 7);
    ASSERT_EQ(appState.persisted.playState, settings::kPlaying);
    send(kUsb, 0, 0);
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
    put("USB2/01.avi", test::smallRecording());
    catalogue::ListPlayFolder(appState, u"\\USB2");
    send(u"ZEL_BSP_WMUSER_IR_KEY", 7);
    ASSERT_EQ(appState.persisted.playState, settings::kPlaying);
    send(kUsb, 0, 0);
    send(kUsb, 0, 2);
    for (platform::LParam behind = 0; behind < 4; ++behind) {
        send(kUsb, 0, std::numeric_limits<platform::LParam>::max() - behind);
    }
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
    send(kUsb, 0, 1);
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
}

TEST_F(UnitEvents, AUsbRemovalInConnectModeLooksForTheSetUpFile) {
    appState.connectMode = 1;
    EXPECT_LINES(lines(kUsb, 0, 0), kUsbGone);
    EXPECT_EQ(lines(kUsb, 1, 0), "");
    put("USB9/SETUP.cfg");
    EXPECT_EQ(lines(kUsb, 0, 0), "");
    std::filesystem::remove(root_ / "USB9/SETUP.cfg");
    put("USB/SETUP.cfg");
    EXPECT_EQ(lines(kUsb, 0, 0), "");
    appState.connectMode = 0;
    std::filesystem::remove(root_ / "USB/SETUP.cfg");
    EXPECT_EQ(lines(kUsb, 0, 0), "");
    appState.connectMode = 1;
    EXPECT_EQ(lines(kCard, 0, 0), "");
}

TEST_F(UnitEvents, TheFileListIsListedAgain) {
    recordings(2);
    appState.screenMode = kFileList;
    catalogue::ListBrowseFolder(appState, test::kRecord);
    put("SDMMCDisk/Record/03.avi");
    EXPECT_LINES(lines(kCard, 1, 0), "\nredraw\n");
    EXPECT_EQ(appState.browseFileCount, 3);
    EXPECT_LINES(lines(kCard, 0, 0), "\nsleep 500\nredraw\n");
}

TEST_F(UnitEvents, AReadFailureStopsAndIsTold) {
    play();
    const std::string did = lines(u"TCC_CDK_DEMUX_FILTER_READ_FAIL", 0, 0);
    EXPECT_TRUE(did.starts_with("graph key 0x000000\n")) << did;
    EXPECT_TRUE(
        did.ends_with("redraw\npost ani_waiting MSG_TO_ANI_WAITING 0,0\n"
                      "box 0,1 \\n\\n재생 파일 읽기를 실패 하였습니다.\n"))
        << did;
    EXPECT_LINES(lines(u"TCC_CDK_DEMUX_FILTER_READ_FAIL", 0, 0),
                 "\npost ani_waiting MSG_TO_ANI_WAITING 0,0\n"
                 "box 0,1 \\n\\n재생 파일 읽기를 실패 하였습니다.\n");
}

TEST_F(UnitEvents, MuteIsTheBoards) {
    struct Case {
        platform::WParam wParam;
        std::int32_t muted;
    };
    for (const Case& c : {Case{1, 1}, Case{0, 0}, Case{2, 0}}) {
        EXPECT_LINES(lines(u"BSP_WMUSER_MUTE_NOTIFICATION", c.wParam),
                     "\nredraw 360,437,549,467\nredraw 200,425,280,480\n");
        EXPECT_EQ(appState.muted, c.muted) << c.wParam;
    }
    appState.drivingBlock = 1;
    EXPECT_LINES(lines(u"BSP_WMUSER_MUTE_NOTIFICATION", 1),
                 "\nredraw 200,230,600,260\nredraw 360,437,549,467\nredraw 200,425,280,480\n");
    appState.drivingBlock = 0;
    appState.screenMode = kHalfWidth;
    EXPECT_LINES(lines(u"BSP_WMUSER_MUTE_NOTIFICATION", 1),
                 "\nredraw 170,372,308,403\nredraw 2,360,81,420\n");
    for (const std::int32_t mode : {kFileList, kSlideBanner, kHidden}) {
        appState.screenMode = mode;
        EXPECT_EQ(lines(u"BSP_WMUSER_MUTE_NOTIFICATION", 1), "") << mode;
    }
}

TEST_F(UnitEvents, ABroadcastRedrawsTheBanner) {
    EXPECT_EQ(lines(u"QUILLMARK_MSG_BROADCAST", 1, 2), "");
    appState.screenMode = kSlideBanner;
    appState.screens.bannerShown = true;
    EXPECT_LINES(lines(u"QUILLMARK_MSG_BROADCAST", 1, 2), "\nredraw 180,0,620,64\n");
}

TEST_F(UnitEvents, TheRecorderIsToldWhetherTheHalfWidthShows) {
    for (const std::int32_t mode : {0, 1, 2, 3, 4}) {
        appState.screenMode = mode;
        EXPECT_EQ(send(u"MSG_BlackboxToWndStatus"), mode == kHalfWidth ? 1 : 0);
    }
    EXPECT_EQ(taken(), "");
}

TEST_F(UnitEvents, TheNavigationHidesThePicture) {
    EXPECT_LINES(lines(u"MSG_OrviBroadCast", 1),
                 "\nprint [Reelvue]DoOrviBroadcastMain : wParam(1)\\r\\n\n");
    EXPECT_EQ(appState.videoLayerState, 10);
    EXPECT_LINES(lines(u"MSG_OrviBroadCast", 2),
                 "\nprint [Reelvue]DoOrviBroadcastMain : wParam(2)\\r\\n\ngraph layer 12\n");
    EXPECT_EQ(appState.videoLayerState, 12);
}

TEST_F(UnitEvents, TheEndPointOpensTheFileAtTheSamePlace) {
    for (const std::int32_t state : {settings::kPlaying, settings::kPaused}) {
        SetUp();
        play();
        if (state == settings::kPaused) {
            send(u"ZEL_BSP_WMUSER_IR_KEY", 7);
        }
        appState.screenMode = kSlideBanner;
        appState.previousScreenMode = kFullWidth;
        theGraph().position = 17;
        const std::string did = lines(u"MSG_ProcessManagerToOrviEndPoint");
        const std::size_t stopped = did.find("graph destroy\n");
        const std::size_t back = did.find("front\n");
        const std::size_t built = did.find("graph build ");
        const std::size_t sought = did.find("graph seek 17\n");
        EXPECT_TRUE(stopped < back && back < built && built < sought) << did;
        EXPECT_EQ(did.ends_with("graph pause\nredraw\n"), state == settings::kPaused) << did;
        EXPECT_EQ(appState.persisted.playState, state);
        EXPECT_EQ(appState.screenMode, kFullWidth);
    }
}

TEST_F(UnitEvents, TheEndPointOfAStoppedPlayerOnlyLeavesTheSlideScreen) {
    recordings(1);
    EXPECT_EQ(lines(u"MSG_ProcessManagerToOrviEndPoint"), "");
    appState.screenMode = kSlideBanner;
    appState.previousScreenMode = kHalfWidth;
    EXPECT_EQ(lines(u"MSG_ProcessManagerToOrviEndPoint").find("graph build"), std::string::npos);
    EXPECT_EQ(appState.screenMode, kHalfWidth);
}

TEST_F(UnitEvents, TheVehiclesSpeed) {
    struct Case {
        platform::WParam wParam;
        platform::LParam lParam;
        std::int32_t value;
    };
    for (const Case& c :
         {Case{1, 60, 60}, Case{1, -1, -1}, Case{1, 0, 0}, Case{0, 60, -1}, Case{2, 60, -1}}) {
        appState.systemBroadcastValue = 5;
        EXPECT_EQ(lines(u"MSG_SystemBroadcast", c.wParam, c.lParam), "");
        EXPECT_EQ(appState.systemBroadcastValue, c.value) << c.wParam;
    }
}

}  // namespace
