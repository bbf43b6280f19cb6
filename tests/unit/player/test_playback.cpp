// Play, pause, next, previous and stop: every order of calls, and what overtakes what.
#include "player/player.h"
#include "tests/unit/doubles/player_unit.h"

namespace {

using test::taken;
using test::theGraph;
using test::unit;

class Playback : public test::PlayerUnit {
protected:
    void play() {
        Player::OnPlay();
        ASSERT_EQ(appState.persisted.playState, settings::kPlaying);
        taken();
    }
    static std::string pathOfSelected() { return test::shown(appState.persisted.file); }
};

constexpr char kStarted[] = R"(
host waiting 1
graph build \SDMMCDisk\Record\01.avi 0,0 800x480 shape 4:3
graph owner Video
graph key 0x000000
host place video
graph filter option 0
graph key switch 1
graph clear start options
graph volume 5
graph run
graph audio clock
graph report position
timer 100 300
host refresh screen
timer 104 1000
print [TCMovieManager]Player::OnPlay\n
host waiting 0
host refresh screen
)";

constexpr char kStopped[] = R"(
graph key 0x000000
host refresh screen
kill 100
graph owner Video
graph place 801,481 10x10 on layer 10
graph stop
graph delete filters
graph destroy
host clear progress
host refresh screen
)";

TEST_F(Playback, AFileIsStartedInThisOrder) {
    recordings(2);
    appState.playLoaded = 0;
    theGraph().duration = 61.5;
    Player::OnPlay();
    EXPECT_LINES(taken(), kStarted);
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
    EXPECT_EQ(appState.persisted.endTime, 61.5);
    EXPECT_EQ(pathOfSelected(), R"(\SDMMCDisk\Record\01.avi)");
    EXPECT_EQ(appState.keyLock, 1);
    EXPECT_EQ(appState.playLoaded, 1);
    EXPECT_EQ(appState.audioFormatTag, 0x55u);
    settings::PersistedState written;  // without a position the record is written at once
    ASSERT_EQ(settings::readPersistedState(written), 1);
    EXPECT_EQ(written.playState, settings::kPlaying);
    EXPECT_EQ(written.endTime, 61.5);
}

TEST_F(Playback, AStoredPositionIsSoughtAndTheRecordIsNotWritten) {
    recordings(2);
    appState.persisted.position = 12;
    Player::OnPlay();
    std::string expected = kStarted;
    expected.insert(expected.find("host refresh screen\ntimer 104"), "graph seek 12\n");
    EXPECT_LINES(taken(), expected);
    EXPECT_EQ(appState.persisted.position, 12);
    EXPECT_FALSE(exists("ResidentFlash2/Data/Movie.dat"));
}

TEST_F(Playback, TheHalfWidthPlayerWaitsBeforeItStarts) {
    recordings(1);
    appState.screenMode = kHalfWidth;
    Player::OnPlay();
    std::string expected = kStarted;
    expected.insert(1, "sleep 700\n");
    EXPECT_LINES(taken(), expected);
}

TEST_F(Playback, ThePlayStateStandsAndPlayLoadedIsClearWhileTheFileIsOpened) {
    recordings(1);
    appState.playLoaded = 1;
    theGraph().whileBuilding = [] {
        EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
        EXPECT_EQ(appState.playLoaded, 0);
        EXPECT_EQ(appState.keyLock, 0);
    };
    Player::OnPlay();
    EXPECT_EQ(appState.playLoaded, 1);
}

TEST_F(Playback, PauseAndResume) {
    recordings(1);
    play();
    Player::OnPlay();
    EXPECT_LINES(taken(), R"(
graph pause
host refresh screen
)");
    EXPECT_EQ(appState.persisted.playState, settings::kPaused);
    Player::OnPlay();
    EXPECT_LINES(taken(), R"(
graph run
host refresh screen
)");
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
}

TEST_F(Playback, AFailingPauseOrResumeStops) {
    recordings(1);
    for (const bool resuming : {false, true}) {
        theGraph() = {};
        play();
        if (resuming) {
            Player::OnPlay();
            taken();
            theGraph().run = 0;
        } else {
            theGraph().pause = 0;
        }
        Player::OnPlay();
        EXPECT_LINES(taken(), std::string(resuming ? "\ngraph run" : "\ngraph pause") + kStopped +
                                  "host refresh screen\n");
        EXPECT_EQ(appState.persisted.playState, settings::kStopped);
    }
}

TEST_F(Playback, RefusedFileEndsTheWaitingShowsTheBoxAndStops) {
    recordings(1);
    theGraph().audioRenderer = false;
    Player::OnPlay();
    const std::string lines = taken();
    EXPECT_EQ(lines.substr(lines.find("graph key switch 1")), std::string(R"(graph key switch 1
host waiting 0
box 0,1 \n\n재생 할 수 없는 파일 입니다.
timer 104 1000
print [TCMovieManager]Player::OnPlay\n
host waiting 0)") + kStopped + "host refresh screen\n");
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
    EXPECT_EQ(appState.keyLock, 1);
    EXPECT_EQ(appState.playLoaded, 1);
}

TEST_F(Playback, ARefusalLeavesTheSlideScreen) {
    recordings(1);
    theGraph().audioRenderer = false;
    appState.screenMode = kSlideBanner;
    appState.previousScreenMode = kHalfWidth;
    Player::OnPlay();
    const std::string lines = taken();
    EXPECT_TRUE(lines.ends_with("host refresh screen\nhost mode 1\nhost refresh screen\n"))
        << lines;
}

TEST_F(Playback, MissingFileIsToldAndNothingIsStarted) {
    recordings(2);
    std::filesystem::remove(root_ / "SDMMCDisk/Record/01.avi");
    appState.persisted.position = 7;
    Player::OnPlay();
    EXPECT_LINES(taken(), R"(
box 0,1 \n\n재생 파일이 없습니다.
host refresh screen
)");
    EXPECT_EQ(appState.keyLock, 0);
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
}

TEST_F(Playback, AFileThatIsBackDuringTheNoticeAndStartedKeepsPlaying) {
    recordings(1);
    std::filesystem::remove(root_ / "SDMMCDisk/Record/01.avi");
    unit().whileBoxIsOpen = [this] {
        put("SDMMCDisk/Record/01.avi", test::smallRecording());
        Player::OnPlay();
        taken();
    };
    Player::OnPlay();
    EXPECT_EQ(taken(), "");
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
}

TEST_F(Playback, ARequestThatFindsNothingIsFinished) {
    recordings(0);
    appState.playLoaded = 0;
    Player::OnPlay();
    EXPECT_EQ(appState.playLoaded, 1);
}

TEST_F(Playback, AnIndexWithoutAnEntryBecomesZero) {
    recordings(2, 2);
    appState.persisted.file[0] = u'x';
    Player::OnPlay();
    EXPECT_LINES(taken(), R"(
host refresh screen
)");
    EXPECT_EQ(appState.persisted.fileIndex, 0);
    EXPECT_EQ(appState.persisted.file[0], u'\0');
}

TEST_F(Playback, StopTakesEverythingBackInThisOrder) {
    recordings(1);
    appState.persisted.position = 3;
    play();
    appState.liveLength = 1;
    appState.videoArea = true;
    const std::uint32_t requests = appState.playRequests;
    Player::stopPlayback();
    EXPECT_LINES(taken(), kStopped);
    EXPECT_EQ(appState.liveLength, 0);
    EXPECT_FALSE(appState.videoArea);
    EXPECT_EQ(appState.persisted.position, 0);
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
    EXPECT_EQ(appState.playRequests, requests + 1);
    Player::stopPlayback();
    EXPECT_EQ(taken(), "");
}

TEST_F(Playback, NextAndPreviousStopStepAndPostThePlayKey) {
    recordings(3);
    play();
    appState.lastSkipTick = unit().milliseconds - 1700;
    Player::OnNext();
    EXPECT_LINES(taken(), std::string("\nprint \\r\\n\\n+++++Player::OnNext: OnNext\\r\\n") +
                              kStopped + "host play key\n");
    EXPECT_EQ(appState.persisted.fileIndex, 1);
    EXPECT_EQ(appState.lastSkipTick, unit().milliseconds);
    appState.lastSkipTick -= 1700;
    Player::OnPrev();
    EXPECT_LINES(taken(), R"(
print \r\n\n+++++Player::OnPrev: OnPrev\r\n
host play key
)");
    EXPECT_EQ(appState.persisted.fileIndex, 0);
}

TEST_F(Playback, RequestsWithin1700MillisecondsAreRefused) {
    recordings(3);
    play();
    for (const std::uint32_t passed : {0u, 1u, 1000u, 1699u}) {
        appState.lastSkipTick = unit().milliseconds - passed;
        const std::uint32_t before = appState.lastSkipTick;
        Player::OnNext();
        EXPECT_LINES(taken(), R"(
print \r\n\n+++++Player::OnNext: OnNext\r\n
print --Player::OnNext \r\n
)");
        Player::OnPrev();
        EXPECT_LINES(taken(), R"(
print \r\n\n+++++Player::OnPrev: OnPrev\r\n
print --Player::OnPrev \r\n
)");
        EXPECT_EQ(appState.lastSkipTick, before);  // what is refused does not count
    }
    EXPECT_EQ(appState.persisted.fileIndex, 0);
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
}

TEST_F(Playback, TheDebounceOutlivesTheCounterOfMilliseconds) {
    recordings(3);
    unit().milliseconds = 699;  // begun again after 49.7 days
    appState.lastSkipTick = 0xFFFFFFFFu - 999;
    Player::OnNext();
    EXPECT_EQ(appState.persisted.fileIndex, 0);
    unit().milliseconds = 700;
    Player::OnNext();
    EXPECT_EQ(appState.persisted.fileIndex, 1);
}

struct Skip {
    const char* name;
    int files;
    std::int32_t from;
    void (*skip)();
    std::int32_t to;
};

class Skipping : public Playback, public ::testing::WithParamInterface<Skip> {};

TEST_P(Skipping, WrapsAround) {
    recordings(GetParam().files, GetParam().from);
    GetParam().skip();
    EXPECT_EQ(appState.persisted.fileIndex, GetParam().to);
    EXPECT_TRUE(taken().ends_with("host play key\n"));
}

INSTANTIATE_TEST_SUITE_P(Steps, Skipping,
                         ::testing::Values(Skip{"Next", 3, 0, Player::OnNext, 1},
                                           Skip{"NextOfLast", 3, 2, Player::OnNext, 0},
                                           Skip{"Previous", 3, 2, Player::OnPrev, 1},
                                           Skip{"PreviousOfFirst", 3, 0, Player::OnPrev, 2},
                                           Skip{"OnlyOne", 1, 0, Player::OnNext, 0},
                                           Skip{"OnlyOneBack", 1, 0, Player::OnPrev, 0},
                                           Skip{"NextOfNone", 0, 0, Player::OnNext, 0},
                                           Skip{"PreviousOfNone", 0, 0, Player::OnPrev, -1}),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(Playback, AnEmptyListIsPutRightByThePlayThatFollows) {
    recordings(0);
    Player::OnPrev();
    EXPECT_EQ(appState.persisted.fileIndex, -1);
    Player::OnPlay();
    EXPECT_EQ(appState.persisted.fileIndex, 0);
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
}

TEST_F(Playback, SkippingAFileThatWasToBeResumedForgetsItsPosition) {
    recordings(3);
    appState.resumePending = 1;
    appState.persisted.position = 12;
    Player::OnNext();
    EXPECT_EQ(appState.resumePending, 0);
    EXPECT_EQ(appState.persisted.position, 0);
    // A position that belongs to a start of another kind stays.
    appState.lastSkipTick -= 1700;
    appState.persisted.position = 12;
    Player::OnNext();
    EXPECT_EQ(appState.persisted.position, 12);
}

// --- requests that come while a message box is open ----------------------------------------------

TEST_F(Playback, ThePlayKeyDuringARefusalNeverTouchesTheRefusedGraph) {
    recordings(1);
    unit().quietPrint = true;
    theGraph().audioRenderer = false;
    unit().whileBoxIsOpen = [] {
        unit().whileBoxIsOpen = [] { Player::OnPlay(); };
        Player::OnPlay();
    };
    Player::OnPlay();
    const std::string lines = taken();
    EXPECT_EQ(lines.find("graph pause"), std::string::npos) << lines;
    EXPECT_EQ(lines.find("graph run"), std::string::npos) << lines;
    std::size_t builds = 0;  // each key opens the file again
    for (std::size_t at = lines.find("graph build"); at != std::string::npos;
         at = lines.find("graph build", at + 1)) {
        ++builds;
    }
    EXPECT_EQ(builds, 3u) << lines;
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
    EXPECT_EQ(appState.playLoaded, 1);
    EXPECT_FALSE(appState.filterControl.hasGraph());
}

TEST_F(Playback, AFileThatBecomesPlayableDuringItsRefusalPlays) {
    recordings(1);
    theGraph().audioRenderer = false;
    unit().whileBoxIsOpen = [] {
        theGraph().audioRenderer = true;
        Player::OnPlay();
        taken();
    };
    Player::OnPlay();
    EXPECT_EQ(taken(), "");  // the refused request leaves the newer one alone
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
    Player::OnPlay();
    EXPECT_LINES(taken(), "\ngraph pause\nhost refresh screen\n");
}

TEST_F(Playback, AStopDuringARefusalIsNotUndone) {
    recordings(1);
    theGraph().audioRenderer = false;
    unit().whileBoxIsOpen = [] {
        Player::stopPlayback();
        taken();
    };
    Player::OnPlay();
    EXPECT_LINES(taken(), R"(
timer 104 1000
print [TCMovieManager]Player::OnPlay\n
host waiting 0
)");
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
}

constexpr char kSecondStarted[] = R"(
host waiting 1
graph build \SDMMCDisk\Record\01.avi 0,0 800x480 shape 4:3
graph key 0x000000
host refresh screen
kill 100
graph owner Video
graph place 801,481 10x10 on layer 10
graph stop
graph delete filters
graph destroy
host clear progress
host refresh screen
host play key
host waiting 1
graph build \SDMMCDisk\Record\02.avi 0,0 800x480 shape 4:3
graph owner Video
graph key 0x000000
host place video
graph filter option 0
graph key switch 1
graph clear start options
graph volume 5
graph run
graph audio clock
graph report position
timer 100 300
host refresh screen
timer 104 1000
host waiting 0
host refresh screen
)";

TEST_F(Playback, ANextWhileTheGraphIsBuiltLeavesTheOlderRequestNothing) {
    recordings(2);
    unit().quietPrint = true;
    theGraph().whileBuilding = [] {
        Player::OnNext();
        Player::OnPlay();  // what the posted key does
    };
    Player::OnPlay();
    EXPECT_LINES(taken(), kSecondStarted);
    EXPECT_EQ(appState.persisted.fileIndex, 1);
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
}

TEST_F(Playback, ANextWhileTheClockIsSetLeavesTheOlderRequestNothing) {
    recordings(2);
    unit().quietPrint = true;
    theGraph().whileSettingClock = [] {
        Player::OnNext();
        Player::OnPlay();
        taken();
    };
    Player::OnPlay();
    EXPECT_EQ(taken(), "");
    EXPECT_EQ(appState.persisted.fileIndex, 1);
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
}

TEST_F(Playback, AStopWhileTheGraphIsBuiltIsNoRenderFailure) {
    recordings(1);
    theGraph().built = -1;
    theGraph().renderResult = static_cast<std::int32_t>(0x80004005);
    theGraph().whileBuilding = [] {
        Player::stopPlayback();
        taken();
    };
    Player::OnPlay();
    EXPECT_LINES(taken(), R"(
timer 104 1000
print [TCMovieManager]Player::OnPlay\n
host waiting 0
)");
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
}

TEST_F(Playback, AStopDuringTheBoxOfAGraphThatCannotBeMadeIsNoRenderFailureEither) {
    recordings(1);
    theGraph().stands = false;
    theGraph().built = -1;
    theGraph().renderResult = static_cast<std::int32_t>(0x80004005);
    theGraph().whileBuilding = [] {
        Player::stopPlayback();
        taken();
    };
    Player::OnPlay();
    EXPECT_EQ(taken().find("debug"), std::string::npos);
}

TEST_F(Playback, PlayForgetsThatAResumeWasPending) {
    recordings(1);
    appState.resumePending = 1;
    appState.playLoaded = 0;
    Player::OnPlay();
    EXPECT_EQ(appState.resumePending, 0);
    EXPECT_EQ(appState.playLoaded, 1);
}

}  // namespace
