// The rows of the file list, from real folders of entries.
#include <gtest/gtest.h>

#include <string>

#include "platform/host_path.h"
#include "platform/text.h"
#include "shell/screens/list_rows.h"
#include "ui/skin_slots.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;

// A unit's storage in a folder of the test's own.
class ListRowsTest : public testing::Test {
protected:
    void SetUp() override {
        char name[] = "/tmp/ui_rows_XXXXXX";
        ASSERT_NE(mkdtemp(name), nullptr);
        root_ = name;
        platform::setUnitRoot(root_.string());
    }
    void TearDown() override {
        platform::setUnitRoot("");
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }
    void makeFolder(const std::string& path) { fs::create_directories(root_ / path); }
    void makeFile(const std::string& path) { std::ofstream(root_ / path) << "x"; }
    void browse(const char16_t* path) {
        fields_.connectMode = 1;  // in order of their names
        catalogue::ListBrowseFolder(fields_, path);
    }
    const ui::ListRows& rows() {
        screens::fillRows(fields_, table_);
        return table_;
    }

    fs::path root_;
    catalogue::CatalogueFields fields_;
    ui::ListRows table_;
};

std::string nameOf(const ui::ListRow& row) {
    return platform::toUtf8(row.name);
}

TEST_F(ListRowsTest, FoldersComeBeforeFilesOverThePages) {
    makeFolder("SDMMCDisk/f1");
    makeFolder("SDMMCDisk/f2");
    for (char letter = 'a'; letter <= 'h'; ++letter) {
        makeFile(std::string("SDMMCDisk/") + letter + ".avi");
    }
    browse(u"\\SDMMCDisk");
    EXPECT_EQ(nameOf(rows().rows[0]), "f1");
    EXPECT_EQ(table_.rows[1].kind, ui::RowKind::Folder);
    EXPECT_EQ(table_.rows[1].slot, ui::kListFolder);
    EXPECT_EQ(table_.rows[2].kind, ui::RowKind::File);
    EXPECT_EQ(table_.rows[2].slot, ui::kListFile);
    EXPECT_EQ(nameOf(table_.rows[7]), "f.avi");
    fields_.browsePage = 1;
    EXPECT_EQ(nameOf(rows().rows[0]), "g.avi");
    EXPECT_EQ(nameOf(table_.rows[1]), "h.avi");
    for (std::size_t r = 2; r < 8; ++r) {
        EXPECT_EQ(table_.rows[r].kind, ui::RowKind::Empty);
        EXPECT_EQ(nameOf(table_.rows[r]), "");
    }
}

TEST_F(ListRowsTest, ThePlayingMarkNeedsNumberAndFolder) {
    for (const char* path : {"SDMMCDisk/x", "SDMMCDisk/y"}) {
        makeFolder(path);
        makeFile(std::string(path) + "/a.avi");
        makeFile(std::string(path) + "/b.avi");
    }
    browse(u"\\SDMMCDisk\\x");
    catalogue::ListPlayFolder(fields_, u"\\SDMMCDisk\\x");
    fields_.playIndex = 1;
    EXPECT_FALSE(rows().rows[0].playing);
    EXPECT_TRUE(table_.rows[1].playing);
    catalogue::ListPlayFolder(fields_, u"\\SDMMCDisk\\y");
    EXPECT_FALSE(rows().rows[1].playing);
}

TEST_F(ListRowsTest, VolumesHaveIconsOfTheirOwn) {
    makeFolder("SDMMCDisk/sdmmc");
    makeFolder("USB");
    makeFolder("Elsewhere");
    browse(u"");
    ASSERT_EQ(fields_.browseFolderCount, 2);
    for (std::size_t r = 0; r < 2; ++r) {
        const bool isCard = nameOf(rows().rows[r]) == "SDMMCDisk";
        EXPECT_EQ(table_.rows[r].slot, isCard ? ui::kListCard : ui::kListUsb);
    }
    browse(u"\\SDMMCDisk");
    EXPECT_EQ(rows().rows[0].slot, ui::kListFolder);
}

TEST_F(ListRowsTest, AnEmptyFolderHasEmptyRows) {
    makeFolder("USB");
    browse(u"\\USB");
    for (const ui::ListRow& row : rows().rows) {
        EXPECT_EQ(row.kind, ui::RowKind::Empty);
    }
}

}  // namespace
