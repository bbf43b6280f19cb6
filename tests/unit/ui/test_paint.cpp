// The order in which each screen is drawn.
#include <gtest/gtest.h>

#include <algorithm>

#include "catalogue/folder_listing.h"
#include "platform/text.h"
#include "recorders.h"
#include "ui/paint.h"
#include "ui/title_text.h"

namespace {

using ui_test::Lines;
using ui_test::RecordingCanvas;

constexpr ui::Rect kWhole = {0, 0, 800, 480};

ui::PlayerView playing() {
    ui::PlayerView view;
    view.playing = true;
    view.videoArea = true;
    view.volume = 5;
    view.displayedPosition = 30;
    view.duration = 60;
    view.hour = 13;
    view.minute = 5;
    view.fileName = u"출발.avi";
    return view;
}

Lines fullWidth(const ui::PlayerView& view, const ui::Rect& damaged = kWhole) {
    RecordingCanvas canvas;
    ui::paintFullWidth(canvas, view, damaged);
    return canvas.lines;
}

Lines halfWidth(const ui::PlayerView& view, const ui::Rect& damaged = {0, 0, 400, 480}) {
    RecordingCanvas canvas;
    ui::paintHalfWidth(canvas, view, damaged);
    return canvas.lines;
}

Lines slide(const ui::PlayerView& view, const ui::Rect& damaged = kWhole) {
    RecordingCanvas canvas;
    ui::paintSlide(canvas, view, damaged);
    return canvas.lines;
}

bool holds(const Lines& lines, const std::string& line) {
    return std::ranges::find(lines, line) != lines.end();
}

TEST(PaintFullWidth, WhilePlaying) {
    EXPECT_EQ(fullWidth(playing()), (Lines{"fill F800F8 0,0,800,480",
                                           "draw A2 0,329",
                                           "draw A3 0,0",
                                           "draw A4 600,10",
                                           "draw A44 0,329",
                                           "draw A46 0,377",
                                           "draw A42 0,425",
                                           "keyed A7 0,140",
                                           "keyed A8 660,140",
                                           "draw A40 632,425",
                                           "text 25 E6F0F4 12,338,627,368 32772 출발.avi",
                                           "text 24 E6F0F4 632,377,792,401 5 00:00:30",
                                           "text 24 CBC3B9 632,401,792,425 5 00:01:00",
                                           "into A5 202,397,414,403",
                                           "draw A25 409,391",
                                           "into A6 360,447,454,457",
                                           "draw A24 444,437",
                                           "into A29 607,16,628,29",
                                           "into A30 630,16,649,41",
                                           "into A31 650,16,669,41",
                                           "into A30 677,16,696,41",
                                           "into A35 697,16,716,41"}));
}

TEST(PaintFullWidth, WithoutAPictureTheBackgroundComesFromTheCache) {
    ui::PlayerView view = playing();
    view.videoArea = false;
    const Lines lines = fullWidth(view, {10, 20, 30, 40});
    EXPECT_EQ(lines[0], "region A50 10,20,30,40");
    EXPECT_EQ(lines[1], "draw A2 0,329");
}

TEST(PaintFullWidth, FillsNoMoreThanIsDamaged) {
    EXPECT_EQ(fullWidth(playing(), {10, 20, 30, 40})[0], "fill F800F8 10,20,30,40");
}

TEST(PaintFullWidth, TheCoverLiesUnderTheBars) {
    ui::PlayerView view = playing();
    view.drivingBlock = true;
    const Lines lines = fullWidth(view);
    EXPECT_EQ(lines[1], "draw A0 0,0");
    EXPECT_EQ(lines[2], "draw A2 0,329");
}

// The sentence stands on every screen's cover, and only while something can be heard.
TEST(PaintBlock, TellsOfASoundThatCanBeHeard) {
    ui::PlayerView view = playing();
    view.drivingBlock = true;
    const std::string sentence = "text 24 CBC3B9 200,230,600,260 5 소리는 계속 재생됩니다";
    const std::string half = "text 24 CBC3B9 0,252,400,282 5 소리는 계속 재생됩니다";
    EXPECT_FALSE(holds(fullWidth(view), sentence));
    EXPECT_FALSE(holds(slide(view), sentence));
    EXPECT_FALSE(holds(halfWidth(view), half));
    view.audible = true;
    EXPECT_EQ(fullWidth(view)[2], sentence);
    EXPECT_EQ(slide(view)[2], sentence);
    EXPECT_EQ(halfWidth(view)[3], half);
    view.drivingBlock = false;
    EXPECT_FALSE(holds(fullWidth(view), sentence));
}

TEST(PaintFullWidth, AMutedVolumeBarIsHollow) {
    ui::PlayerView view = playing();
    EXPECT_FALSE(holds(fullWidth(view), "fill 7286FF 360,447,454,457"));
    view.muted = true;
    const Lines lines = fullWidth(view);
    const auto at = std::ranges::find(lines, "into A6 360,447,454,457");
    ASSERT_NE(at, lines.end());
    EXPECT_EQ(at[1], "fill 7286FF 360,447,454,457");
    EXPECT_EQ(at[2], "fill 201A14 362,449,454,455");
    EXPECT_EQ(at[3], "draw A24 444,437");
}

TEST(PaintFullWidth, AHiddenBarLeavesThePictureAlone) {
    ui::PlayerView view = playing();
    view.barShown = false;
    EXPECT_EQ(fullWidth(view), (Lines{"fill F800F8 0,0,800,480"}));
    view.drivingBlock = true;
    EXPECT_EQ(fullWidth(view), (Lines{"fill F800F8 0,0,800,480", "draw A0 0,0"}));
}

TEST(PaintFullWidth, ThePlayFaceTellsWhatATouchDoes) {
    ui::PlayerView view = playing();
    view.paused = true;
    EXPECT_FALSE(holds(fullWidth(view), "draw A40 632,425"));
    view.paused = view.playing = false;
    const Lines stopped = fullWidth(view);
    EXPECT_FALSE(holds(stopped, "draw A40 632,425"));
    EXPECT_TRUE(holds(stopped, "draw A25 202,391"));
    EXPECT_TRUE(holds(stopped, "into A5 202,397,207,403"));
}

TEST(PaintFullWidth, PressedFaces) {
    struct Case {
        std::int32_t key;
        bool playing, paused, muted;
        std::int32_t camera;
        const char* face;  // null: none
    };
    constexpr Case kCases[] = {
        {1, true, false, false, -1, "draw A14 0,377"},
        {2, true, false, false, -1, "draw A15 737,0"},
        {3, true, false, false, -1, "keyed A16 0,140"},
        {4, true, false, false, -1, "draw A41 632,425"},
        {4, true, true, false, -1, "draw A17 632,425"},
        {4, false, false, false, -1, "draw A17 632,425"},
        {5, true, false, false, -1, "draw A18 712,425"},
        {6, true, false, false, -1, "keyed A19 660,140"},
        {7, true, false, false, -1, "draw A20 0,425"},
        {8, true, false, false, -1, "draw A21 280,425"},
        {9, true, false, false, -1, "draw A22 200,425"},
        {9, true, false, true, -1, "draw A49 200,425"},
        {10, true, false, false, -1, "draw A23 552,425"},
        {11, true, false, false, -1, nullptr},
        {12, true, false, false, -1, nullptr},
        {13, true, false, false, 0, "into A10 632,329,800,377"},
        {13, true, false, false, 1, "into A12 632,329,800,377"},
        {13, true, false, false, -1, nullptr},
        {14, true, false, false, -1, nullptr},
    };
    for (const Case& c : kCases) {
        ui::PlayerView view = playing();
        view.connectMode = true;
        view.playing = c.playing;
        view.paused = c.paused;
        view.muted = c.muted;
        view.camera = c.camera;
        const Lines atRest = fullWidth(view);
        view.pressedKey = c.key;
        const Lines held = fullWidth(view);
        EXPECT_EQ(held.size(), atRest.size() + (c.face != nullptr ? 1 : 0)) << c.key;
        if (c.face != nullptr) {
            EXPECT_TRUE(holds(held, c.face)) << c.key;
        }
    }
}

TEST(PaintFullWidth, TheCameraKeyShowsInConnectModeAlone) {
    ui::PlayerView view = playing();
    view.camera = 1;
    EXPECT_FALSE(holds(fullWidth(view), "into A11 632,329,800,377"));
    view.connectMode = true;
    EXPECT_TRUE(holds(fullWidth(view), "into A11 632,329,800,377"));
    view.camera = 0;
    EXPECT_TRUE(holds(fullWidth(view), "into A9 632,329,800,377"));
}

TEST(PaintFullWidth, ClockAndBarsAreDrawnWhereTheyAreDamaged) {
    const auto clock = [](const Lines& lines) { return holds(lines, "into A30 630,16,649,41"); };
    const auto progress = [](const Lines& lines) { return holds(lines, "draw A25 409,391"); };
    const auto volume = [](const Lines& lines) { return holds(lines, "draw A24 444,437"); };
    struct Case {
        ui::Rect damaged;
        bool clock, progress, volume;
    };
    constexpr Case kCases[] = {
        {{627, 16, 742, 51}, true, false, false},    {{600, 10, 610, 20}, true, false, false},
        {{742, 0, 800, 45}, false, false, false},    {{626, 427, 627, 428}, false, true, false},
        {{627, 330, 700, 428}, false, false, false}, {{548, 466, 549, 467}, false, false, true},
        {{0, 467, 800, 480}, false, false, false}};
    for (const Case& c : kCases) {
        const Lines lines = fullWidth(playing(), c.damaged);
        EXPECT_EQ(clock(lines), c.clock) << c.damaged.left;
        EXPECT_EQ(progress(lines), c.progress) << c.damaged.left;
        EXPECT_EQ(volume(lines), c.volume) << c.damaged.left;
    }
}

TEST(PaintFullWidth, TheMorningHasAMarkOfItsOwn) {
    ui::PlayerView view = playing();
    view.hour = 9;
    EXPECT_TRUE(holds(fullWidth(view), "into A28 607,16,628,29"));
}

TEST(PaintHalfWidth, TheNameIsDrawnWhereItIsDamaged) {
    const std::string name = "text 24 E6F0F4 12,13,300,43 32772 출발.avi";
    EXPECT_TRUE(holds(halfWidth(playing(), {299, 42, 300, 43}), name));
    EXPECT_FALSE(holds(halfWidth(playing(), {300, 42, 400, 44}), name));
}

TEST(PaintFullWidth, AMissingBackgroundIsBlack) {
    RecordingCanvas canvas;
    canvas.missing = {"A50"};
    ui::PlayerView view = playing();
    view.videoArea = false;
    ui::paintFullWidth(canvas, view, kWhole);
    EXPECT_EQ(canvas.lines[0], "fill 000000 0,0,800,480");
    EXPECT_EQ(canvas.lines[1], "region A50 0,0,800,480");
}

TEST(PaintHalfWidth, WhilePlayingMuted) {
    ui::PlayerView view = playing();
    view.muted = true;
    EXPECT_EQ(halfWidth(view),
              (Lines{"region B1 0,0,400,480", "fill F800F8 0,60,400,320", "draw B17 81,420",
                     "draw B19 2,360", "text 24 E6F0F4 12,13,300,43 32772 출발.avi",
                     "text 24 E6F0F4 251,320,399,340 5 00:00:30",
                     "text 24 CBC3B9 251,340,399,360 5 00:01:00", "into B2 8,337,127,343",
                     "draw B15 122,331", "into B3 170,382,239,392", "fill 7286FF 170,382,239,392",
                     "fill 201A14 172,384,239,390", "draw B14 229,372"}));
}

TEST(PaintHalfWidth, PressedFaces) {
    struct Case {
        std::int32_t key;
        bool paused, muted;
        const char* face;
    };
    constexpr Case kCases[] = {
        {1, false, false, "draw B5 301,0"},    {2, false, false, "draw B6 2,420"},
        {3, false, false, "draw B18 81,420"},  {3, true, false, "draw B7 81,420"},
        {4, false, false, "draw B8 160,420"},  {5, false, false, "draw B9 318,420"},
        {6, false, false, "draw B10 239,420"}, {7, false, false, "draw B11 81,360"},
        {8, false, false, "draw B12 2,360"},   {8, false, true, "draw B20 2,360"},
        {9, false, false, "draw B13 318,360"}};
    for (const Case& c : kCases) {
        ui::PlayerView view = playing();
        view.paused = c.paused;
        view.muted = c.muted;
        view.pressedKey = c.key;
        EXPECT_TRUE(holds(halfWidth(view), c.face)) << c.key;
    }
}

TEST(PaintHalfWidth, TheCoverReplacesBackgroundAndPicture) {
    ui::PlayerView view = playing();
    view.drivingBlock = true;
    const Lines lines = halfWidth(view);
    EXPECT_EQ(lines[2], "draw B0 0,0");
    EXPECT_EQ(lines[3], "draw B17 81,420");
    view.videoArea = false;
    EXPECT_EQ(halfWidth(view)[1], "draw B0 0,0");
}

TEST(PaintHalfWidth, AboveThePictureOnlyTheNameIsDrawn) {
    const Lines lines = halfWidth(playing(), {0, 0, 300, 50});
    EXPECT_EQ(lines.size(), 3u) << testing::PrintToString(lines);
}

TEST(PaintSlide, TheBannerTellsTheVolume) {
    ui::PlayerView view = playing();
    EXPECT_EQ(slide(view), (Lines{"fill F800F8 0,0,800,480"}));
    view.bannerShown = true;
    EXPECT_EQ(slide(view), (Lines{"fill F800F8 0,0,800,480", "draw D1 180,0", "draw D9 264,11"}));
    view.volume = 10;
    EXPECT_EQ(slide(view)[2], "draw D14 264,11");
    view.volume = 0;
    EXPECT_EQ(slide(view)[2], "draw D4 264,11");
    view.muted = true;
    EXPECT_EQ(slide(view), (Lines{"fill F800F8 0,0,800,480", "draw D2 180,0"}));
    EXPECT_EQ(slide(view, {0, 64, 800, 480}).size(), 1u);
}

TEST(PaintSlide, WithoutAPictureAndBlocked) {
    ui::PlayerView view = playing();
    view.videoArea = false;
    view.drivingBlock = true;
    EXPECT_EQ(slide(view), (Lines{"region D3 0,0,800,480", "draw D0 0,0"}));
}

void setName(ui::ListRow& row, const char16_t* name) {
    catalogue::copyPath(row.name, name);
}

ui::ListRows threeRows() {
    ui::ListRows table;
    table.rows[0].kind = ui::RowKind::Folder;
    table.rows[0].slot = ui::kListFolder;
    setName(table.rows[0], u"이벤트");
    table.rows[1].kind = ui::RowKind::File;
    table.rows[1].slot = ui::kListFile;
    setName(table.rows[1], u"a.avi");
    table.rows[2] = table.rows[1];
    setName(table.rows[2], u"b.avi");
    table.rows[2].playing = true;
    return table;
}

Lines fileList(const ui::ListRows& table, std::int32_t pressedKey, const ui::Rect& damaged,
               bool goingUp = false) {
    RecordingCanvas canvas;
    ui::paintFileList(canvas, {&table, u"\\SDMMCDisk", 1, 3, pressedKey, goingUp, true}, damaged);
    return canvas.lines;
}

TEST(PaintFileList, TitleRowsThumb) {
    EXPECT_EQ(
        fileList(threeRows(), -1, kWhole),
        (Lines{"region C0 0,0,800,480", "region C0 200,34,490,64",
               "text 25 FFFFFF 200,34,490,64 8 \\SDMMCDisk", "keyed C24 30,66",
               "text 24 000000 120,66,600,116 32772 이벤트", "keyed C23 30,116", "keyed C2 590,116",
               "text 24 000000 120,116,600,166 32772 a.avi", "keyed C23 30,166", "keyed C2 590,166",
               "text 24 000000 120,166,600,216 32772 b.avi", "keyed C1 30,166",
               "keyed C7 650,253"}));
}

TEST(PaintFileList, AMissingBackgroundIsGreyAndTheTitleFitsItsArea) {
    RecordingCanvas canvas;
    canvas.missing = {"C0"};
    const ui::ListRows table;
    // 300 pixels wide, where 290 are free.
    ui::paintFileList(canvas, {&table, u"\\SDMMCDisk\\0123456789012345678", 1, 3, -1, false, true},
                      kWhole);
    EXPECT_EQ(canvas.lines[0], "fill 808080 0,0,800,480");
    EXPECT_TRUE(holds(canvas.lines, "text 25 FFFFFF 200,34,490,64 8 \\...\\0123456789012345678"));
}

TEST(PaintFileList, AHeldRowIsDrawnAgainOnItsOwnBackground) {
    const Lines lines = fileList(threeRows(), 15, {30, 166, 650, 216});
    EXPECT_EQ(lines, (Lines{"region C0 30,166,650,216", "keyed C23 30,166", "keyed C2 590,166",
                            "text 24 000000 120,166,600,216 32772 b.avi", "keyed C1 30,166",
                            "draw C16 30,166", "keyed into C23 30,166,108,216", "keyed C2 590,166",
                            "text 24 000000 120,166,600,216 32772 b.avi", "keyed C1 30,166"}));
}

TEST(PaintFileList, PressedFaces) {
    struct Case {
        std::int32_t key;
        const char* last;  // of what is drawn; null: as at rest
    };
    constexpr Case kCases[] = {{1, "draw C4 701,0"}, {2, "draw C5 650,66"}, {3, "draw C6 650,366"},
                               {4, nullptr},         {5, nullptr},          {6, "keyed C8 590,116"},
                               {16, nullptr},        {29, nullptr}};
    const ui::Rect leftOfThumb = {0, 0, 650, 480};
    const Lines atRest = fileList(threeRows(), -1, leftOfThumb);
    for (const Case& c : kCases) {
        const Lines lines = fileList(threeRows(), c.key, leftOfThumb);
        EXPECT_EQ(lines.back(), c.last != nullptr ? c.last : atRest.back()) << c.key;
        EXPECT_EQ(lines.size(), atRest.size() + (c.last != nullptr ? 1 : 0)) << c.key;
    }
    EXPECT_EQ(fileList(threeRows(), 13, leftOfThumb, true).back(), "draw C3 602,0");
}

// The first page has none before it, the last none behind it, the root no folder above it.
TEST(PaintFileList, WhatLeadsNowhereIsCovered) {
    const std::string up = "fill 201A14 654,69,766,163", down = "fill 201A14 654,369,766,463";
    const std::string parent = "fill 201A14 603,2,700,44";
    struct Case {
        std::int32_t page, pages;
        bool hasParent, up, down;
    };
    constexpr Case kCases[] = {{0, 0, true, true, true},   {0, 1, true, true, true},
                               {0, 2, true, true, false},  {1, 2, true, false, true},
                               {1, 3, true, false, false}, {2, 3, false, false, true}};
    const ui::ListRows table = threeRows();
    for (const Case& c : kCases) {
        RecordingCanvas canvas;
        ui::paintFileList(canvas, {&table, u"", c.page, c.pages, -1, false, c.hasParent}, kWhole);
        EXPECT_EQ(holds(canvas.lines, up), c.up) << c.page << " of " << c.pages;
        EXPECT_EQ(holds(canvas.lines, down), c.down) << c.page << " of " << c.pages;
        EXPECT_EQ(holds(canvas.lines, parent), !c.hasParent) << c.page << " of " << c.pages;
    }
    RecordingCanvas rows;
    ui::paintFileList(rows, {&table, u"", 0, 1, -1, false, false}, {30, 66, 603, 480});
    EXPECT_FALSE(holds(rows.lines, up));
    EXPECT_FALSE(holds(rows.lines, parent));
}

TEST(PaintFileList, OnlyDamagedRowsAreDrawn) {
    EXPECT_EQ(fileList(threeRows(), -1, {0, 116, 650, 117}).size(), 4u);
    EXPECT_EQ(fileList(threeRows(), -1, {650, 300, 770, 301}),
              (Lines{"region C0 650,300,770,301", "keyed C7 650,253"}));
}

std::string title(const char16_t* path, std::int32_t width) {
    RecordingCanvas canvas;
    ui::TitleText text;
    ui::fitTitle(canvas, ui::Font::Height25, path, width, text);
    return platform::toUtf8(text);
}

TEST(Title, IsShortenedFromTheFront) {
    struct Case {
        const char16_t* path;
        std::int32_t width;
        const char* text;
    };
    constexpr Case kCases[] = {
        {u"ROOT", 290, "ROOT"},
        {u"\\SDMMCDisk", 290, "\\SDMMCDisk"},
        {u"\\SDMMCDisk\\Record\\2026", 220, "\\SDMMCDisk\\Record\\2026"},
        {u"\\SDMMCDisk\\Record\\2026", 219, "\\...\\Record\\2026"},
        {u"\\SDMMCDisk\\Record\\2026", 159, "\\...\\2026"},
        {u"\\SDMMCDisk\\Record\\2026", 89, "\\...\\"},
        {u"\\SDMMCDisk\\Record\\2026", 10, "\\...\\"},
        {u"", 10, ""},
    };
    for (const Case& c : kCases) {
        EXPECT_EQ(title(c.path, c.width), c.text) << c.width;
    }
    const std::u16string longest(259, u'x');
    EXPECT_EQ(title(longest.c_str(), 100), "\\...\\");
    EXPECT_EQ(title(longest.c_str(), 2590).size(), 259u);
    const std::u16string longer(264, u'x');
    EXPECT_EQ(title(longer.c_str(), 5000).size(), 259u);
}

}  // namespace
