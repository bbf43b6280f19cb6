// What a tick of the position timer redraws.
#include <gtest/gtest.h>

#include "recorders.h"
#include "ui/follow.h"

namespace {

using ui::ShownTime;
using ui_test::Lines;
using ui_test::RecordingHost;

Lines follow(const ui::PlayerLayout& layout, const ShownTime& from, const ShownTime& to,
             ui::Size knob = ui::kKnobSize) {
    RecordingHost host;
    ui::followTime(layout, knob, true, from, to, host);
    return host.lines;
}

TEST(Follow, DrawsAnewWhatChanges) {
    struct Case {
        const char* name;
        const ui::PlayerLayout* layout;
        ShownTime from, to;
        Lines lines;
    };
    const Case cases[] = {
        {"nothing", &ui::kFullLayout, {30, 60}, {30, 60}, {}},
        {"less than a pixel and a second", &ui::kFullLayout, {30, 6000}, {30.5, 6000}, {}},
        {"the knob", &ui::kFullLayout, {30, 60}, {30.3, 60}, {"invalidate 409,391,421,409"}},
        {"the second", &ui::kFullLayout, {30, 6000}, {31, 6000}, {"invalidate 632,377,792,401"}},
        {"both",
         &ui::kFullLayout,
         {29.9, 60},
         {30.2, 60},
         {"invalidate 408,391,420,409", "invalidate 632,377,792,401"}},
        {"back to the start",
         &ui::kHalfLayout,
         {30, 60},
         {0, 60},
         {"invalidate 8,331,132,349", "invalidate 251,320,399,340"}},
        {"a recording that grows",
         &ui::kFullLayout,
         {30, 60},
         {30, 62},
         {"invalidate 202,391,627,409", "update", "invalidate 632,401,792,425"}},
        {"a growing one that plays",
         &ui::kHalfLayout,
         {30, 60},
         {32, 64},
         {"invalidate 8,331,247,349", "update", "invalidate 251,320,399,340",
          "invalidate 251,340,399,360"}},
        {"a length that is known at last",
         &ui::kFullLayout,
         {0, 0},
         {0, 60},
         {"invalidate 202,391,627,409", "update", "invalidate 632,401,792,425"}},
        {"a length that grows by less than a second",
         &ui::kFullLayout,
         {30, 60.2},
         {30, 60.7},
         {"invalidate 202,391,627,409"}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(follow(*c.layout, c.from, c.to), c.lines) << c.name;
    }
}

TEST(Follow, ALargeKnobIsDrawnWhole) {
    EXPECT_EQ(follow(ui::kFullLayout, {30, 60}, {30.3, 60}, {24, 30}),
              (Lines{"invalidate 409,391,435,421"}));
}

TEST(Follow, WhatIsStoppedStandsAtTheLeft) {
    RecordingHost host;
    ui::followTime(ui::kFullLayout, ui::kKnobSize, false, {30, 60}, {31, 60}, host);
    EXPECT_EQ(host.lines, (Lines{"invalidate 632,377,792,401"}));
}

// Adds up the boxes around what is invalidated between two updates: the window paints no less.
struct PaintedArea : RecordingHost {
    std::int32_t pixels = 0;
    ui::Rect open{};

    void invalidate(const ui::Rect& area) override {
        open = ui::isEmpty(open) ? area : ui::bounds(open, area);
    }
    void update() override {
        pixels += (open.right - open.left) * (open.bottom - open.top);
        open = {};
    }
};

TEST(Follow, ATickPaintsUnderFivePercentOfTheScreen) {
    constexpr std::int32_t kTwentieth = 800 * 480 / 20;
    for (const ui::PlayerLayout* layout : {&ui::kFullLayout, &ui::kHalfLayout}) {
        // The longest way of the knob, with a length that stays and with one that has grown.
        for (const double grown : {1000.0, 1001.0}) {
            PaintedArea area;
            ui::followTime(*layout, ui::kKnobSize, true, {0, 1000}, {grown, grown}, area);
            area.update();
            EXPECT_LT(area.pixels, kTwentieth) << grown;
            EXPECT_GT(area.pixels, kTwentieth / 4) << grown;
        }
    }
}

}  // namespace
