// What a finger does.
#include <gtest/gtest.h>

#include <algorithm>

#include "recorders.h"
#include "ui/touch.h"

namespace {

using ui_test::Lines;
using ui_test::RecordingHost;

struct PlayerScreen {
    const ui::PlayerLayout& layout;
    ui::PlayerView view{};
    ui::ScreenState screens{};
    RecordingHost host{};

    explicit PlayerScreen(const ui::PlayerLayout& screenLayout) : layout(screenLayout) {
        view.playing = true;
        view.volume = 5;
        view.duration = 1000;
        screens.displayedPosition = 100;
    }
    Lines press(ui::Point point) {
        host.lines.clear();
        ui::pressPlayer(layout, view, screens, host, point);
        return host.lines;
    }
    Lines move(ui::Point point) {
        host.lines.clear();
        ui::movePlayer(layout, view, screens, host, point);
        return host.lines;
    }
    Lines release(ui::Point point) {
        host.lines.clear();
        ui::releasePlayer(layout, view, screens, host, point);
        return host.lines;
    }
    // What is carried out between press and release.
    Lines deeds(ui::Point from, ui::Point to) {
        Lines all = press(from);
        const Lines after = release(to);
        all.insert(all.end(), after.begin(), after.end());
        std::erase_if(all, [](const std::string& line) {
            return !line.starts_with("act") && line != "click" && !line.starts_with("level");
        });
        return all;
    }
};

TEST(TouchFullWidth, AKeyClicksAndActsWhenItIsReleased) {
    PlayerScreen screen(ui::kFullLayout);
    EXPECT_EQ(screen.press({750, 450}),
              (Lines{"stop bar", "invalidate 712,425,792,480", "capture", "update"}));
    EXPECT_EQ(screen.screens.touch.pressedKey, 5);
    EXPECT_EQ(screen.release({713, 479}),
              (Lines{"release", "click", "act Stop", "stop bar", "start bar",
                     "invalidate 712,425,792,480", "update"}));
    EXPECT_EQ(screen.screens.touch.pressedKey, -1);
}

TEST(TouchFullWidth, EachKeysAction) {
    struct Case {
        ui::Point point;
        const char* action;
    };
    constexpr Case kCases[] = {{{100, 400}, "act GoNavigation"}, {{770, 20}, "act Close"},
                               {{70, 200}, "act PreviousFile"},  {{670, 450}, "act PlayPause"},
                               {{750, 450}, "act Stop"},         {{730, 200}, "act NextFile"},
                               {{100, 450}, "act ShowList"},     {{320, 450}, "act VolumeDown"},
                               {{240, 450}, "act ToggleMute"},   {{590, 450}, "act VolumeUp"},
                               {{400, 200}, "act HideBar"}};
    for (const Case& c : kCases) {
        PlayerScreen screen(ui::kFullLayout);
        EXPECT_EQ(screen.deeds(c.point, c.point), (Lines{"click", c.action})) << c.action;
    }
}

TEST(TouchFullWidth, ReleasedElsewhereAKeyDoesNothing) {
    PlayerScreen screen(ui::kFullLayout);
    EXPECT_EQ(screen.deeds({730, 200}, {750, 450}), Lines{});
    EXPECT_EQ(screen.deeds({750, 450}, {712, 450}), Lines{});
    EXPECT_EQ(screen.deeds({750, 450}, {-100, 9000}), Lines{});
}

TEST(TouchFullWidth, TheBarStaysAwayAfterNavigation) {
    PlayerScreen screen(ui::kFullLayout);
    screen.press({100, 400});
    const Lines lines = screen.release({100, 400});
    EXPECT_TRUE(std::ranges::find(lines, "stop bar") != lines.end());
    EXPECT_TRUE(std::ranges::find(lines, "start bar") == lines.end());
}

TEST(TouchFullWidth, ConnectModeRefusesOtherPrograms) {
    PlayerScreen screen(ui::kFullLayout);
    screen.view.connectMode = true;
    EXPECT_EQ(screen.deeds({100, 400}, {100, 400}), (Lines{"click", "act Refuse"}));
    EXPECT_EQ(screen.deeds({770, 20}, {770, 20}), (Lines{"click", "act Close"}));
}

TEST(TouchFullWidth, TheCameraKeyLivesInConnectModeAlone) {
    PlayerScreen screen(ui::kFullLayout);
    EXPECT_EQ(screen.deeds({700, 350}, {700, 350}), Lines{});
    screen.view.connectMode = true;
    EXPECT_EQ(screen.deeds({700, 350}, {700, 350}), (Lines{"click", "act SwitchCamera"}));
}

TEST(TouchFullWidth, TheFirstTouchOnAHiddenBarOnlyShowsIt) {
    for (const ui::Point point :
         {ui::Point{750, 450}, ui::Point{400, 380}, ui::Point{400, 450}, ui::Point{100, 400}}) {
        PlayerScreen screen(ui::kFullLayout);
        screen.screens.barShown = false;
        EXPECT_EQ(screen.press(point), (Lines{"capture", "update"}));
        screen.move({500, point.y});
        EXPECT_EQ(screen.screens.displayedPosition, 100);
        const Lines lines = screen.release(point);
        EXPECT_EQ(lines[1], "invalidate all");
        EXPECT_EQ(lines[2], "stop bar");
        EXPECT_EQ(lines[3], "start bar");
        EXPECT_TRUE(screen.screens.barShown);
    }
}

TEST(TouchFullWidth, TheProgressBarSeeksWhereTheFingerIsReleased) {
    PlayerScreen screen(ui::kFullLayout);
    EXPECT_EQ(screen.press({409, 400}), (Lines{"stop bar", "invalidate 202,330,627,428",
                                               "stop position", "invalidate 202,330,627,428",
                                               "invalidate 632,377,792,401", "capture", "update"}));
    EXPECT_DOUBLE_EQ(screen.screens.displayedPosition, 498);
    screen.move({617, 20});
    EXPECT_DOUBLE_EQ(screen.screens.displayedPosition, 1000);
    screen.move({-400, 20});
    EXPECT_DOUBLE_EQ(screen.screens.displayedPosition, 0);
    screen.move({304, 20});
    EXPECT_DOUBLE_EQ(screen.screens.displayedPosition, 245);
    EXPECT_EQ(screen.release({304, 20}),
              (Lines{"release", "act Seek", "start position", "stop bar", "start bar",
                     "invalidate 202,330,627,428", "update"}));
}

TEST(TouchFullWidth, ALargeKnobIsDrawnWholeUnderTheFinger) {
    PlayerScreen screen(ui::kFullLayout);
    screen.view.knob = {40, 50};
    screen.press({409, 400});
    EXPECT_EQ(screen.move({617, 400}),
              (Lines{"invalidate 202,330,657,441", "invalidate 632,377,792,401"}));
}

TEST(TouchFullWidth, SeekingIsSilent) {
    PlayerScreen screen(ui::kFullLayout);
    EXPECT_EQ(screen.deeds({409, 400}, {409, 400}), (Lines{"act Seek"}));
}

TEST(TouchFullWidth, WithoutADurationTheProgressBarFollowsNoFinger) {
    PlayerScreen screen(ui::kFullLayout);
    screen.view.duration = 0;
    screen.press({409, 400});
    EXPECT_EQ(screen.screens.displayedPosition, 100);
    screen.view.duration = 1000;
    screen.view.playing = false;
    const Lines lines = screen.press({409, 400});
    EXPECT_EQ(screen.screens.displayedPosition, 100);
    EXPECT_TRUE(std::ranges::find(lines, "stop position") == lines.end());
}

TEST(TouchFullWidth, TheVolumeBarIsSetAtThePress) {
    PlayerScreen screen(ui::kFullLayout);
    EXPECT_EQ(screen.press({398, 450}),
              (Lines{"stop bar", "invalidate 360,437,549,467", "invalidate 360,437,549,467",
                     "invalidate 200,425,280,480", "level 2", "capture", "update"}));
    EXPECT_EQ(screen.move({500, 450}), Lines{});
    PlayerScreen same(ui::kFullLayout);
    same.view.volume = 2;
    EXPECT_EQ(same.press({398, 450}),
              (Lines{"stop bar", "invalidate 360,437,549,467", "level 2", "capture", "update"}));
    EXPECT_EQ(same.deeds({398, 450}, {398, 450}), (Lines{"level 2"}));
}

TEST(TouchFullWidth, ASecondPressTakesThePlaceOfTheFirst) {
    PlayerScreen screen(ui::kFullLayout);
    screen.press({409, 400});
    const Lines lines = screen.press({750, 450});
    EXPECT_EQ(lines[0], "invalidate 202,330,627,428");
    EXPECT_EQ(screen.screens.touch.pressedKey, 5);
    const Lines after = screen.release({750, 450});
    EXPECT_TRUE(std::ranges::find(after, "act Stop") != after.end());
    EXPECT_TRUE(std::ranges::find(after, "start position") != after.end());
}

TEST(TouchFullWidth, WithoutAPressNothingMovesOrIsReleased) {
    PlayerScreen screen(ui::kFullLayout);
    EXPECT_EQ(screen.move({409, 400}), Lines{});
    EXPECT_EQ(screen.release({750, 450}), Lines{});
}

TEST(TouchFullWidth, TheTouchIsForgottenBeforeTheActionRuns) {
    struct Nested : RecordingHost {
        ui::ScreenState* screens = nullptr;
        std::int32_t heldDuringAction = -2;
        void act(ui::Action, std::int32_t) override { heldDuringAction = screens->touch.held; }
    } host;
    PlayerScreen screen(ui::kFullLayout);
    host.screens = &screen.screens;
    ui::pressPlayer(screen.layout, screen.view, screen.screens, host, {750, 450});
    ui::releasePlayer(screen.layout, screen.view, screen.screens, host, {750, 450});
    EXPECT_EQ(host.heldDuringAction, 0);
}

TEST(TouchFullWidth, AFingerBesideTheScreenTouchesNoKey) {
    PlayerScreen screen(ui::kFullLayout);
    EXPECT_EQ(screen.press({-5, -5}), (Lines{"stop bar", "capture", "update"}));
    EXPECT_EQ(screen.release({-5, -5}), (Lines{"release", "stop bar", "start bar", "update"}));
}

TEST(TouchHalfWidth, EachKeysAction) {
    struct Case {
        ui::Point point;
        const char* action;
    };
    constexpr Case kCases[] = {{{350, 30}, "act Close"},       {{40, 450}, "act PreviousFile"},
                               {{120, 450}, "act PlayPause"},  {{200, 450}, "act Stop"},
                               {{350, 450}, "act NextFile"},   {{280, 450}, "act ShowList"},
                               {{120, 390}, "act VolumeDown"}, {{40, 390}, "act ToggleMute"},
                               {{350, 390}, "act VolumeUp"},   {{200, 200}, "act ShowFullWidth"}};
    for (const Case& c : kCases) {
        PlayerScreen screen(ui::kHalfLayout);
        EXPECT_EQ(screen.deeds(c.point, c.point), (Lines{"click", c.action})) << c.action;
    }
}

TEST(TouchHalfWidth, HasNoBarToHide) {
    PlayerScreen screen(ui::kHalfLayout);
    screen.screens.barShown = false;
    EXPECT_EQ(screen.press({200, 450}), (Lines{"invalidate 160,420,239,480", "capture", "update"}));
    EXPECT_EQ(screen.release({200, 450}),
              (Lines{"release", "click", "act Stop", "invalidate 160,420,239,480", "update"}));
}

TEST(TouchHalfWidth, BarsAreSilentAndSeekOffTheBarToo) {
    PlayerScreen screen(ui::kHalfLayout);
    EXPECT_EQ(screen.deeds({239, 390}, {239, 390}), (Lines{"level 5"}));
    EXPECT_EQ(screen.deeds({100, 340}, {100, 340}), (Lines{"act Seek"}));
    EXPECT_EQ(screen.deeds({100, 340}, {390, 10}), (Lines{"act Seek"}));
}

struct ListScreen {
    ui::ScreenState screens{};
    RecordingHost host{};

    ListScreen() {
        screens.rows.rows[0].kind = ui::RowKind::Folder;
        screens.rows.rows[1].kind = ui::RowKind::File;
    }
    Lines deeds(ui::Point from, ui::Point to) {
        host.lines.clear();
        ui::pressList(screens, host, from);
        ui::releaseList(screens, host, to);
        Lines all = host.lines;
        std::erase_if(all, [](const std::string& line) {
            return !line.starts_with("act") && line != "click";
        });
        return all;
    }
};

TEST(TouchList, EachKeysAction) {
    struct Case {
        ui::Point point;
        Lines lines;
    };
    const Case cases[] = {{{750, 30}, {"click", "act LeaveList"}},
                          {{700, 100}, {"click", "act PageUp"}},
                          {{700, 400}, {"click", "act PageDown"}},
                          {{700, 260}, {"act Scroll"}},
                          {{300, 90}, {"click", "act OpenRow 0"}},
                          {{300, 140}, {"click", "act OpenRow 1"}},
                          {{300, 190}, {}},
                          {{615, 90}, {}},
                          {{615, 140}, {"click", "act DeleteRow 1"}},
                          {{615, 190}, {}},
                          {{300, 50}, {}},
                          {{50, 50}, {}}};
    for (const Case& c : cases) {
        ListScreen screen;
        EXPECT_EQ(screen.deeds(c.point, c.point), c.lines) << c.point.x << "," << c.point.y;
    }
    ListScreen screen;
    EXPECT_EQ(screen.deeds({300, 90}, {300, 140}), Lines{});
    EXPECT_EQ(screen.deeds({300, 140}, {615, 140}), Lines{});
    EXPECT_EQ(screen.deeds({31, 140}, {589, 140}), (Lines{"click", "act OpenRow 1"}));
}

TEST(TouchList, PressesTheRowAndLetsItGo) {
    ListScreen screen;
    ui::pressList(screen.screens, screen.host, {300, 90});
    EXPECT_EQ(screen.host.lines, (Lines{"invalidate 30,66,650,116", "capture", "update"}));
    EXPECT_EQ(screen.screens.touch.pressedKey, 13);
    screen.host.lines.clear();
    ui::releaseList(screen.screens, screen.host, {300, 400});
    EXPECT_EQ(screen.host.lines, (Lines{"release", "invalidate 30,66,650,116", "update"}));
}

TEST(TouchList, AnEmptyRowAndNoKeyAtAllAreNotDrawn) {
    for (const ui::Point point : {ui::Point{300, 190}, ui::Point{-5, -5}}) {
        ListScreen screen;
        ui::pressList(screen.screens, screen.host, point);
        EXPECT_EQ(screen.host.lines, (Lines{"capture", "update"})) << point.x;
    }
    ListScreen screen;
    ui::pressList(screen.screens, screen.host, {-5, -5});
    screen.host.lines.clear();
    ui::releaseList(screen.screens, screen.host, {-5, -5});
    EXPECT_EQ(screen.host.lines, (Lines{"release", "update"}));
}

TEST(TouchList, ASecondPressTakesThePlaceOfTheFirst) {
    ListScreen screen;
    ui::pressList(screen.screens, screen.host, {300, 90});
    screen.host.lines.clear();
    ui::pressList(screen.screens, screen.host, {300, 140});
    EXPECT_EQ(screen.host.lines, (Lines{"invalidate 30,66,650,116", "invalidate 30,116,650,166",
                                        "capture", "update"}));
    EXPECT_EQ(screen.deeds({300, 90}, {300, 90}), (Lines{"click", "act OpenRow 0"}));
    screen.host.lines.clear();
    ui::releaseList(screen.screens, screen.host, {300, 90});
    EXPECT_EQ(screen.host.lines, Lines{}) << "a release without a press";
}

TEST(TouchList, TheHeldTrackPages) {
    ListScreen screen;
    ui::moveList(screen.screens, screen.host, {700, 353}, 9, true);
    EXPECT_EQ(screen.host.lines, Lines{});
    ui::pressList(screen.screens, screen.host, {700, 200});
    screen.host.lines.clear();
    ui::moveList(screen.screens, screen.host, {20, 353}, 9, true);
    ui::moveList(screen.screens, screen.host, {700, 266}, 9, true);
    ui::moveList(screen.screens, screen.host, {700, 100}, 9, true);
    EXPECT_EQ(screen.host.lines, (Lines{"page 8", "page 5", "page 0"}));
}

TEST(TouchList, AFingerThatLeavesItsRowToTheRightGoesToTheFolderAbove) {
    ListScreen screen;
    ui::pressList(screen.screens, screen.host, {100, 90});
    screen.host.lines.clear();
    ui::moveList(screen.screens, screen.host, {649, 90}, 1, true);
    EXPECT_EQ(screen.host.lines, Lines{});
    ui::moveList(screen.screens, screen.host, {650, 90}, 1, true);
    EXPECT_EQ(screen.host.lines, (Lines{"invalidate 602,0,701,66", "invalidate 30,66,650,116"}));
    EXPECT_TRUE(screen.screens.touch.goingUp);
    screen.host.lines.clear();
    ui::releaseList(screen.screens, screen.host, {650, 90});
    EXPECT_EQ(screen.host.lines, (Lines{"release", "invalidate 602,0,701,66", "click",
                                        "act GoToParent", "invalidate 30,66,650,116", "update"}));
}

TEST(TouchList, AFingerThatComesBackToItsRowOpensIt) {
    ListScreen screen;
    ui::pressList(screen.screens, screen.host, {100, 90});
    ui::moveList(screen.screens, screen.host, {700, 90}, 1, true);
    screen.host.lines.clear();
    ui::releaseList(screen.screens, screen.host, {500, 90});
    EXPECT_EQ(screen.host.lines, (Lines{"release", "invalidate 602,0,701,66", "click",
                                        "act OpenRow 0", "invalidate 30,66,650,116", "update"}));
}

TEST(TouchList, TheWayUpNeedsAParentAStraightFingerAndARow) {
    struct Case {
        ui::Point from, to;
        bool hasParent;
        bool goingUp;
    };
    constexpr Case kCases[] = {{{100, 440}, {700, 440}, true, 1}, {{100, 90}, {700, 151}, true, 0},
                               {{100, 90}, {700, 90}, false, 0},  {{615, 90}, {790, 90}, true, 0},
                               {{300, 90}, {100, 90}, true, 0},   {{580, 90}, {700, 90}, true, 0},
                               {{540, 90}, {700, 90}, true, 1},   {{541, 90}, {700, 90}, true, 0},
                               {{100, 90}, {700, 150}, true, 1},  {{100, 90}, {500, 90}, true, 0}};
    for (const Case& c : kCases) {
        ListScreen screen;
        ui::pressList(screen.screens, screen.host, c.from);
        ui::moveList(screen.screens, screen.host, c.to, 1, c.hasParent);
        EXPECT_EQ(screen.screens.touch.goingUp, c.goingUp) << c.from.x << " to " << c.to.x;
    }
}

struct SlideScreen {
    ui::ScreenState screens{};
    RecordingHost host{};
    void press(ui::Point p) { ui::pressSlide(screens, host, p); }
    void move(ui::Point p) { ui::moveSlide(screens, host, p); }
    Lines release(ui::Point p) {
        ui::releaseSlide(screens, host, p);
        return host.lines;
    }
};

TEST(TouchSlide, ATapBringsTheBarBack) {
    SlideScreen screen;
    screen.press({400, 200});
    screen.move({420, 195});
    EXPECT_EQ(screen.release({420, 195}), (Lines{"capture", "release", "act ShowFullWidth"}));
}

TEST(TouchSlide, WithoutAPressNothingMovesOrIsReleased) {
    SlideScreen screen;
    screen.move({10, 300});
    EXPECT_EQ(screen.release({420, 195}), Lines{});
}

TEST(TouchSlide, UpAndDownIsTheVolume) {
    SlideScreen screen;
    screen.press({400, 200});
    screen.move({402, 171});
    screen.move({402, 170});
    screen.move({402, 110});
    screen.move({402, 141});
    EXPECT_EQ(screen.release({402, 141}),
              (Lines{"capture", "act VolumeUp", "banner", "act VolumeUp", "act VolumeUp", "banner",
                     "act VolumeDown", "banner", "release"}));
}

TEST(TouchSlide, ATapMayWander30Pixels) {
    struct Case {
        ui::Point to;
        bool taps;
    };
    for (const Case& c : {Case{{430, 200}, true}, Case{{431, 200}, false}, Case{{370, 200}, true},
                          Case{{369, 200}, false}, Case{{400, 230}, true}, Case{{400, 231}, false},
                          Case{{430, 170}, true}, Case{{400, 169}, false}, Case{{460, 200}, false},
                          Case{{400, 260}, false}}) {
        SlideScreen screen;
        screen.press({400, 200});
        const Lines lines = screen.release(c.to);
        EXPECT_EQ(lines.back() == "act ShowFullWidth", c.taps) << c.to.x << ',' << c.to.y;
    }
}

TEST(TouchSlide, AsFarAcrossAsAlongIsNoSlide) {
    SlideScreen screen;
    screen.press({400, 200});
    screen.move({430, 170});
    EXPECT_EQ(screen.host.lines, Lines{"capture"});
    screen.move({430, 169});
    EXPECT_EQ(screen.host.lines, (Lines{"capture", "act VolumeUp", "banner"}));
    // Once it slides, it goes on whichever way the finger leads, and is no tap where it began.
    screen.move({600, 139});
    EXPECT_EQ(screen.host.lines.size(), 5u);
    screen.move({400, 200});
    EXPECT_EQ(screen.release({400, 200}).back(), "release");
}

TEST(TouchSlide, AcrossDoesNothing) {
    SlideScreen screen;
    screen.press({400, 200});
    screen.move({200, 150});
    EXPECT_EQ(screen.release({200, 150}), (Lines{"capture", "release"}));
    screen.host.lines.clear();
    EXPECT_EQ(screen.release({200, 150}), Lines{});
}

}  // namespace
