#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <fstream>

#include "simulator/command/movie_dat.h"
#include "simulator/shared/tape_reader.h"

namespace headunit {
namespace {

class Tape : public testing::Test {
protected:
    void SetUp() override {
        unit_.device = fs::temp_directory_path() / ("headunit-test-" + std::to_string(getpid()));
        fs::create_directories(unit_.run());
        fs::create_directories(unit_.device / "ResidentFlash2/Data");
    }
    void TearDown() override { fs::remove_all(unit_.device); }

    void append(const std::string& text) const {
        std::ofstream(unit_.tape(), std::ios::app) << text;
    }

    Unit unit_;
};

TEST_F(Tape, GivesWholeLinesOnly) {
    TapeReader reader(unit_.tape());
    EXPECT_FALSE(reader.next());
    append("{\"ms\": 1, \"kind\": \"sound\"}\n{\"ms\": 2, ");
    ASSERT_TRUE(reader.next());
    EXPECT_FALSE(reader.next());
    append("\"kind\": \"box\"}\n");
    const auto line = reader.next();
    ASSERT_TRUE(line);
    EXPECT_EQ(textOf(line->value, "kind"), "box");
    EXPECT_EQ(reader.at(), tapeEnd(unit_.tape()));
}

TEST_F(Tape, ReadsMovieDatOfTheRightSizeOnly) {
    EXPECT_FALSE(readMovieDat(unit_));
    settings::PersistedState state;
    state.playState = settings::kPaused;
    state.position = 12.5;
    const char16_t path[] = u"\\SDMMCDisk\\강릉 \"1\".avi";
    std::memcpy(state.file, path, sizeof(path));
    ASSERT_TRUE(writeMovieDat(unit_, state));
    const auto read = readMovieDat(unit_);
    ASSERT_TRUE(read);
    const Json value = movieDatJson(*read);
    EXPECT_EQ(numberOf(value, "playState", 0), 2);
    EXPECT_EQ(value["position"].get<double>(), 12.5);
    EXPECT_EQ(textOf(value, "file"), "\\SDMMCDisk\\강릉 \"1\".avi");
    fs::resize_file(unit_.device / "ResidentFlash2/Data/Movie.dat", 1071);
    EXPECT_FALSE(readMovieDat(unit_));
}

TEST_F(Tape, TranslatesPathsBothWays) {
    EXPECT_EQ(unitPath(unit_, unit_.device / "USB/a b.avi"), "\\USB\\a b.avi");
    EXPECT_EQ(unitPath(unit_, "/elsewhere/a.avi"), "");
    EXPECT_EQ(hostPath(unit_, "\\USB\\a b.avi"), unit_.device / "USB/a b.avi");
    EXPECT_EQ(hostPath(unit_, "USB/a b.avi"), unit_.device / "USB/a b.avi");
}

}  // namespace
}  // namespace headunit
