// The global record before the first message, and the numbers that others know its values by.
#include <gtest/gtest.h>

#include "app/app_state.h"

namespace {

class FreshState : public ::testing::Test {
protected:
    AppState state_;
};

TEST_F(FreshState, HasNoWindowAndNoNumbersOfMessages) {
    EXPECT_EQ(state_.mainWindow, nullptr);
    EXPECT_EQ(state_.hInstance, nullptr);
    EXPECT_EQ(state_.imagingFactory, nullptr);
    for (const platform::FontHandle font : state_.fonts) {
        EXPECT_EQ(font, nullptr);
    }
    EXPECT_EQ(state_.fonts.size(), 4u);
    EXPECT_EQ(state_.messageTable.count, 0);
    EXPECT_EQ(state_.messageTable.rows.size(), 22u);
    for (const std::uint32_t number :
         {state_.commandMessage, state_.muteNotificationMessage, state_.remoteKeyMessage,
          state_.readFailureMessage, state_.endPointMessage, state_.systemBroadcastMessage,
          state_.toProcessManagerMessage}) {
        EXPECT_EQ(number, 0u);
    }
}

TEST_F(FreshState, ShowsThePlayerAtFullWidth) {
    EXPECT_EQ(state_.launchAsPip, 0);
    EXPECT_EQ(state_.screenMode, 0);
    EXPECT_EQ(state_.previousScreenMode, 0);
    EXPECT_EQ(state_.videoLayerState, 10);
    EXPECT_FALSE(state_.videoArea);
    EXPECT_EQ(state_.outputRectangle.left, 0);
    EXPECT_EQ(state_.outputRectangle.top, 0);
    EXPECT_EQ(state_.outputRectangle.right, 800);
    EXPECT_EQ(state_.outputRectangle.bottom, 480);
    EXPECT_EQ(state_.imageLoaded, 0);
    EXPECT_FALSE(state_.loadRestOfSkin);
}

TEST_F(FreshState, HasNothingAskedOfItYet) {
    EXPECT_EQ(state_.exitMessageTimed, 0);
    EXPECT_FALSE(state_.exiting);
    EXPECT_EQ(state_.muted, 0);
    EXPECT_EQ(state_.audioSuppressed, 0);
    EXPECT_EQ(state_.pendingKeyAction, -1);
    EXPECT_EQ(state_.keyLock, 0);
    EXPECT_EQ(state_.lastSkipTick, 0u);
}

TEST_F(FreshState, KnowsOfNoSpeedAndBlocksNothing) {
    EXPECT_EQ(state_.systemBroadcastValue, -1);
    EXPECT_EQ(state_.dmbSetting, 0);
    EXPECT_EQ(state_.drivingBlock, 0);
    EXPECT_EQ(state_.drivingBlockAtLastTick, 0);
    EXPECT_EQ(state_.blockCounters.noSignal, 0);
    EXPECT_EQ(state_.blockCounters.fast, 0);
    EXPECT_EQ(state_.blockCounters.slow, 0);
}

TEST_F(FreshState, PlaysNothing) {
    EXPECT_EQ(state_.playLoaded, 1);
    EXPECT_NE(state_.playRequests, state_.startedRequest);
    EXPECT_EQ(state_.startedRequest, 0u);
    EXPECT_EQ(state_.liveLength, 0);
    EXPECT_EQ(state_.resumePending, 0);
    EXPECT_EQ(state_.aspectX, 0u);
    EXPECT_EQ(state_.aspectY, 0u);
    EXPECT_EQ(state_.audioFormatTag, 0u);
    EXPECT_EQ(state_.filterSwitch, 0);
}

TEST(StateValues, AreThoseThatOtherProgramsAndTheRendererKnow) {
    EXPECT_EQ(kFullWidth, 0);
    EXPECT_EQ(kHalfWidth, 1);
    EXPECT_EQ(kFileList, 2);
    EXPECT_EQ(kSlideBanner, 3);
    EXPECT_EQ(kHidden, 4);
    EXPECT_EQ(kNoAction, -1);
    EXPECT_EQ(kNextFile, 0);
    EXPECT_EQ(kPreviousFile, 1);
    EXPECT_EQ(kVolumeDown, 2);
    EXPECT_EQ(kVolumeUp, 3);
    EXPECT_EQ(kLayerShown, 10);
    EXPECT_EQ(kLayerHidden, 12);
}

}  // namespace
