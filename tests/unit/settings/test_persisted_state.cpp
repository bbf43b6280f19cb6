#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "settings/hand_over.h"
#include "settings/persisted_state.h"
#include "tests/unit/support/unit_folder.h"

namespace {

using settings::PersistedState;

constexpr char kFile[] = "ResidentFlash2/Data/Movie.dat";

class MovieDat : public test::UnitFolder {
protected:
    void SetUp() override {
        UnitFolder::SetUp();
        makeFolder("ResidentFlash2");
    }

    static PersistedState sample() {
        PersistedState state;
        state.playState = settings::kPaused;
        state.volume = 7;
        state.fileIndex = 3;
        state.reserved = 0x11223344;
        state.position = 12.5;
        state.endTime = 60;
        std::copy_n(u"\\USB\\여행", 8, state.folder);
        std::copy_n(u"\\USB\\여행\\a.avi", 14, state.file);
        return state;
    }

    static std::string bytes(const PersistedState& state) {
        return {reinterpret_cast<const char*>(&state), sizeof state};
    }
};

TEST_F(MovieDat, IsTheRecordAsItLies) {
    settings::writePersistedState(sample());
    const std::string file = contents(kFile);
    ASSERT_EQ(file.size(), 1072u);
    const auto at = [&file](std::size_t offset, std::string_view expected) {
        return file.substr(offset, expected.size()) == expected;
    };
    using namespace std::string_view_literals;
    EXPECT_TRUE(at(0, "\x02\0\0\0"sv));
    EXPECT_TRUE(at(4, "\x07\0\0\0"sv));
    EXPECT_TRUE(at(8, "\x03\0\0\0"sv));
    EXPECT_TRUE(at(12, "\x44\x33\x22\x11"sv));
    EXPECT_TRUE(at(16, "\0\0\0\0\0\0\x29\x40"sv));  // 12.5
    EXPECT_TRUE(at(24, "\0\0\0\0\0\0\x4E\x40"sv));  // 60
    EXPECT_TRUE(at(32, "\\\0U\0S\0B\0\\\0\xEC\xC5"sv));
    EXPECT_TRUE(at(552, "\\\0U\0S\0B\0"sv));
}

TEST_F(MovieDat, ReadsBackWhatWasWritten) {
    settings::writePersistedState(sample());
    PersistedState state;
    EXPECT_EQ(settings::readPersistedState(state), 1);
    EXPECT_EQ(bytes(state), bytes(sample()));
}

TEST_F(MovieDat, OneByteShortIsIgnoredInFull) {
    put(kFile, bytes(sample()).substr(0, 1071));
    PersistedState state = sample();
    EXPECT_EQ(settings::readPersistedState(state), 0);
    EXPECT_EQ(bytes(state), bytes(PersistedState{}));
}

TEST_F(MovieDat, LongerIsReadForItsFirstBytes) {
    put(kFile, bytes(sample()) + "more");
    PersistedState state;
    EXPECT_EQ(settings::readPersistedState(state), 1);
    EXPECT_EQ(bytes(state), bytes(sample()));
}

TEST_F(MovieDat, MissingGivesDefaultsAndMakesItsFolder) {
    PersistedState state = sample();
    EXPECT_EQ(settings::readPersistedState(state), 0);
    EXPECT_EQ(bytes(state), bytes(PersistedState{}));
    EXPECT_TRUE(exists("ResidentFlash2/Data"));
}

TEST(MovieDatDefaults, NumbersAreThoseOfTheFile) {
    EXPECT_EQ(settings::kStopped, 0);
    EXPECT_EQ(settings::kPlaying, 1);
    EXPECT_EQ(settings::kPaused, 2);
    EXPECT_EQ(settings::kDefaultVolume, 5);
    EXPECT_EQ(settings::kLoudestVolume, 10);
}

TEST(MovieDatDefaults, AreThoseOfAFirstStart) {
    const PersistedState state;
    EXPECT_EQ(state.playState, 0);
    EXPECT_EQ(state.volume, 5);
    EXPECT_EQ(state.fileIndex, 0);
    EXPECT_EQ(state.reserved, 0);
    EXPECT_EQ(state.position, 0.0);
    EXPECT_EQ(state.endTime, 0.0);
    const std::u16string_view folder(state.folder, 260), file(state.file, 260);
    EXPECT_EQ(folder, std::u16string(260, u'\0'));
    EXPECT_EQ(file, std::u16string(260, u'\0'));
}

TEST_F(MovieDat, WriteErrorsAreIgnored) {
    std::filesystem::remove_all(root_ / "ResidentFlash2");
    settings::writePersistedState(sample());  // only the last folder would be made
    EXPECT_FALSE(exists(kFile));
}

TEST(MovieDatRepair, PutsWhatIsOutOfRangeToItsDefault) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        const char* name;
        std::int32_t playState, volume, fileIndex;
        double position, endTime;
        std::int32_t playStateAfter, volumeAfter, fileIndexAfter;
        double positionAfter, endTimeAfter;
    };
    const Case cases[] = {
        {"in range", 1, 0, 4, 5, 60, 1, 0, 4, 5, 60},
        {"edges", 2, 10, 0, 60, 60, 2, 10, 0, 60, 60},
        {"above", 3, 11, 4, 61, 60, 0, 5, 4, 0, 60},
        {"below", -1, -1, -1, 0, -1, 0, 5, 0, 0, 0},
        {"half a second", 1, 5, 0, 0.5, 0.75, 1, 5, 0, 0.5, 0.75},
        {"just before the beginning", 1, 5, 0, -0.25, 60, 1, 5, 0, 0, 60},
        {"just behind the end", 1, 5, 0, 60.25, 60, 1, 5, 0, 0, 60},
        {"just below no time", 1, 5, 0, 0, -0.25, 1, 5, 0, 0, 0},
        {"position behind a repaired end", 1, 5, 0, 5, -1, 1, 5, 0, 0, 0},
        {"120 s of 60 s", 1, 5, 0, 120, 60, 1, 5, 0, 0, 60},
        {"no numbers", 1, 5, 0, kNan, kNan, 1, 5, 0, 0, 0},
        {"infinite position", 1, 5, 0, HUGE_VAL, 60, 1, 5, 0, 0, 60},
        {"position before the beginning", 1, 5, 0, -5, 60, 1, 5, 0, 0, 60},
        {"position infinitely before it", 1, 5, 0, -HUGE_VAL, 60, 1, 5, 0, 0, 60},
    };
    for (const Case& c : cases) {
        PersistedState state;
        state.playState = c.playState;
        state.volume = c.volume;
        state.fileIndex = c.fileIndex;
        state.reserved = 99;
        state.position = c.position;
        state.endTime = c.endTime;
        settings::repair(state);
        EXPECT_EQ(state.playState, c.playStateAfter) << c.name;
        EXPECT_EQ(state.volume, c.volumeAfter) << c.name;
        EXPECT_EQ(state.fileIndex, c.fileIndexAfter) << c.name;
        EXPECT_EQ(state.reserved, 99) << c.name;
        EXPECT_EQ(state.position, c.positionAfter) << c.name;
        EXPECT_EQ(state.endTime, c.endTimeAfter) << c.name;
    }
}

TEST(MovieDatRepair, EndsBothPaths) {
    PersistedState state;
    std::fill(std::begin(state.folder), std::end(state.folder), u'x');
    std::fill(std::begin(state.file), std::end(state.file), u'x');
    settings::repair(state);
    EXPECT_EQ(state.folder[259], u'\0');
    EXPECT_EQ(state.file[259], u'\0');
    EXPECT_EQ(state.file[258], u'x');
}

class SetupFile : public test::UnitFolder {};

TEST_F(SetupFile, IsLookedForOnEveryUsbVolume) {
    EXPECT_EQ(settings::usbSetupFileExists(), 0);
    for (const char* volume : {"USB", "USB1", "USB5", "USB9"}) {
        const std::string path = std::string(volume) + "/SETUP.cfg";
        put(path, "");
        EXPECT_EQ(settings::usbSetupFileExists(), 1) << volume;
        std::filesystem::remove(root_ / path);
    }
    put("USB10/SETUP.cfg");
    put("USB0/SETUP.cfg");
    put("USB:/SETUP.cfg");  // the character behind "9"
    EXPECT_EQ(settings::usbSetupFileExists(), 0);
}

}  // namespace
