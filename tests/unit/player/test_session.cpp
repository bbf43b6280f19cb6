// Taking up where the last run ended, and leaving.
#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/com.h"
#include "player/player.h"
#include "tests/unit/doubles/player_unit.h"

namespace {

using test::taken;
using test::unit;

class Session : public test::PlayerUnit {
protected:
    void SetUp() override {
        PlayerUnit::SetUp();
        recordings(3);
        std::destroy_at(&appState);
        std::construct_at(&appState);
        appState.mainWindow = test::playerWindow();
    }
    static settings::PersistedState remembered() {
        settings::PersistedState state;
        catalogue::copyPath(state.folder, test::kRecord);
        return state;
    }
    static void start(const settings::PersistedState& state) {
        settings::writePersistedState(state);
        Player::initialisePlayback();
    }
    static std::string file() { return test::shown(appState.persisted.file); }
};

constexpr char kPrepared[] = R"(
thread priorities 1
forget cached graphs
host refresh screen
)";
constexpr char kReady[] = R"(host show video
print [1723] Player::OrviExecMutimedia \n
print [1727] Player::OrviExecMutimedia \n
values Orvi 1088 1,1
print [1735] Player::OrviExecMutimedia \n
print [1737] Player::OrviExecMutimedia \n
)";

TEST_F(Session, InitialisationGoesThroughAllSteps) {
    settings::PersistedState state = remembered();
    state.volume = 8;
    state.fileIndex = 1;
    state.endTime = 60;
    state.position = 12;
    appState.audioSuppressed = appState.resumePending = appState.muted = 1;
    appState.pendingKeyAction = kVolumeUp;
    appState.browsePage = 4;
    start(state);
    EXPECT_LINES(taken(), std::string(kPrepared) + kReady);
    catalogue::PathBuffer second;
    ASSERT_EQ(appState.playListing.GetFilePath(1, second), 1);
    EXPECT_EQ(file(), test::shown(second));
    EXPECT_EQ(appState.persisted.volume, 8);
    EXPECT_EQ(appState.persisted.position, 12);
    EXPECT_EQ(appState.fileCount, 3);
    EXPECT_EQ(appState.audioSuppressed, 0);
    EXPECT_EQ(appState.resumePending, 0);
    EXPECT_EQ(appState.muted, 0);
    EXPECT_EQ(appState.pendingKeyAction, kNoAction);
    EXPECT_EQ(appState.browsePage, 0);
    EXPECT_TRUE(appState.loadRestOfSkin);
    EXPECT_EQ(appState.playLoaded, 1);
}

TEST_F(Session, WhatPlayedIsToBeResumedByAScreen) {
    for (const std::int32_t played : {settings::kPlaying, settings::kPaused}) {
        settings::PersistedState state = remembered();
        state.playState = played;
        state.endTime = 60;
        state.position = 12;
        start(state);
        EXPECT_LINES(taken(), std::string(kPrepared) + kReady);
        EXPECT_EQ(appState.persisted.playState, settings::kStopped);
        EXPECT_EQ(appState.resumePending, 1);
        EXPECT_EQ(appState.playLoaded, 0);
        EXPECT_EQ(appState.persisted.position, 12);
    }
}

TEST_F(Session, AFileThatIsGoneIsToldAndItsTimesForgotten) {
    settings::PersistedState state = remembered();
    std::filesystem::remove_all(root_ / "SDMMCDisk");
    state.playState = settings::kPlaying;
    state.endTime = 60;
    state.position = 12;
    catalogue::copyPath(state.file, u"\\SDMMCDisk\\Record\\01.avi");
    start(state);
    // The list is empty, so the stored path is, too.
    EXPECT_LINES(taken(), std::string(kPrepared) + kReady);
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
    EXPECT_EQ(appState.persisted.position, 0);
    EXPECT_EQ(appState.persisted.endTime, 0);
    EXPECT_EQ(appState.resumePending, 0);
    EXPECT_EQ(file(), "");
}

TEST_F(Session, AFileThatIsStartedDuringTheNoticeKeepsPlaying) {
    std::filesystem::remove_all(root_ / "SDMMCDisk/Record");
    makeFolder("SDMMCDisk/Record");
    std::filesystem::create_symlink("nowhere",
                                    root_ / "SDMMCDisk/Record/01.avi");  // listed, not there
    unit().whileBoxIsOpen = [this] {
        std::filesystem::remove(root_ / "SDMMCDisk/Record/01.avi");
        put("SDMMCDisk/Record/01.avi", test::smallRecording());
        Player::OnPlay();
    };
    settings::PersistedState state = remembered();
    state.playState = settings::kPlaying;
    state.endTime = 50;
    state.position = 12;
    start(state);
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
    EXPECT_EQ(appState.persisted.position, 12);
    EXPECT_EQ(appState.persisted.endTime, 60);
    EXPECT_EQ(taken().find("graph pause"), std::string::npos);
}

TEST_F(Session, ANoticeForgetsTheTimes) {
    std::filesystem::remove_all(root_ / "SDMMCDisk/Record");
    makeFolder("SDMMCDisk/Record");
    std::filesystem::create_symlink("nowhere", root_ / "SDMMCDisk/Record/01.avi");
    settings::PersistedState state = remembered();
    state.playState = settings::kPlaying;
    state.endTime = 50;
    state.position = 12;
    start(state);
    EXPECT_LINES(taken(),
                 std::string(kPrepared) + "box 0,1 \\n\\n재생 파일이 없습니다.\n" + kReady);
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
    EXPECT_EQ(appState.persisted.position, 0);
    EXPECT_EQ(appState.persisted.endTime, 0);
}

TEST_F(Session, AnExitDuringTheNoticeEndsTheInitialisation) {
    std::filesystem::remove_all(root_ / "SDMMCDisk/Record");
    makeFolder("SDMMCDisk/Record");
    std::filesystem::create_symlink("nowhere", root_ / "SDMMCDisk/Record/01.avi");
    unit().whileBoxIsOpen = [] { appState.exiting = true; };
    start(remembered());
    EXPECT_LINES(taken(), std::string(kPrepared) + "box 0,1 \\n\\n재생 파일이 없습니다.\n");
}

TEST_F(Session, DefaultsWithoutARecordOrWithAShortOne) {
    Player::initialisePlayback();
    EXPECT_LINES(taken(), std::string(kPrepared) + kReady);
    EXPECT_EQ(appState.persisted.volume, 5);
    put("ResidentFlash2/Data/Movie.dat", std::string(1071, '\x07'));
    Player::initialisePlayback();
    EXPECT_EQ(appState.persisted.volume, 5);
    EXPECT_EQ(appState.persisted.fileIndex, 0);
    EXPECT_EQ(file(), "");
}

struct Repair {
    const char* name;
    void (*spoil)(settings::PersistedState&);
    const char* after;  // state volume index position endTime
};

class Repairs : public Session, public ::testing::WithParamInterface<Repair> {};

TEST_P(Repairs, EveryValueOutOfRangeGetsItsDefault) {
    settings::PersistedState state = remembered();
    state.volume = 3;
    state.fileIndex = 2;
    state.position = 12;
    state.endTime = 60;
    GetParam().spoil(state);
    start(state);
    std::array<char, 80> text{};
    const settings::PersistedState& p = appState.persisted;
    std::snprintf(text.data(), text.size(), "%d %d %d %g %g", appState.resumePending, p.volume,
                  p.fileIndex, p.position, p.endTime);
    EXPECT_STREQ(text.data(), GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(
    Fields, Repairs,
    ::testing::Values(Repair{"Nothing", [](auto&) {}, "0 3 2 12 60"},
                      Repair{"State3", [](auto& s) { s.playState = 3; }, "0 3 2 12 60"},
                      Repair{"StateNegative", [](auto& s) { s.playState = -1; }, "0 3 2 12 60"},
                      Repair{"State2", [](auto& s) { s.playState = 2; }, "1 3 2 12 60"},
                      Repair{"Volume11", [](auto& s) { s.volume = 11; }, "0 5 2 12 60"},
                      Repair{"VolumeNegative", [](auto& s) { s.volume = -1; }, "0 5 2 12 60"},
                      Repair{"Volume10", [](auto& s) { s.volume = 10; }, "0 10 2 12 60"},
                      Repair{"Volume0", [](auto& s) { s.volume = 0; }, "0 0 2 12 60"},
                      Repair{"IndexNegative", [](auto& s) { s.fileIndex = -1; }, "0 3 0 12 60"},
                      Repair{"IndexBehindTheList", [](auto& s) { s.fileIndex = 3; }, "0 3 0 12 60"},
                      Repair{"PositionBehindTheEnd", [](auto& s) { s.position = 60.5; },
                             "0 3 2 0 60"},
                      Repair{"PositionAtTheEnd", [](auto& s) { s.position = 60; }, "0 3 2 60 60"},
                      Repair{"EndNegative", [](auto& s) { s.endTime = -1; }, "0 3 2 0 0"}),
    [](const auto& tested) { return tested.param.name; });

TEST_F(Session, TheDashCamerasFolderTakesThePlaceOfTheRecord) {
    settings::PersistedState state;
    state.playState = settings::kPlaying;
    state.volume = 9;
    state.position = 12;
    state.endTime = 60;
    appState.connectMode = 1;
    catalogue::copyPath(appState.connectPath, u"SDMMCDisk\\Record");
    start(state);
    EXPECT_EQ(test::shown(appState.persisted.folder), R"(\SDMMCDisk\Record)");
    EXPECT_EQ(file(), R"(\SDMMCDisk\Record\01.avi)");
    EXPECT_EQ(appState.persisted.volume, 5);
    EXPECT_EQ(appState.persisted.position, 0);
    EXPECT_EQ(appState.resumePending, 0);
    EXPECT_EQ(appState.fileCount, 3);
}

TEST_F(Session, AFolderOfTheDashCameraIsCutToWhatAPathHolds) {
    for (const std::size_t length : {257u, 258u, 259u}) {
        const std::size_t rest = std::min<std::size_t>(length, 258) - 201;
        makeFolder(std::string(200, 'f') + "/" + std::string(rest, 'g'));
        const std::u16string name = std::u16string(200, u'f') + u"\\" + std::u16string(58, u'g');
        appState.connectMode = 1;
        catalogue::copyPath(appState.connectPath, name.substr(0, length).c_str());
        Player::initialisePlayback();
        EXPECT_EQ(std::u16string(appState.persisted.folder), u"\\" + name.substr(0, 201 + rest))
            << length;
    }
}

TEST_F(Session, MuteIsReadFromTheSettings) {
    for (const auto& [value, muted] : {std::pair{"1", 1}, std::pair{"0", 0}, std::pair{"2", 0}}) {
        put("ResidentFlash2/Data/Config.ini", std::string("[Sound]\nMUTE=") + value + "\n");
        Player::initialisePlayback();
        EXPECT_EQ(appState.muted, muted) << value;
    }
}

TEST_F(Session, AMissingNavigationLeavesTheFramingLines) {
    unit().windows.clear();
    Player::OrviExecMutimedia(1, 0);
    EXPECT_LINES(taken(), R"(
print [1723] Player::OrviExecMutimedia \n
print [1737] Player::OrviExecMutimedia \n
)");
}

TEST_F(Session, LeavingWritesStopsFreesAndTells) {
    settings::PersistedState state = remembered();
    start(state);
    Player::OnPlay();
    appState.persisted.position = 12;
    catalogue::ListBrowseFolder(appState, test::kRecord);
    taken();
    Player::saveAndClose();
    EXPECT_LINES(taken(), R"(
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
release nothing
leave COM
print [1723] Player::OrviExecMutimedia \n
print [1727] Player::OrviExecMutimedia \n
values Orvi 1088 1,0
print [1735] Player::OrviExecMutimedia \n
print [1737] Player::OrviExecMutimedia \n
)");
    settings::PersistedState written;  // as it played, before the stop
    ASSERT_EQ(settings::readPersistedState(written), 1);
    EXPECT_EQ(written.playState, settings::kPlaying);
    EXPECT_EQ(written.position, 12);
    EXPECT_EQ(appState.playListing.GetFileCount(), 0);
    EXPECT_EQ(appState.browseListing.GetFileCount(), 0);
}

TEST_F(Session, LeavingGivesBackAGraphThatStandsAndTheImagingFactory) {
    ASSERT_EQ(Player::openAndRun(u"x", {0, 0}), 1);
    appState.imagingFactory = platform::createImagingFactory();
    taken();
    Player::saveAndClose();
    EXPECT_TRUE(taken().starts_with(
        "graph stop\ngraph delete filters\ngraph destroy\nrelease object\nleave COM\n"));
    EXPECT_EQ(appState.imagingFactory, nullptr);
}

TEST_F(Session, TheDashCamerasSessionIsNotRemembered) {
    std::filesystem::remove(root_ / "ResidentFlash2/Data/Movie.dat");
    appState.connectMode = 1;
    Player::saveAndClose();
    EXPECT_FALSE(exists("ResidentFlash2/Data/Movie.dat"));
}

}  // namespace
