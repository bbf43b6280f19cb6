#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/text.h"
#include "ui/bars.h"
#include "ui/list_screen.h"
#include "ui/player_layout.h"
#include "ui/time_text.h"

namespace {

std::string formatted(std::int32_t seconds) {
    ui::TimeText text;
    ui::FormatSeconds(seconds, text);
    return platform::toUtf8(text.data());
}

TEST(FormatSeconds, WritesAtLeastTwoDigitsEach) {
    struct Case {
        std::int32_t seconds;
        const char* text;
    };
    constexpr Case kCases[] = {{0, "00:00:00"},
                               {59, "00:00:59"},
                               {60, "00:01:00"},
                               {3599, "00:59:59"},
                               {3600, "01:00:00"},
                               {3725, "01:02:05"},
                               {-1, "00:00:00"},
                               {359999, "99:59:59"},
                               {360000, "100:00:00"},
                               {2147483647, "596523:14:07"},
                               {std::numeric_limits<std::int32_t>::min(), "00:00:00"}};
    for (const Case& c : kCases) {
        EXPECT_EQ(formatted(c.seconds), c.text) << c.seconds;
    }
}

TEST(WholeSeconds, CutsAndBounds) {
    EXPECT_EQ(ui::wholeSeconds(59.999), 59);
    EXPECT_EQ(ui::wholeSeconds(-0.5), 0);
    EXPECT_EQ(ui::wholeSeconds(-1.5), -1);
    EXPECT_EQ(ui::wholeSeconds(1e300), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(ui::wholeSeconds(-1e300), -std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(ui::wholeSeconds(std::nan("")), 0);
}

TEST(Clock, CountsTwelveHoursWithMidnightAtZero) {
    struct Case {
        std::int32_t hour, minute;
        bool afternoon;
        std::array<std::int32_t, 4> digits;
    };
    constexpr Case kCases[] = {{0, 30, false, {0, 0, 3, 0}},  {9, 5, false, {0, 9, 0, 5}},
                               {10, 59, false, {1, 0, 5, 9}}, {11, 59, false, {1, 1, 5, 9}},
                               {12, 5, true, {1, 2, 0, 5}},   {13, 5, true, {0, 1, 0, 5}},
                               {23, 48, true, {1, 1, 4, 8}}};
    for (const Case& c : kCases) {
        const ui::ClockFace face = ui::clockFace(c.hour, c.minute);
        EXPECT_EQ(face.afternoon, c.afternoon) << c.hour;
        EXPECT_EQ(face.digits, c.digits) << c.hour;
    }
}

TEST(Progress, KnobStandsWhereThePositionIs) {
    struct Case {
        const ui::PlayerLayout* layout;
        double position, duration;
        bool playing;
        std::int32_t x;
    };
    const double notANumber = std::nan("");
    const Case cases[] = {
        {&ui::kFullLayout, 0, 60, true, 202},      {&ui::kFullLayout, 30, 60, true, 409},
        {&ui::kFullLayout, 60, 60, true, 617},     {&ui::kFullLayout, 99, 60, true, 617},
        {&ui::kFullLayout, -5, 60, true, 202},     {&ui::kFullLayout, 30, 0, true, 202},
        {&ui::kFullLayout, 30, 60, false, 202},    {&ui::kFullLayout, notANumber, 60, true, 202},
        {&ui::kFullLayout, 0.289, 120, true, 202}, {&ui::kFullLayout, 0.290, 120, true, 203},
        {&ui::kHalfLayout, 0, 60, true, 8},        {&ui::kHalfLayout, 30, 60, true, 122},
        {&ui::kHalfLayout, 60, 60, true, 237},     {&ui::kFullLayout, 1, 415, true, 203},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(ui::knobX(c.layout->progress, c.position, c.duration, c.playing), c.x)
            << c.position << " of " << c.duration;
    }
    EXPECT_EQ(ui::progressTravel(ui::kFullLayout.progress), 415);
    EXPECT_EQ(ui::progressTravel(ui::kHalfLayout.progress), 229);
}

TEST(Progress, TouchGivesWholePerMilles) {
    struct Case {
        std::int32_t x;
        double duration, position;
    };
    constexpr Case kCases[] = {
        {202, 1000, 0},    {203, 1000, 2},    {204, 1000, 4},    {409, 1000, 498}, {616, 1000, 997},
        {617, 1000, 1000}, {627, 1000, 1000}, {799, 1000, 1000}, {100, 1000, 0},   {-5000, 1000, 0},
        {409, 0, 0},       {627, 0.5, 0.5},   {409, 0.5, 0.249}};
    for (const Case& c : kCases) {
        EXPECT_DOUBLE_EQ(ui::positionFromTouch(ui::kFullLayout.progress, c.x, c.duration),
                         c.position)
            << c.x;
    }
    EXPECT_DOUBLE_EQ(ui::positionFromTouch(ui::kHalfLayout.progress, 122, 1000), 497);
    EXPECT_DOUBLE_EQ(ui::positionFromTouch(ui::kHalfLayout.progress, 247, 1000), 1000);
    // 1000 * 0.7 * 0.001 is a little more than 0.7.
    EXPECT_EQ(ui::positionFromTouch(ui::kFullLayout.progress, 627, 0.7), 0.7);
    const auto far = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(ui::positionFromTouch(ui::kFullLayout.progress, far, 60), 0);
}

TEST(Progress, TheTrackOfTheKnobCoversBothPlaces) {
    const ui::ProgressBar& full = ui::kFullLayout.progress;
    EXPECT_EQ(ui::knobTrack(full, 300, 250, ui::kKnobSize), (ui::Rect{250, 391, 310, 409}));
    EXPECT_EQ(ui::knobTrack(ui::kHalfLayout.progress, 8, 9, ui::kKnobSize),
              (ui::Rect{8, 331, 19, 349}));
    EXPECT_EQ(ui::knobTrack(full, 300, 250, {24, 30}), (ui::Rect{250, 391, 324, 421}));
    EXPECT_EQ(ui::knobTrack(full, 300, 250, {4, 30}), (ui::Rect{250, 391, 310, 421}));
    EXPECT_EQ(ui::knobTrack(full, 300, 250, {0, 0}), (ui::Rect{250, 391, 310, 409}));
}

TEST(Volume, TheIconStopsBeforeTheEndOfTheTouchArea) {
    constexpr std::int32_t kFull[] = {360, 376, 393, 410, 427, 444, 461, 478, 495, 512, 529};
    constexpr std::int32_t kHalf[] = {170, 181, 193, 205, 217, 229, 240, 252, 264, 276, 288};
    for (std::int32_t level = 0; level <= 10; ++level) {
        EXPECT_EQ(ui::volumeIconX(ui::kFullLayout.volume, level), kFull[level]) << level;
        EXPECT_EQ(ui::volumeIconX(ui::kHalfLayout.volume, level), kHalf[level]) << level;
    }
    EXPECT_EQ(ui::volumeIconX(ui::kFullLayout.volume, 11), 529);
    EXPECT_EQ(ui::volumeIconX(ui::kFullLayout.volume, -1), 360);
}

TEST(Volume, TheTouchMeasuresTheWholeBar) {
    struct Case {
        std::int32_t x, level;
    };
    constexpr Case kCases[] = {{360, 0}, {361, 0}, {378, 0}, {379, 1},  {397, 1},  {398, 2},
                               {454, 4}, {455, 5}, {548, 9}, {549, 10}, {700, 10}, {0, 0}};
    for (const Case& c : kCases) {
        EXPECT_EQ(ui::levelFromTouch(ui::kFullLayout.volume, c.x), c.level) << c.x;
    }
    EXPECT_EQ(ui::levelFromTouch(ui::kHalfLayout.volume, 170), 0);
    EXPECT_EQ(ui::levelFromTouch(ui::kHalfLayout.volume, 239), 5);
    EXPECT_EQ(ui::levelFromTouch(ui::kHalfLayout.volume, 307), 9);
    EXPECT_EQ(ui::levelFromTouch(ui::kHalfLayout.volume, 308), 10);
}

TEST(ScrollTrack, TheThumbTravelsBetweenItsEnds) {
    struct Case {
        std::int32_t page, pages, y;
    };
    constexpr Case kCases[] = {{0, 0, 179},       {0, 1, 179},      {0, 2, 179}, {1, 2, 353},
                               {0, 3, 179},       {1, 3, 266},      {2, 3, 353}, {1, 4, 236},
                               {1249, 1250, 353}, {624, 1250, 265}, {5, 3, 353}};
    for (const Case& c : kCases) {
        EXPECT_EQ(ui::thumbY(c.page, c.pages), c.y) << c.page << " of " << c.pages;
    }
}

TEST(ScrollTrack, TheFingerReachesTheLastPageBeforeTheEnd) {
    struct Case {
        std::int32_t y, pages, page;
    };
    constexpr Case kCases[] = {{300, 0, 0},
                               {300, 1, 0},
                               {276, 2, 0},
                               {277, 2, 1},
                               {366, 2, 1},
                               {-50, 2, 0},
                               {179, 3, 0},
                               {222, 3, 0},
                               {223, 3, 1},
                               {265, 3, 1},
                               {266, 3, 2},
                               {310, 3, 2},
                               {353, 3, 2},
                               {999, 3, 2},
                               {0, 3, 0},
                               {-999, 3, 0},
                               {353, 1250, 1249},
                               {352, 1250, 1243},
                               {353, 300000000, 299999999}};
    for (const Case& c : kCases) {
        EXPECT_EQ(ui::pageFromTouch(c.y, c.pages), c.page) << c.y << " of " << c.pages;
    }
}

TEST(Rectangles, MeetOnlyInside) {
    EXPECT_TRUE(ui::meets({0, 0, 10, 10}, {9, 9, 20, 20}));
    EXPECT_FALSE(ui::meets({0, 0, 10, 10}, {10, 0, 20, 10}));
    EXPECT_FALSE(ui::meets({0, 329, 0, 0}, {0, 0, 800, 480}));
    EXPECT_EQ(ui::intersection({0, 0, 10, 10}, {4, 5, 20, 8}), (ui::Rect{4, 5, 10, 8}));
    EXPECT_EQ(ui::intersection({0, 0, 10, 10}, {20, 30, 40, 50}), (ui::Rect{0, 0, 0, 0}));
}

}  // namespace
