// The file list: what its keys set off, what it shows, and how it is left and found again.
#include "shell/screens/file_list.h"
#include "shell/screens/refresh.h"
#include "shell/screens/screens.h"
#include "shell/screens/state_view.h"
#include "tests/unit/shell/screens_unit.h"

namespace {

using test::unit;
using ui::Action;

class FileList : public test::ScreensUnit {
protected:
    void SetUp() override {
        ScreensUnit::SetUp();
        for (int i = 0; i < 12; ++i) {
            put("SDMMCDisk/Record/" + std::to_string(10 + i) + ".avi", test::smallRecording());
        }
        makeFolder("SDMMCDisk/Record/sub");
        unit().quietPrint = true;
        appState.connectMode = 1;  // by name
        catalogue::copyPath(appState.persisted.folder, test::kRecord);
        catalogue::ListPlayFolder(appState, test::kRecord);
        mode(kFileList);
    }
};

TEST_F(FileList, PagesStayWithinTheList) {
    EXPECT_EQ(appState.browsePageCount, 2);
    EXPECT_EQ(act(Action::PageUp), "");
    EXPECT_LINES(act(Action::PageDown), "\nredraw\n");
    EXPECT_EQ(appState.browsePage, 1);
    EXPECT_EQ(act(Action::PageDown), "");
    EXPECT_LINES(act(Action::PageUp), "\nredraw\n");
    EXPECT_EQ(appState.browsePage, 0);
}

TEST_F(FileList, AKeyTurnsOnePage) {
    appState.browsePageCount = 5;
    appState.browsePage = 2;
    act(Action::PageUp);
    EXPECT_EQ(appState.browsePage, 1);
    act(Action::PageDown);
    EXPECT_EQ(appState.browsePage, 2);
    appState.browsePageCount = appState.browsePage = 0;  // an empty list
    EXPECT_EQ(act(Action::PageDown), "");
    EXPECT_EQ(appState.browsePage, 0);
}

TEST_F(FileList, ThePressedRowIsLookedUpInTheListAsItIs) {
    appState.screens.rows = {};
    touch(0x201, 300, 90);
    EXPECT_NE(touch(0x202, 300, 90).find("sound 0\n"), std::string::npos);
    EXPECT_EQ(test::shown(appState.browseFolderPath), R"(\SDMMCDisk\Record\sub)");
}

TEST_F(FileList, WhatIsSeenIsTheList) {
    appState.browsePage = 1;
    appState.screens.touch.pressedKey = 3;
    const ui::ListView view = screens::listView();
    EXPECT_EQ(std::u16string_view(view.table->rows[0].name), u"17.avi");
    EXPECT_EQ(std::u16string_view(view.path), u"\\SDMMCDisk\\Record");
    EXPECT_EQ(view.page, 1);
    EXPECT_EQ(view.pageCount, 2);
    EXPECT_EQ(view.pressedKey, 3);
    EXPECT_TRUE(view.hasParent);
}

TEST_F(FileList, UpLeadsFromEveryFolderButTheTop) {
    makeFolder("a/b");
    struct Case {
        const char16_t* folder;
        bool normally, connected;
    };
    for (const Case& c : {Case{u"", false, false}, Case{u"\\SDMMCDisk", true, false},
                          Case{u"\\SDMMCDisk\\Record", true, true}, Case{u"a\\b", true, true}}) {
        for (const std::int32_t connect : {0, 1}) {
            appState.connectMode = connect;
            catalogue::ListBrowseFolder(appState, c.folder);
            EXPECT_EQ(screens::hasParentFolder(), connect == 1 ? c.connected : c.normally)
                << test::shown(c.folder) << connect;
        }
    }
}

TEST_F(FileList, IsFoundAsItWasLeftWhileNothingPlays) {
    act(Action::PageDown);
    mode(kFullWidth);
    put("SDMMCDisk/Record/30.avi", test::smallRecording());
    mode(kFileList);
    EXPECT_TRUE(appState.screens.listShown);
    EXPECT_EQ(appState.browsePage, 1);
    EXPECT_EQ(appState.browseFileCount, 13) << "listed again";
    catalogue::ListBrowseFolder(appState, u"\\SDMMCDisk");
    mode(kFullWidth);
    mode(kFileList);
    EXPECT_EQ(test::shown(appState.browseFolderPath), R"(\SDMMCDisk)");
    mode(kFullWidth);
    send(u"ZEL_BSP_WMUSER_IR_KEY", 7);
    mode(kFileList);
    EXPECT_EQ(test::shown(appState.browseFolderPath), R"(\SDMMCDisk\Record)") << "what plays";
}

TEST_F(FileList, HidingItForgetsTheFinger) {
    touch(0x201, 300, 90);
    ASSERT_TRUE(appState.screens.touch.held);
    mode(kHidden);
    EXPECT_FALSE(appState.screens.touch.held);
}

TEST_F(FileList, AnotherFileTakesThePlaceOfWhatPlays) {
    act(Action::OpenRow, 3);
    handlePosted();
    ASSERT_EQ(appState.persisted.playState, settings::kPlaying);
    const std::string did = act(Action::OpenRow, 1);  // the first file, behind the only folder
    EXPECT_NE(did.find("graph destroy\n"), std::string::npos) << did;
    EXPECT_TRUE(did.ends_with("post Video ZEL_BSP_WMUSER_IR_KEY 7,0\nredraw\n")) << did;
    EXPECT_EQ(appState.persisted.fileIndex, 0);
    EXPECT_EQ(appState.screenMode, kFileList);
}

TEST_F(FileList, TheFirstFileBehindSevenFoldersIsOnTheFirstPage) {
    for (int i = 0; i < 6; ++i) {
        makeFolder("SDMMCDisk/Record/s" + std::to_string(i));
    }
    for (const std::int32_t index : {-1, 0}) {
        appState.screens.listShown = false;
        appState.playIndex = index;
        mode(kFullWidth);
        mode(kFileList);
        ASSERT_EQ(appState.browseFolderCount, 7);
        EXPECT_EQ(appState.browsePage, 0) << index;
    }
}

TEST_F(FileList, AChangedListForgetsTheFingerOnItsRows) {
    struct Case {
        ui::Point point;
        bool held;  // afterwards
    };
    // A row, its bin, and a key that stays what it is.
    for (const Case& c : {Case{{300, 90}, false}, Case{{625, 90}, false}, Case{{400, 20}, true}}) {
        touch(0x201, c.point.x, c.point.y);
        ASSERT_TRUE(appState.screens.touch.held);
        screens::refreshFileList();
        EXPECT_EQ(appState.screens.touch.held, c.held) << c.point.x;
        touch(0x202, 799, 479);
    }
}

TEST_F(FileList, OpensAtThePageOfWhatWasChosen) {
    struct Case {
        std::int32_t index, page;
    };
    // Behind one folder; there are twelve files.
    for (const Case& c : {Case{0, 0}, Case{6, 0}, Case{7, 1}, Case{11, 1}, Case{12, 0}}) {
        mode(kFullWidth);
        appState.screens.listShown = false;
        appState.playIndex = c.index;
        mode(kFileList);
        EXPECT_EQ(appState.browsePage, c.page) << c.index;
    }
}

TEST_F(FileList, AFolderIsEnteredAndLeft) {
    EXPECT_LINES(act(Action::OpenRow, 0), "\nredraw\n");
    EXPECT_EQ(test::shown(appState.browseFolderPath), R"(\SDMMCDisk\Record\sub)");
    EXPECT_LINES(act(Action::GoToParent), "\nredraw\n");
    EXPECT_EQ(test::shown(appState.browseFolderPath), R"(\SDMMCDisk\Record)");
}

TEST_F(FileList, AFileIsChosenAndStartedByThePlayKey) {
    appState.persisted.position = 12;
    EXPECT_LINES(act(Action::OpenRow, 3), "\npost Video ZEL_BSP_WMUSER_IR_KEY 7,0\nredraw\n");
    EXPECT_EQ(appState.persisted.fileIndex, 2);
    EXPECT_EQ(appState.persisted.position, 0);
    // The selected one goes on where it was left.
    appState.persisted.position = 12;
    act(Action::OpenRow, 3);
    EXPECT_EQ(appState.persisted.position, 12);
}

TEST_F(FileList, WhatPlaysIsShownInsteadOfStartedAgain) {
    act(Action::OpenRow, 3);
    handlePosted();
    ASSERT_EQ(appState.persisted.playState, settings::kPlaying);
    const std::string did = act(Action::OpenRow, 3);
    EXPECT_EQ(did.find("graph destroy"), std::string::npos) << did;
    EXPECT_EQ(appState.screenMode, kFullWidth);
}

TEST_F(FileList, RowsBehindTheListDoNothing) {
    appState.browsePage = 1;
    EXPECT_EQ(act(Action::OpenRow, 5), "");
    EXPECT_EQ(act(Action::DeleteRow, 5), "");
}

TEST_F(FileList, TheBinAsks) {
    unit().boxAnswer = 7;
    EXPECT_LINES(act(Action::DeleteRow, 1), "\nbox 4,1 \\n\\n파일을 삭제 하시겠습니까?\n");
    unit().boxAnswer = 6;
    EXPECT_LINES(act(Action::DeleteRow, 1), "\nbox 4,1 \\n\\n파일을 삭제 하시겠습니까?\nredraw\n");
    EXPECT_FALSE(exists("SDMMCDisk/Record/10.avi"));
}

TEST_F(FileList, LeavesToTheScreenThatItWasOpenedFrom) {
    EXPECT_TRUE(act(Action::LeaveList).find("front\n") != std::string::npos);
    EXPECT_EQ(appState.screenMode, kFullWidth);
    mode(kHalfWidth);
    mode(kFileList);
    EXPECT_LINES(act(Action::LeaveList), "\npost Processmanager MSG_MovietoProcessManager 1,0\n");
    EXPECT_EQ(appState.screenMode, kFileList);
}

}  // namespace
