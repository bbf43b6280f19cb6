// Stepping through the play list, seeking, and what a deleted recording leaves on the screen.
#include "catalogue/catalogue.h"
#include "platform/wide.h"
#include "player/player.h"
#include "settings/persisted_state.h"
#include "tests/device/player/unit.h"

namespace {

constexpr WPARAM kPlay = 20507;

class Lists : public test::PlayerUnit {
protected:
    // Recordings "01.avi" to the given number in one folder, the one at `playing` playing.
    void playOneOf(int count, std::int32_t playing) {
        for (int i = 1; i <= count; ++i) {
            put(std::wstring(i < 10 ? L"0" : L"") + std::to_wstring(i) + L".avi");
        }
        startInFolder(playing);
        command(kPlay);
        ASSERT_EQ(appState.persisted.playState, settings::kPlaying);
        ASSERT_EQ(appState.persisted.fileIndex, playing);
    }

    static void browseSameFolder(std::int32_t page) {
        catalogue::PathBuffer folder;
        catalogue::copyPath(folder, appState.playFolderPath);
        catalogue::ListBrowseFolder(appState, folder);
        appState.browsePage = page;
    }
};

TEST_F(Lists, RequestsWithin1700MillisecondsAreRefused) {
    playOneOf(3, 0);
    for (const DWORD passed : {1u, 1000u, 1500u}) {
        appState.lastSkipTick = GetTickCount() - passed;
        const std::uint32_t before = appState.lastSkipTick;
        const test::Printed printed;
        Player::OnNext();
        EXPECT_EQ(printed.text(), "\r\n\n+++++Player::OnNext: OnNext\r\n--Player::OnNext \r\n");
        EXPECT_EQ(appState.persisted.fileIndex, 0);
        EXPECT_EQ(appState.lastSkipTick, before);  // what is refused does not count
    }
    appState.lastSkipTick = GetTickCount() - 1700;
    Player::OnNext();
    EXPECT_EQ(appState.persisted.fileIndex, 1);
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
    handleMessages();
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
    // The counter of milliseconds runs over after 49.7 days.
    appState.lastSkipTick = GetTickCount() + 1000;
    Player::OnPrev();
    EXPECT_EQ(appState.persisted.fileIndex, 0);
}

TEST_F(Lists, EmptyOneIsLeftAtMinusOneByPreviousAtZeroByNext) {
    startInFolder();
    Player::OnPrev();
    EXPECT_EQ(appState.persisted.fileIndex, -1);
    handleMessages();  // the play that follows finds nothing
    EXPECT_EQ(appState.persisted.fileIndex, 0);
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
    EXPECT_EQ(appState.persisted.file[0], u'\0');
    appState.lastSkipTick = GetTickCount() - 1700;
    Player::OnNext();
    EXPECT_EQ(appState.persisted.fileIndex, 0);
    EXPECT_TRUE(boxes_.shown.empty());
}

TEST_F(Lists, SeekThatEndsAtZeroGoesToTheNextFile) {
    playOneOf(2, 0);
    Player::seekTo(12);
    EXPECT_EQ(appState.persisted.position, 12);
    EXPECT_NEAR(appState.filterControl.GetPosition(), 12, 0.5);
    EXPECT_EQ(appState.persisted.fileIndex, 0);
    Player::seekTo(0);
    EXPECT_EQ(appState.persisted.fileIndex, 0);
    Player::releaseGraph();  // a graph that stands at 0, as without one
    Player::seekTo(0);
    EXPECT_EQ(appState.persisted.fileIndex, 0);
    Player::seekTo(5);
    EXPECT_EQ(appState.persisted.fileIndex, 1);
    EXPECT_EQ(appState.persisted.position, 0);
    handleMessages();
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
}

TEST_F(Lists, DeletedFileThatWasToBeResumedIsForgotten) {
    put(L"01.avi");
    put(L"02.avi");
    settings::PersistedState remembered;
    remembered.playState = settings::kPlaying;
    remembered.position = 12;
    remembered.endTime = 40;
    catalogue::copyPath(remembered.folder, platform::utf16((L"\\" + folder_).c_str()));
    settings::writePersistedState(remembered);
    Player::initialisePlayback();
    ASSERT_EQ(appState.resumePending, 1);
    browseSameFolder(0);
    boxes_.answer = IDYES;
    Player::DeleteBrowseFile(0);
    EXPECT_EQ(appState.resumePending, 0);
    EXPECT_EQ(appState.playLoaded, 1);
    EXPECT_EQ(appState.persisted.position, 0);
    handleMessages();
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
    EXPECT_EQ(appState.playFileCount, 1);
}

struct Deletion {
    const char* name;
    int files;
    std::int32_t playing, page, deleted;
    std::int32_t playingAfter, pageAfter;
};
class Deleting : public Lists, public ::testing::WithParamInterface<Deletion> {};

TEST_P(Deleting, ShowsThePageOfWhatPlaysOrTheOneItWasOn) {
    const Deletion& tested = GetParam();
    playOneOf(tested.files, tested.playing);
    browseSameFolder(tested.page);
    boxes_.answer = IDYES;
    Player::DeleteBrowseFile(tested.deleted);
    ASSERT_EQ(boxes_.shown.size(), 1u);
    EXPECT_EQ(boxes_.shown[0].text, L"\n\n파일을 삭제 하시겠습니까?");
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
                      Deletion{"SecondPageIsGone", 9, 0, 1, 8, 0, 0}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace
