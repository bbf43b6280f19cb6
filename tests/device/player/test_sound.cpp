// Which volume the graph really has.
#include "player/player.h"
#include "tests/device/player/unit.h"

namespace {

constexpr WPARAM kSilence = 15007, kSoundAgain = 15008, kPlay = 20507, kStop = 20506;

class Sound : public test::PlayerUnit {
protected:
    void SetUp() override {
        PlayerUnit::SetUp();
        put(L"a.avi");
        startInFolder();
        command(kPlay);
        ASSERT_EQ(appState.persisted.playState, settings::kPlaying);
    }
};

TEST_F(Sound, StartsAtTheStoredVolume) {
    EXPECT_EQ(graphVolume(), -4500);
}

TEST_F(Sound, VolumeStepsReachTheGraph) {
    Player::volumeUp();
    EXPECT_EQ(graphVolume(), -4000);
    Player::volumeDown();
    Player::volumeDown();
    EXPECT_EQ(graphVolume(), -5300);
    Player::setVolumeLevel(99);
    EXPECT_EQ(graphVolume(), -1800);
    EXPECT_EQ(appState.persisted.volume, 10);
    Player::setVolumeLevel(-1);
    EXPECT_EQ(graphVolume(), -10000);
    EXPECT_EQ(appState.persisted.volume, 0);
}

TEST_F(Sound, SilenceLastsOverVolumeKeysAndFilesUntilItIsTakenBack) {
    command(kSilence);
    EXPECT_EQ(graphVolume(), -10000);
    Player::volumeUp();
    EXPECT_EQ(graphVolume(), -10000);
    EXPECT_EQ(appState.persisted.volume, 6);
    command(kStop);
    EXPECT_EQ(graphVolume(), 1);
    command(kPlay);
    EXPECT_EQ(graphVolume(), -10000);
    command(kSoundAgain);
    EXPECT_EQ(graphVolume(), -4000);
}

TEST_F(Sound, MuteIsTheBoardsAndLeavesTheGraphAlone) {
    const UINT notification = RegisterWindowMessageW(L"BSP_WMUSER_MUTE_NOTIFICATION");
    SendMessageW(appState.mainWindow, notification, 1, 0);
    EXPECT_EQ(appState.muted, 1);
    EXPECT_EQ(graphVolume(), -4500);
    Player::toggleMute();
    EXPECT_EQ(appState.muted, 0);
    Player::toggleMute();
    EXPECT_EQ(graphVolume(), -4500);
    Player::volumeUp();
    EXPECT_EQ(appState.muted, 0);
    EXPECT_EQ(graphVolume(), -4000);
}

}  // namespace
