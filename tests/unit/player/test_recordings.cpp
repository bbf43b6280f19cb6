// What happens to the lists when a volume comes or goes and when a recording is deleted.
#include "player/player.h"
#include "tests/unit/doubles/player_unit.h"

namespace {

using test::taken;
using test::theGraph;
using test::unit;

constexpr char kQuestion[] = "box 4,1 \\n\\n파일을 삭제 하시겠습니까?\n";

class Storage : public test::PlayerUnit {
protected:
    void play() {
        unit().quietPrint = true;
        Player::OnPlay();
        taken();
    }
};

TEST_F(Storage, AVolumeThatGoesStopsWhatPlaysFromIt) {
    struct Case {
        std::int64_t slot;
        std::int32_t arrived;
        bool stops;
    };
    for (const Case& c : {Case{0, 0, true}, Case{0, 1, false}, Case{1, 0, false}, Case{2, 0, false},
                          Case{6, 0, false}, Case{-1, 0, false}}) {
        recordings(1);
        play();
        Player::storageChanged(c.arrived, c.slot);
        EXPECT_EQ(appState.persisted.playState == settings::kStopped, c.stops) << c.slot;
        EXPECT_EQ(taken() != "", c.stops) << c.slot;
        Player::stopPlayback();
    }
}

TEST_F(Storage, TheFileListIsListedAgainAfterAPauseWhenItGoes) {
    recordings(2);
    appState.screenMode = kFileList;
    for (const std::int32_t arrived : {0, 1}) {
        put("SDMMCDisk/Record/9" + std::to_string(arrived) + ".avi");
        appState.browseFileCount = 0;
        catalogue::ListBrowseFolder(appState, test::kRecord);
        const std::int32_t before = appState.browseFileCount;
        put("SDMMCDisk/Record/8" + std::to_string(arrived) + ".avi");
        Player::storageChanged(arrived, 0);
        EXPECT_LINES(taken(),
                     arrived == 0 ? "\nsleep 500\nhost refresh list\n" : "\nhost refresh list\n");
        EXPECT_EQ(appState.browseFileCount, before + 1);
    }
}

TEST_F(Storage, AStoppedPlayerOnAnotherScreenDoesNothing) {
    recordings(1);
    for (const std::int32_t mode : {kFullWidth, kHalfWidth, kSlideBanner, kHidden}) {
        appState.screenMode = mode;
        Player::storageChanged(0, 0);
        Player::storageChanged(1, 0);
        EXPECT_EQ(taken(), "") << mode;
    }
}

struct Deletion {
    const char* name;
    int files;
    std::int32_t playing, page, deleted;
    std::int32_t playingAfter, pageAfter;
};

class Deleting : public test::PlayerUnit, public ::testing::WithParamInterface<Deletion> {
protected:
    void browse(std::int32_t page) {
        appState.connectMode = 1;
        catalogue::ListBrowseFolder(appState, test::kRecord);
        appState.browsePage = page;
        unit().quietPrint = true;
        unit().boxAnswer = 6;
    }
};

TEST_P(Deleting, ShowsThePageOfWhatPlaysOrTheOneItWasOn) {
    const Deletion& tested = GetParam();
    recordings(tested.files, tested.playing);
    browse(tested.page);
    Player::OnPlay();
    taken();
    Player::DeleteBrowseFile(tested.deleted);
    const std::string lines = taken();
    EXPECT_TRUE(lines.starts_with(kQuestion)) << lines;
    EXPECT_TRUE(lines.ends_with("host refresh list\n")) << lines;
    EXPECT_EQ(lines.find("graph destroy") != std::string::npos, tested.deleted == tested.playing);
    EXPECT_EQ(lines.find("graph run") != std::string::npos, tested.deleted == tested.playing);
    EXPECT_EQ(appState.playFileCount, tested.files - 1);
    EXPECT_EQ(appState.browseFileCount, tested.files - 1);
    EXPECT_EQ(appState.persisted.fileIndex, tested.playingAfter);
    EXPECT_EQ(appState.browsePage, tested.pageAfter);
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
    catalogue::PathBuffer expected;
    appState.playListing.GetFilePath(tested.playingAfter, expected);
    EXPECT_TRUE(catalogue::samePath(appState.persisted.file, expected));
}

INSTANTIATE_TEST_SUITE_P(
    Pages, Deleting,
    ::testing::Values(Deletion{"LastOfTheSecondPagePlays", 9, 8, 1, 8, 0, 0},
                      Deletion{"FirstOfTwoOnTheSecondPagePlays", 10, 8, 1, 8, 8, 1},
                      Deletion{"LastOfTwoOnTheSecondPagePlays", 10, 9, 1, 9, 0, 0},
                      Deletion{"OnTheFirstPageAnotherPlays", 10, 9, 0, 0, 8, 0},
                      Deletion{"SecondPageStays", 10, 0, 1, 9, 0, 1},
                      Deletion{"SecondPageIsGone", 9, 0, 1, 8, 0, 0},
                      Deletion{"ThirdPageIsGone", 17, 0, 2, 16, 0, 1},
                      Deletion{"OneBehindWhatPlays", 10, 3, 0, 5, 3, 0}),
    [](const auto& tested) { return tested.param.name; });

class DeletingOne : public Deleting {};

TEST_F(DeletingOne, OnlyAfterYesAndOnlyWhatIsThere) {
    recordings(2);
    browse(0);
    unit().boxAnswer = 7;
    Player::DeleteBrowseFile(0);
    EXPECT_LINES(taken(), std::string("\n") + kQuestion);
    Player::DeleteBrowseFile(2);
    Player::DeleteBrowseFile(-1);
    EXPECT_EQ(taken(), "");
    EXPECT_TRUE(exists("SDMMCDisk/Record/01.avi"));
}

TEST_F(DeletingOne, NotAnotherThatTookItsPlaceWhileTheQuestionWasOpen) {
    recordings(3);
    browse(0);
    unit().whileBoxIsOpen = [this] {
        std::filesystem::remove(root_ / "SDMMCDisk/Record/01.avi");
        catalogue::ListBrowseFolder(appState, test::kRecord);
    };
    Player::DeleteBrowseFile(0);
    EXPECT_LINES(taken(), std::string("\n") + kQuestion);
    EXPECT_TRUE(exists("SDMMCDisk/Record/02.avi"));
}

TEST_F(DeletingOne, NotWhatWasInAnotherFolderBefore) {
    recordings(1);
    put("SDMMCDisk/Other/01.avi");
    browse(0);
    unit().whileBoxIsOpen = [] { catalogue::ListBrowseFolder(appState, u"\\SDMMCDisk\\Other"); };
    Player::DeleteBrowseFile(0);
    EXPECT_LINES(taken(), std::string("\n") + kQuestion);
    EXPECT_TRUE(exists("SDMMCDisk/Record/01.avi"));
    EXPECT_TRUE(exists("SDMMCDisk/Other/01.avi"));
}

TEST_F(DeletingOne, AFailureChangesNothing) {
    recordings(2);
    browse(0);
    std::filesystem::remove(root_ / "SDMMCDisk/Record/01.avi");
    Player::DeleteBrowseFile(0);
    EXPECT_LINES(taken(), std::string("\n") + kQuestion);
    EXPECT_EQ(appState.browseFileCount, 2);
}

TEST_F(DeletingOne, TheSelectedButStoppedOneStartsNothing) {
    recordings(3, 2);
    browse(0);
    Player::DeleteBrowseFile(2);
    EXPECT_LINES(taken(), std::string("\n") + kQuestion + "host refresh list\n");
    EXPECT_EQ(appState.persisted.fileIndex, 0);
}

TEST_F(DeletingOne, WhatWasToBeResumedIsForgotten) {
    recordings(2);
    browse(0);
    appState.resumePending = 1;
    appState.playLoaded = 0;
    appState.persisted.position = 12;
    Player::DeleteBrowseFile(0);
    EXPECT_EQ(appState.resumePending, 0);
    EXPECT_EQ(appState.playLoaded, 1);
    EXPECT_EQ(appState.persisted.position, 0);
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
}

TEST_F(DeletingOne, AnotherLeavesWhatIsToBeResumed) {
    recordings(2);
    browse(0);
    appState.resumePending = 1;
    appState.playLoaded = 0;
    appState.persisted.position = 12;
    Player::DeleteBrowseFile(1);
    EXPECT_EQ(appState.resumePending, 1);
    EXPECT_EQ(appState.playLoaded, 0);
    EXPECT_EQ(appState.persisted.position, 12);
}

TEST_F(DeletingOne, TheSelectedButStoppedOneLeavesThePosition) {
    recordings(2);
    browse(0);
    appState.playLoaded = 0;
    appState.persisted.position = 12;
    Player::DeleteBrowseFile(0);
    EXPECT_EQ(appState.playLoaded, 0);
    EXPECT_EQ(appState.persisted.position, 12);
}

TEST_F(DeletingOne, InAnotherFolderThePlayListStays) {
    recordings(3, 1);
    put("SDMMCDisk/Other/01.avi");
    put("SDMMCDisk/Other/02.avi");
    Player::OnPlay();
    browse(0);
    catalogue::ListBrowseFolder(appState, u"\\SDMMCDisk\\Other");
    taken();
    Player::DeleteBrowseFile(1);
    EXPECT_LINES(taken(), std::string("\n") + kQuestion + "host refresh list\n");
    EXPECT_EQ(appState.playFileCount, 3);
    EXPECT_EQ(appState.persisted.fileIndex, 1);
    EXPECT_EQ(appState.browseFileCount, 1);
    EXPECT_FALSE(exists("SDMMCDisk/Other/02.avi"));
}

}  // namespace
