// Slots without a unit: whatever is done to a card, what lies on the PC stays as it is.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <sstream>

#include "simulator/command/cards.h"
#include "simulator/command/picture.h"

namespace headunit {
namespace {

using Tree = std::map<std::string, std::string>;

Tree treeOf(const fs::path& folder) {
    Tree tree;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        std::stringstream text;
        if (entry.is_regular_file()) {
            text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        }
        tree[entry.path().lexically_relative(folder)] = text.str();
    }
    return tree;
}

class Cards : public testing::Test {
protected:
    void SetUp() override {
        base_ = fs::temp_directory_path() / ("headunit-cards-" + std::to_string(getpid()));
        unit_.device = base_ / "device";
        pc_ = base_ / "pc";
        fs::create_directories(unit_.run());
        fs::create_directories(pc_ / "Record");
        fs::create_directories(base_ / "elsewhere");
        write(pc_ / "Record/a.avi", "one");
        write(pc_ / "b.avi", "two");
        write(base_ / "elsewhere/c.avi", "three");
        fs::create_symlink(base_ / "elsewhere/c.avi", pc_ / "linked.avi");
        fs::create_directory_symlink(base_ / "elsewhere", pc_ / "folder");
        before_ = treeOf(base_ / "pc");
        elsewhere_ = treeOf(base_ / "elsewhere");
    }
    void TearDown() override {
        EXPECT_EQ(treeOf(pc_), before_);
        EXPECT_EQ(treeOf(base_ / "elsewhere"), elsewhere_);
        fs::remove_all(base_);
    }
    static void write(const fs::path& file, const std::string& text) {
        std::ofstream(file) << text;
    }

    fs::path base_;
    fs::path pc_;
    Unit unit_;
    Tree before_;
    Tree elsewhere_;
    const Slot& slot_ = kSlots[0];
};

TEST_F(Cards, ShowAFolderOfThePcAsItIs) {
    fillSlot(unit_, slot_, pc_);
    // What a link of the user's points at is copied too.
    Tree expected = before_;
    expected["folder/c.avi"] = "three";
    EXPECT_EQ(treeOf(unit_.device / slot_.name), expected);
    EXPECT_EQ(shownFolder(unit_, slot_), pc_);
    for (const auto& entry : fs::recursive_directory_iterator(unit_.device / slot_.name)) {
        EXPECT_FALSE(entry.is_symlink()) << entry.path();
    }
}

TEST_F(Cards, GiveUpEverythingAndThePcNothing) {
    fillSlot(unit_, slot_, pc_);
    fs::remove_all(unit_.device / slot_.name / "Record");
    fs::remove(unit_.device / slot_.name / "linked.avi");
    fs::remove_all(unit_.device / slot_.name / "folder");
    pullCard(unit_, slot_);
    EXPECT_FALSE(hasCard(unit_, slot_));
    EXPECT_FALSE(fs::exists(unit_.run() / "pulled"));
}

TEST_F(Cards, KeepWhatWasRecordedOntoAFolderOfThePc) {
    fillSlot(unit_, slot_, pc_);
    write(unit_.device / slot_.name / "Record/new.avi", "new");
    pullCard(unit_, slot_);
    EXPECT_TRUE(fs::exists(unit_.run() / "pulled/SDMMCDisk-of-pc/Record/new.avi"));
}

TEST_F(Cards, OfTheSlotsOwnComeBackAsTheyWere) {
    fs::create_directories(unit_.device / slot_.name);
    write(unit_.device / slot_.name / "mine.avi", "mine");
    pullCard(unit_, slot_);
    fillSlot(unit_, slot_, pc_);
    pullCard(unit_, slot_);
    fillSlot(unit_, slot_, {});
    EXPECT_TRUE(fs::exists(unit_.device / slot_.name / "mine.avi"));
    EXPECT_EQ(shownFolder(unit_, slot_), "");
}

TEST_F(Cards, SayWhyAFolderCannotBePutIn) {
    try {
        putFromPc(base_ / "nothing", unit_.device / "x");
        FAIL() << "it was put there";
    } catch (const Failure& failure) {
        EXPECT_NE(std::string(failure.what()).find("cannot be put on the card"), std::string::npos)
            << failure.what();
    }
}

TEST_F(Cards, PicturesAreReadAsTheyWereWritten) {
    const Picture picture = {2, 2, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}};
    ASSERT_TRUE(writePicture(picture, {0, 0, 2, 2}, base_ / "p.png"));
    Picture read;
    ASSERT_TRUE(readPicture(base_ / "p.png", read));
    EXPECT_EQ(read.bytes, picture.bytes);
    EXPECT_EQ(read.at(1, 1), 0x0A0B0CU);
    EXPECT_FALSE(readPicture(pc_ / "b.avi", read));
    EXPECT_FALSE(writePicture(picture, {0, 0, 2, 2}, base_ / "nowhere/p.png"));
}

}  // namespace
}  // namespace headunit
