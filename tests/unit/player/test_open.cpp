// Whether a file can be played: every step of openAndRun in order, and the probe before it.
#include <initializer_list>

#include "player/player.h"
#include "player/session.h"
#include "tests/unit/doubles/player_unit.h"

namespace {

using test::taken;
using test::theGraph;

constexpr char16_t kFile[] = u"\\SDMMCDisk\\Record\\01.avi";

class Opening : public test::PlayerUnit {};

constexpr char kBuild[] = R"(
graph build \SDMMCDisk\Record\01.avi 10,20 300x400 shape 16:9
)";
constexpr char kSetUp[] = R"(graph owner Video
graph key 0x000000
host place video
graph filter option 0
graph key switch 1
)";
constexpr char kRun[] = R"(graph clear start options
graph volume 5
graph run
)";
constexpr char kFollow[] = R"(graph audio clock
graph report position
)";

TEST_F(Opening, GoesThroughAllSteps) {
    appState.outputRectangle = {10, 20, 310, 420};
    EXPECT_EQ(Player::openAndRun(kFile, {16, 9}), 1);
    EXPECT_LINES(taken(), std::string(kBuild) + kSetUp + kRun + kFollow);
}

TEST_F(Opening, APartlyConnectedGraphIsPlayed) {
    appState.outputRectangle = {10, 20, 310, 420};
    theGraph().built = -3;
    EXPECT_EQ(Player::openAndRun(kFile, {16, 9}), 1);
    EXPECT_LINES(taken(), std::string(kBuild) + kSetUp + kRun + kFollow);
}

TEST_F(Opening, AnEmptyPathAsksForNothing) {
    EXPECT_EQ(Player::openAndRun(u"", {16, 9}), 0);
    EXPECT_EQ(taken(), "");
}

TEST_F(Opening, AFailureIsReportedAndNothingMoreIsDone) {
    appState.outputRectangle = {10, 20, 310, 420};
    theGraph().built = -1;
    theGraph().renderResult = static_cast<std::int32_t>(0x80004005);
    theGraph().nullVideoDecoder = true;
    EXPECT_EQ(Player::openAndRun(kFile, {16, 9}), 0);
    EXPECT_LINES(taken(), std::string(kBuild) +
                              "debug [TCMovieManager]Render File Error : [E_FAIL]Unspecified "
                              "error(0x4d8)\\n\n");
}

TEST_F(Opening, AnOlderFailureIsNotReportedAgain) {
    theGraph().renderResult = static_cast<std::int32_t>(0x80004005);
    EXPECT_EQ(Player::openAndRun(kFile, {16, 9}), 1);
    EXPECT_EQ(taken().find("debug"), std::string::npos);
}

TEST_F(Opening, ARequestThatIsOvertakenWhileTheClockIsSetHasNotStarted) {
    theGraph().whileSettingClock = [] { ++appState.playRequests; };
    EXPECT_EQ(Player::openAndRun(kFile, {16, 9}), 0);
    EXPECT_TRUE(taken().ends_with("graph run\ngraph audio clock\n"));
}

TEST_F(Opening, OtherResultsAreRefusedWithoutAWord) {
    for (const int built : {0, 2, -4}) {
        appState.outputRectangle = {10, 20, 310, 420};
        theGraph().built = built;
        EXPECT_EQ(Player::openAndRun(kFile, {16, 9}), 0);
        EXPECT_LINES(taken(), kBuild) << built;
        appState.filterControl.DestroyFilterGraph();
        taken();
    }
}

TEST_F(Opening, AVideoThatIsNotSupportedIsRefusedEvenWithSound) {
    for (const bool sound : {true, false}) {
        appState.outputRectangle = {10, 20, 310, 420};
        theGraph().nullVideoDecoder = true;
        theGraph().audioRenderer = sound;
        EXPECT_EQ(Player::openAndRun(kFile, {16, 9}), 0);
        EXPECT_LINES(
            taken(),
            std::string(kBuild) +
                (sound ? "print [TCMovieManager]Video_Codec is not Supported, Play Only Audio\\n\n"
                       : "print [TCMovieManager]This File can't support Video & Audio. Can't Play "
                         "This File\\n\n"));
        appState.filterControl.DestroyFilterGraph();
        taken();
    }
}

TEST_F(Opening, AGraphWithoutSoundIsRefusedAfterItsSetUp) {
    appState.outputRectangle = {10, 20, 310, 420};
    theGraph().audioRenderer = false;
    EXPECT_EQ(Player::openAndRun(kFile, {16, 9}), 0);
    EXPECT_LINES(taken(), std::string(kBuild) + kSetUp);
}

TEST_F(Opening, AGraphThatDoesNotRunIsRefused) {
    appState.outputRectangle = {10, 20, 310, 420};
    theGraph().run = 0;
    EXPECT_EQ(Player::openAndRun(kFile, {16, 9}), 0);
    EXPECT_LINES(taken(), std::string(kBuild) + kSetUp + kRun);
}

TEST_F(Opening, AGraphThatStandsIsTakenApartFirst) {
    ASSERT_EQ(Player::openAndRun(kFile, {16, 9}), 1);
    taken();
    ASSERT_EQ(Player::openAndRun(kFile, {16, 9}), 1);
    EXPECT_TRUE(
        taken().starts_with("graph stop\ngraph delete filters\ngraph destroy\ngraph build "));
}

TEST_F(Opening, TheSwitchIsAppliedAtStatus2AndResetOtherwise) {
    struct Case {
        std::uint32_t status;
        const char* line;
        std::int32_t switchAfter;
    };
    for (const Case& c :
         {Case{2, "graph filter option 1\n", 1}, Case{1, "", 0}, Case{3, "", 0}, Case{0, "", 0}}) {
        appState.filterSwitch = 1;
        theGraph().filterStatus = c.status;
        ASSERT_EQ(Player::openAndRun(kFile, {0, 0}), 1);
        EXPECT_NE(taken().find("graph key switch 1\n" + std::string(c.line) +
                               "graph clear start options\n"),
                  std::string::npos)
            << c.status;
        EXPECT_EQ(appState.filterSwitch, c.switchAfter) << c.status;
    }
}

TEST_F(Opening, TheKeyIsSwitchedOffInModeTenAlone) {
    for (const std::int32_t mode : {0, 1, 2, 3, 4, 9, 10, 11}) {
        appState.screenMode = mode;
        ASSERT_EQ(Player::openAndRun(kFile, {0, 0}), 1);
        EXPECT_NE(taken().find(mode == 10 ? "graph key switch 0\n" : "graph key switch 1\n"),
                  std::string::npos)
            << mode;
    }
}

TEST_F(Opening, SilenceIsVolumeZero) {
    appState.persisted.volume = 8;
    appState.audioSuppressed = 1;
    ASSERT_EQ(Player::openAndRun(kFile, {0, 0}), 1);
    EXPECT_NE(taken().find("graph volume 0\ngraph run\n"), std::string::npos);
    appState.audioSuppressed = 0;
    ASSERT_EQ(Player::openAndRun(kFile, {0, 0}), 1);
    EXPECT_NE(taken().find("graph volume 8\ngraph run\n"), std::string::npos);
}

class Probing : public test::PlayerUnit {
protected:
    std::string probe(const std::string& bytes) {
        put("SDMMCDisk/Record/01.avi", bytes);
        appState.aspectX = appState.aspectY = appState.audioFormatTag = 99;
        const Player::PictureShape shape = Player::probeFile(kFile);
        EXPECT_EQ(shape.aspectX, appState.aspectX);
        EXPECT_EQ(shape.aspectY, appState.aspectY);
        return std::to_string(appState.aspectX) + ":" + std::to_string(appState.aspectY) + " " +
               std::to_string(appState.audioFormatTag);
    }
};

TEST_F(Probing, DividesThePictureByItsGreatestCommonDivisor) {
    EXPECT_EQ(probe(test::smallRecording(640, 480)), "4:3 85");
    EXPECT_EQ(probe(test::smallRecording(1280, 720)), "16:9 85");
    EXPECT_EQ(probe(test::smallRecording(7, 11)), "7:11 85");
    EXPECT_EQ(probe(test::smallRecording(480, 480)), "1:1 85");
}

TEST_F(Probing, TakesTheFormatOnlyWithAPicture) {
    EXPECT_EQ(probe(test::smallRecording(0, 480)), "0:0 0");
    EXPECT_EQ(probe(test::smallRecording(640, 0)), "0:0 0");
}

TEST_F(Probing, AFileThatIsNotKnownOrNotThereHasNoShape) {
    EXPECT_EQ(probe("no recording at all"), "0:0 0");
    std::filesystem::remove(root_ / "SDMMCDisk/Record/01.avi");
    appState.aspectX = 99;
    const Player::PictureShape shape = Player::probeFile(kFile);
    EXPECT_EQ(shape.aspectX, 0u);
    EXPECT_EQ(appState.aspectX, 0u);
    EXPECT_EQ(Player::probeFile(u"").aspectY, 0u);
}

}  // namespace
