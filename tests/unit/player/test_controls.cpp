// Position, volume, mute, and the other camera's recording.
#include "player/player.h"
#include "tests/unit/doubles/player_unit.h"

namespace {

using test::taken;
using test::theGraph;
using test::unit;

class Controls : public test::PlayerUnit {};

TEST_F(Controls, SeekStoresThePositionAndReadsItBack) {
    ASSERT_EQ(Player::openAndRun(u"x", {0, 0}), 1);
    taken();
    Player::seekTo(12);
    EXPECT_LINES(taken(), "\ngraph seek 12\n");
    EXPECT_EQ(appState.persisted.position, 12);
    theGraph().seeks = false;
    theGraph().position = 0.001;  // not exactly 0
    Player::seekTo(30);
    EXPECT_LINES(taken(), "\ngraph seek 30\n");
    theGraph().position = 0;
    Player::seekTo(0);
    EXPECT_LINES(taken(), "\ngraph seek 0\n");
}

TEST_F(Controls, SeekThatEndsAtZeroGoesToTheNextFile) {
    recordings(3);
    ASSERT_EQ(Player::openAndRun(u"x", {0, 0}), 1);
    taken();
    theGraph().seeks = false;
    Player::seekTo(5);
    EXPECT_LINES(taken(), R"(
graph seek 5
print \r\n\n+++++Player::OnNext: OnNext\r\n
host play key
)");
    EXPECT_EQ(appState.persisted.fileIndex, 1);
}

TEST_F(Controls, VolumeStepsStayWithinZeroToTen) {
    struct Case {
        std::int32_t from;
        void (*step)();
        std::int32_t to;
    };
    for (const Case& c : {Case{5, Player::volumeUp, 6}, Case{9, Player::volumeUp, 10},
                          Case{10, Player::volumeUp, 10}, Case{5, Player::volumeDown, 4},
                          Case{1, Player::volumeDown, 0}, Case{0, Player::volumeDown, 0}}) {
        appState.persisted.volume = c.from;
        c.step();
        EXPECT_EQ(appState.persisted.volume, c.to) << c.from;
        EXPECT_LINES(taken(), "\ngraph volume " + std::to_string(c.to) + "\n");
    }
    Player::setVolumeLevel(99);
    EXPECT_EQ(appState.persisted.volume, 10);
    Player::setVolumeLevel(-1);
    EXPECT_EQ(appState.persisted.volume, 0);
}

TEST_F(Controls, AChangeOfTheVolumeUnmutes) {
    appState.muted = 1;
    Player::volumeUp();
    EXPECT_LINES(taken(), R"(
graph volume 6
host broadcast mute
host refresh volume
)");
    EXPECT_EQ(appState.muted, 0);
    Player::volumeUp();
    EXPECT_LINES(taken(), "\ngraph volume 7\n");
}

TEST_F(Controls, MuteTogglesAndLeavesTheGraphAlone) {
    for (const std::int32_t after : {1, 0}) {
        Player::toggleMute();
        EXPECT_EQ(appState.muted, after);
        EXPECT_LINES(taken(), R"(
host broadcast mute
host refresh volume
)");
    }
}

TEST_F(Controls, SilenceLastsOverVolumeKeys) {
    Player::suppressAudio(1);
    Player::volumeUp();
    Player::suppressAudio(0);
    EXPECT_LINES(taken(), R"(
graph volume 0
graph volume 0
graph volume 6
)");
    EXPECT_EQ(appState.audioSuppressed, 0);
}

class Cameras : public test::PlayerUnit {
protected:
    void SetUp() override {
        PlayerUnit::SetUp();
        makeFolder("ResidentFlash2/Data");
        for (const char* name : {"1_F.avi", "1_R.avi", "2_F.avi"}) {
            put(std::string("SDMMCDisk/Record/") + name, test::smallRecording());
        }
        appState.connectMode = 1;
        catalogue::ListPlayFolder(appState, test::kRecord);
        unit().quietPrint = true;
    }
};

TEST_F(Cameras, TheOtherCamerasRecordingGoesOnAtTheSamePlace) {
    for (const std::int32_t state : {settings::kPlaying, settings::kPaused}) {
        appState.persisted.fileIndex = 0;
        appState.persisted.playState = settings::kStopped;
        Player::OnPlay();
        if (state == settings::kPaused) {
            Player::OnPlay();
        }
        EXPECT_EQ(Player::cameraOfCurrentFile(), 0);
        theGraph().position = 17;
        taken();
        Player::switchCamera();
        const std::string lines = taken();
        EXPECT_NE(lines.find("graph build \\SDMMCDisk\\Record\\1_R.avi"), std::string::npos);
        EXPECT_NE(lines.find("graph seek 17\n"), std::string::npos);
        EXPECT_EQ(lines.find("graph pause\n") != std::string::npos, state == settings::kPaused);
        EXPECT_EQ(appState.persisted.playState, state);
        EXPECT_EQ(appState.persisted.fileIndex, 1);
        EXPECT_EQ(Player::cameraOfCurrentFile(), 1);
    }
}

TEST_F(Cameras, AStoppedPlayerOnlyChooses) {
    catalogue::copyPath(appState.persisted.file, u"\\SDMMCDisk\\Record\\1_F.avi");
    Player::switchCamera();
    EXPECT_LINES(taken(), "\nhost refresh screen\n");
    EXPECT_EQ(appState.persisted.fileIndex, 1);
    EXPECT_EQ(Player::cameraOfCurrentFile(), 1);
    Player::switchCamera();
    EXPECT_EQ(appState.persisted.fileIndex, 0) << "the list's first entry";
    EXPECT_EQ(Player::cameraOfCurrentFile(), 0);
}

TEST_F(Cameras, WithoutASiblingNothingHappens) {
    for (const char16_t* path : {u"\\SDMMCDisk\\Record\\2_F.avi", u"\\SDMMCDisk\\Record\\3_F.avi",
                                 u"\\SDMMCDisk\\Record\\plain.avi"}) {
        catalogue::copyPath(appState.persisted.file, path);
        appState.persisted.fileIndex = 2;
        Player::switchCamera();
        EXPECT_EQ(taken(), "");
        EXPECT_EQ(appState.persisted.fileIndex, 2);
    }
    EXPECT_EQ(Player::cameraOfCurrentFile(), -1);
}

TEST_F(Cameras, PlayAgainAfterAStopStaysStopped) {
    Player::playAgain(settings::kStopped, 12);
    EXPECT_EQ(taken(), "");
    EXPECT_EQ(appState.persisted.position, 0);
}

TEST_F(Cameras, PlayAgainDoesNotPauseAfterARefusal) {
    theGraph().audioRenderer = false;
    Player::playAgain(settings::kPaused, 12);
    EXPECT_EQ(taken().find("graph pause"), std::string::npos);
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
}

}  // namespace
