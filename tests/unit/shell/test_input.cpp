// Touches, gestures and the remote control.
#include "tests/unit/shell/shell_unit.h"

namespace {

using test::taken;
using test::unit;

constexpr std::uint32_t kDown = 0x201, kUp = 0x202, kMove = 0x200;

class Input : public test::ShellUnit {};

TEST_F(Input, GesturesRunAgainstTheNumbersOfTheActions) {
    struct Case {
        platform::WParam gesture;
        std::int32_t action;
    };
    for (const Case& c :
         {Case{1, kPreviousFile}, Case{2, kNextFile}, Case{0, kVolumeUp}, Case{3, kVolumeUp}}) {
        appState.pendingKeyAction = kVolumeUp;
        EXPECT_EQ(lines(u"ZEL_BSP_WMUSER_GESTURE", c.gesture), "");
        EXPECT_EQ(appState.pendingKeyAction, c.action) << c.gesture;
    }
}

TEST_F(Input, RemoteSkipsAreIgnoredWhileTheKeysAreLocked) {
    recordings(3, 1);
    appState.keyLock = 1;
    EXPECT_EQ(lines(u"ZEL_BSP_WMUSER_IR_KEY", 5), "");
    EXPECT_EQ(lines(u"ZEL_BSP_WMUSER_IR_KEY", 6), "");
    EXPECT_EQ(appState.persisted.fileIndex, 1);
    appState.keyLock = 0;
    EXPECT_LINES(lines(u"ZEL_BSP_WMUSER_IR_KEY", 5), R"(
print \r\n\n+++++Player::OnPrev: OnPrev\r\n
post Video ZEL_BSP_WMUSER_IR_KEY 7,0
)");
    EXPECT_EQ(appState.persisted.fileIndex, 0);
    appState.lastSkipTick -= 1700;
    lines(u"ZEL_BSP_WMUSER_IR_KEY", 6);
    EXPECT_EQ(appState.persisted.fileIndex, 1);
}

TEST_F(Input, RemotePlayPausesEvenWhileTheKeysAreLocked) {
    play();
    appState.keyLock = 1;
    EXPECT_LINES(lines(u"ZEL_BSP_WMUSER_IR_KEY", 7), "\ngraph pause\nredraw\n");
    for (const platform::WParam other : {0u, 4u, 8u}) {
        EXPECT_EQ(lines(u"ZEL_BSP_WMUSER_IR_KEY", other), "");
    }
}

TEST_F(Input, ATouchGoesToTheScreenThatIsShowing) {
    EXPECT_LINES(touch(kDown, 650, 450), "\nkill 103\nredraw 632,425,712,480\ncapture\nupdate\n");
    EXPECT_LINES(touch(kUp, 650, 450), R"(
release
sound 0
post Video ZEL_BSP_WMUSER_IR_KEY 7,0
kill 103
timer 103 6000
redraw 632,425,712,480
update
)");
    appState.screenMode = kHidden;
    EXPECT_EQ(touch(kDown, 650, 450), "");
    EXPECT_EQ(touch(kMove, 650, 450), "");
    EXPECT_EQ(touch(kUp, 650, 450), "");
}

TEST_F(Input, TheVolumeBarTellsTheSentenceWhileThePictureIsBlocked) {
    appState.screenMode = kHalfWidth;
    for (const std::int32_t block : {0, 1}) {
        appState.persisted.volume = 7;
        appState.drivingBlock = block;
        const std::string did = touch(kDown, 239, 390);
        EXPECT_EQ(appState.persisted.volume, 5);
        EXPECT_NE(did.find("graph volume 5\n"), std::string::npos) << did;
        EXPECT_EQ(did.find("redraw 0,252,400,282\n") != std::string::npos, block == 1) << did;
        touch(kUp, 239, 390);
    }
}

TEST_F(Input, TouchesGesturesAndKeysAreAnsweredWithZero) {
    for (const std::uint32_t message : {kDown, kMove, kUp}) {
        EXPECT_EQ(send(message, 0, 1), 0) << message;
    }
    for (const platform::WParam value : {0u, 1u, 2u, 5u, 6u, 7u}) {
        EXPECT_EQ(send(u"ZEL_BSP_WMUSER_GESTURE", value), 0) << value;
        EXPECT_EQ(send(u"ZEL_BSP_WMUSER_IR_KEY", value), 0) << value;
    }
}

TEST_F(Input, CoordinatesAreSigned) {
    appState.screenMode = kSlideBanner;
    touch(kDown, -5, 300);
    EXPECT_EQ(appState.screens.touch.start, (ui::Point{-5, 300}));
    touch(kDown, 5, -301);
    EXPECT_EQ(appState.screens.touch.start, (ui::Point{5, -301}));
    touch(kDown, 6, 301);
    EXPECT_EQ(appState.screens.touch.start, (ui::Point{6, 301}));
}

TEST_F(Input, AReleaseForgetsThePendingActionInEveryMode) {
    for (const std::int32_t mode : {0, 1, 2, 3, 4}) {
        appState.screenMode = mode;
        appState.pendingKeyAction = kVolumeUp;
        touch(kDown, 1, 1);
        touch(kMove, 1, 1);
        EXPECT_EQ(appState.pendingKeyAction, kVolumeUp);
        touch(kUp, 1, 1);
        EXPECT_EQ(appState.pendingKeyAction, kNoAction) << mode;
    }
}

TEST_F(Input, ActivationIsTheSystemsAndALossForgetsTheTouch) {
    touch(kDown, 650, 450);
    EXPECT_EQ(send(platform::kActivateMessage, 1, 5), 77);
    EXPECT_LINES(taken(), "\ndefault 0x6 1,5\n");
    EXPECT_TRUE(appState.screens.touch.held);
    EXPECT_EQ(send(platform::kActivateMessage, 0x8000, 5), 77);
    EXPECT_TRUE(appState.screens.touch.held);
    taken();
    EXPECT_EQ(send(platform::kActivateMessage, 0x10000, 5), 77);
    EXPECT_LINES(taken(), "\nrelease\ntimer 103 6000\nredraw\ndefault 0x6 65536,5\n");
    EXPECT_FALSE(appState.screens.touch.held);
}

}  // namespace
