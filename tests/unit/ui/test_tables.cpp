// Every number of the screens' tables.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "platform/text.h"
#include "recorders.h"
#include "ui/bitmap_sets.h"
#include "ui/list_screen.h"
#include "ui/paint.h"
#include "ui/player_layout.h"
#include "ui/screen_state.h"
#include "ui/skin_slots.h"

namespace {

using ui_test::nameOf;

struct KeyCase {
    ui::Rect area;
    const char* action;
    std::int32_t pressedSlot;
    ui::Click click;
};

void expectKeys(std::span<const ui::Key> keys, std::span<const KeyCase> cases) {
    ASSERT_EQ(keys.size(), cases.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(keys[i].area, cases[i].area) << i;
        EXPECT_EQ(nameOf(keys[i].action), cases[i].action) << i;
        EXPECT_EQ(keys[i].pressedSlot, cases[i].pressedSlot) << i;
        EXPECT_EQ(keys[i].click, cases[i].click) << i;
    }
}

constexpr auto kSounds = ui::Click::Sounds;
constexpr auto kSilent = ui::Click::Silent;

TEST(Keys, FullWidth) {
    constexpr KeyCase kCases[] = {
        {{0, 329, 0, 0}, "GoHome", 13, kSounds},
        {{0, 377, 200, 425}, "GoNavigation", 14, kSounds},
        {{737, 0, 800, 45}, "Close", 15, kSounds},
        {{0, 140, 140, 280}, "PreviousFile", 16, kSounds},
        {{632, 425, 712, 480}, "PlayPause", 17, kSounds},
        {{712, 425, 792, 480}, "Stop", 18, kSounds},
        {{660, 140, 800, 280}, "NextFile", 19, kSounds},
        {{0, 425, 200, 473}, "ShowList", 20, kSounds},
        {{280, 425, 360, 480}, "VolumeDown", 21, kSounds},
        {{200, 425, 280, 480}, "ToggleMute", 22, kSounds},
        {{552, 425, 632, 480}, "VolumeUp", 23, kSounds},
        {{360, 437, 549, 467}, "None", -1, kSilent},
        {{202, 330, 627, 428}, "Seek", -1, kSilent},
        {{632, 329, 800, 377}, "SwitchCamera", -1, ui::Click::InConnectMode},
        {{0, 0, 800, 480}, "HideBar", -1, kSounds},
    };
    expectKeys(ui::kFullLayout.keys, kCases);
}

TEST(Keys, HalfWidth) {
    constexpr KeyCase kCases[] = {
        {{202, 0, 0, 0}, "StartPopup", 4, kSounds},
        {{301, 0, 400, 60}, "Close", 5, kSounds},
        {{2, 420, 81, 480}, "PreviousFile", 6, kSounds},
        {{81, 420, 160, 480}, "PlayPause", 7, kSounds},
        {{160, 420, 239, 480}, "Stop", 8, kSounds},
        {{318, 420, 397, 480}, "NextFile", 9, kSounds},
        {{239, 420, 318, 480}, "ShowList", 10, kSounds},
        {{81, 360, 160, 420}, "VolumeDown", 11, kSounds},
        {{2, 360, 81, 420}, "ToggleMute", 12, kSounds},
        {{318, 360, 397, 420}, "VolumeUp", 13, kSounds},
        {{170, 372, 308, 403}, "None", -1, kSilent},
        {{8, 331, 247, 350}, "Seek", -1, kSilent},
        {{0, 60, 400, 320}, "ShowFullWidth", -1, kSounds},
    };
    expectKeys(ui::kHalfLayout.keys, kCases);
}

TEST(Keys, FileList) {
    std::vector<KeyCase> cases = {
        {{602, 0, 0, 0}, "GoToParent", 3, kSounds},
        {{701, 0, 800, 66}, "LeaveList", 4, kSounds},
        {{650, 66, 770, 166}, "PageUp", 5, kSounds},
        {{650, 366, 770, 466}, "PageDown", 6, kSounds},
        {{650, 166, 770, 366}, "Scroll", -1, kSilent},
    };
    constexpr std::int32_t kTops[] = {66, 116, 166, 216, 266, 316, 366, 416};
    for (const std::int32_t top : kTops) {
        cases.push_back({{590, top, 640, top + 50}, "DeleteRow", 8, kSounds});
    }
    for (const std::int32_t top : kTops) {
        cases.push_back({{30, top, 650, top + 50}, "OpenRow", 16, kSounds});
    }
    for (const std::int32_t top : kTops) {
        cases.push_back({{120, top, 600, top + 50}, "None", -1, kSilent});
    }
    cases.push_back({{200, 34, 490, 64}, "None", -1, kSilent});
    expectKeys(ui::kListKeys, cases);
}

// What a search of the table must find, told without the player's own comparison.
std::int32_t firstAround(std::span<const ui::Key> keys, ui::Point point) {
    const auto found = std::ranges::find_if(keys, [&](const ui::Key& key) {
        const ui::Rect& r = key.area;
        return point.x >= r.left + 1 && point.x <= r.right - 1 && point.y >= r.top + 1 &&
               point.y <= r.bottom - 1;
    });
    return found == keys.end() ? -1 : static_cast<std::int32_t>(found - keys.begin());
}

TEST(HitTest, LeavesAllFourEdgesOut) {
    for (const std::span<const ui::Key> keys :
         {ui::kFullLayout.keys, ui::kHalfLayout.keys, std::span<const ui::Key>(ui::kListKeys)}) {
        for (std::size_t i = 0; i < keys.size(); ++i) {
            const ui::Rect& r = keys[i].area;
            const auto key = static_cast<std::int32_t>(i);
            for (const std::int32_t x :
                 {r.left, r.left + 1, (r.left + r.right) / 2, r.right - 1, r.right}) {
                for (const std::int32_t y :
                     {r.top, r.top + 1, (r.top + r.bottom) / 2, r.bottom - 1, r.bottom}) {
                    const std::int32_t hit = ui::hitTest(keys, {x, y});
                    EXPECT_EQ(hit, firstAround(keys, {x, y})) << i << " at " << x << "," << y;
                    const bool onEdge = x == r.left || x == r.right || y == r.top || y == r.bottom;
                    EXPECT_TRUE(!onEdge || hit != key) << i << " at " << x << "," << y;
                }
            }
        }
    }
}

TEST(HitTest, TakesTheFirstKeyInOrder) {
    struct Case {
        ui::Point point;
        std::int32_t key;
    };
    constexpr Case kFull[] = {
        {{1, 378}, 1},   {{0, 400}, -1},   {{799, 1}, 2},    {{800, 1}, -1},   {{737, 20}, 14},
        {{70, 200}, 3},  {{672, 450}, 4},  {{712, 450}, 14}, {{750, 450}, 5},  {{700, 200}, 6},
        {{100, 450}, 7}, {{100, 475}, 14}, {{400, 450}, 11}, {{400, 432}, 14}, {{400, 426}, 12},
        {{300, 426}, 8}, {{700, 350}, 13}, {{400, 200}, 14}, {{-5, 200}, -1},  {{400, 480}, -1},
        {{0, 0}, -1},    {{100, 350}, 14}};
    for (const Case& c : kFull) {
        EXPECT_EQ(ui::hitTest(ui::kFullLayout.keys, c.point), c.key)
            << c.point.x << "," << c.point.y;
    }
    constexpr Case kHalf[] = {
        {{350, 30}, 1},   {{301, 30}, -1},  {{400, 30}, -1},  {{350, 60}, -1}, {{40, 450}, 2},
        {{81, 450}, -1},  {{82, 450}, 3},   {{200, 450}, 4},  {{280, 450}, 6}, {{350, 450}, 5},
        {{40, 390}, 8},   {{120, 420}, -1}, {{120, 390}, 7},  {{350, 390}, 9}, {{200, 390}, 10},
        {{100, 340}, 11}, {{200, 200}, 12}, {{200, 320}, -1}, {{250, 30}, -1}};
    for (const Case& c : kHalf) {
        EXPECT_EQ(ui::hitTest(ui::kHalfLayout.keys, c.point), c.key)
            << c.point.x << "," << c.point.y;
    }
    constexpr Case kList[] = {{{600, 90}, 5},  {{590, 90}, 13},  {{640, 90}, 13},  {{645, 90}, 13},
                              {{300, 90}, 13}, {{300, 116}, -1}, {{300, 440}, 20}, {{300, 50}, 29},
                              {{710, 300}, 4}, {{750, 30}, 1},   {{650, 100}, -1}, {{650, 30}, -1}};
    for (const Case& c : kList) {
        EXPECT_EQ(ui::hitTest(ui::kListKeys, c.point), c.key) << c.point.x << "," << c.point.y;
    }
}

std::string fileOf(ui::SkinSet set, std::int32_t slot) {
    std::string found;
    for (const ui::SlotRow& row : ui::slotTable(set)) {
        if (row.slot == slot) {
            found +=
                platform::toUtf8(std::u16string(1, row.folder)) + "/" + platform::toUtf8(row.file);
        }
    }
    return found;
}

void expectFiles(ui::SkinSet set, std::span<const char* const> files) {
    std::size_t named = 0;
    for (std::size_t slot = 0; slot < files.size(); ++slot) {
        EXPECT_EQ(fileOf(set, static_cast<std::int32_t>(slot)), files[slot]) << slot;
        named += std::strlen(files[slot]) > 0 ? 1 : 0;
    }
    EXPECT_EQ(ui::slotTable(set).size(), named);
}

TEST(Slots, SetA) {
    constexpr const char* kFiles[] = {"A/view_block.bmp",
                                      "A/movie.bmp",
                                      "A/video_bg_control.bmp",
                                      "A/video_bg_title.bmp",
                                      "A/video_bg_close.bmp",
                                      "A/prog_bar.bmp",
                                      "A/vol_bar.bmp",
                                      "A/ch_left.bmp",
                                      "A/ch_right.bmp",
                                      "A/button_front.bmp",
                                      "A/button_front_on.bmp",
                                      "A/button_rear.bmp",
                                      "A/button_rear_on.bmp",
                                      "A/btn01_home_on.bmp",
                                      "A/btn02_navi_on.bmp",
                                      "A/btn03_close_on.bmp",
                                      "A/ch_left_on.bmp",
                                      "A/btn02_play_on.bmp",
                                      "A/btn03_stop_on.bmp",
                                      "A/ch_right_on.bmp",
                                      "A/listup_icon_on.bmp",
                                      "A/btn05_minus_on.bmp",
                                      "A/btn04_mute_on.bmp",
                                      "A/btn06_plus_on.bmp",
                                      "A/vol_icon.bmp",
                                      "A/prog_point.bmp",
                                      "",
                                      "",
                                      "A/time_am.bmp",
                                      "A/time_pm.bmp",
                                      "A/time_0.bmp",
                                      "A/time_1.bmp",
                                      "A/time_2.bmp",
                                      "A/time_3.bmp",
                                      "A/time_4.bmp",
                                      "A/time_5.bmp",
                                      "A/time_6.bmp",
                                      "A/time_7.bmp",
                                      "A/time_8.bmp",
                                      "A/time_9.bmp",
                                      "A/btn02_halt_non.bmp",
                                      "A/btn02_halt_on.bmp",
                                      "A/listup_icon_non.bmp",
                                      "A/listup_icon_on.bmp",
                                      "A/btn01_home_non.bmp",
                                      "A/btn01_home_on.bmp",
                                      "A/btn02_navi_non.bmp",
                                      "A/btn02_navi_on.bmp",
                                      "A/btn04_muteoff_non.bmp",
                                      "A/btn04_muteoff_on.bmp",
                                      ""};
    static_assert(std::size(kFiles) == ui::kSlotsPerSet);
    expectFiles(ui::SkinSet::FullWidth, kFiles);
}

TEST(Slots, SetB) {
    constexpr const char* kFiles[] = {"B/view_block.bmp",
                                      "B/video_PIP.bmp",
                                      "B/prog_bar.bmp",
                                      "A/vol_bar.bmp",
                                      "B/btn_home_on.bmp",
                                      "B/btn_close_on.bmp",
                                      "B/btn02_back_on.bmp",
                                      "B/btn03_play_on.bmp",
                                      "B/btn04_stop_on.bmp",
                                      "B/btn05_next_on.bmp",
                                      "B/btn01_list_on.bmp",
                                      "B/btn05_minus_on.bmp",
                                      "B/btn04_muteoff_on.bmp",
                                      "B/btn06_plus_on.bmp",
                                      "B/vol_icon.bmp",
                                      "B/prog_point.bmp",
                                      "",
                                      "B/btn03_halt_non.bmp",
                                      "B/btn03_halt_on.bmp",
                                      "B/btn04_muteoff_non.bmp",
                                      "B/btn04_mute_on.bmp"};
    expectFiles(ui::SkinSet::HalfWidth, kFiles);
}

TEST(Slots, SetC) {
    constexpr const char* kFiles[] = {"C/list_bg.bmp",
                                      "C/list_title_play.bmp",
                                      "C/icon_bin_non.bmp",
                                      "C/btn01_up_on.bmp",
                                      "C/btn01_close_on.bmp",
                                      "C/list02_up_on.bmp",
                                      "C/list04_down_on.bmp",
                                      "C/scroll_icon.bmp",
                                      "C/icon_bin_on.bmp",
                                      "",
                                      "",
                                      "",
                                      "",
                                      "",
                                      "",
                                      "",
                                      "C/list_title_on.bmp",
                                      "",
                                      "",
                                      "",
                                      "",
                                      "",
                                      "",
                                      "C/icon02_slate.bmp",
                                      "C/icon01_folder.bmp",
                                      "C/icon2_sdmmc.bmp",
                                      "C/icon3_usb.bmp"};
    expectFiles(ui::SkinSet::FileList, kFiles);
}

TEST(Slots, SetD) {
    constexpr const char* kFiles[] = {
        "D/view_block.bmp", "D/slide.bmp", "D/slide_mute.bmp", "A/movie.bmp", "D/vol_0.bmp",
        "D/vol_1.bmp",      "D/vol_2.bmp", "D/vol_3.bmp",      "D/vol_4.bmp", "D/vol_5.bmp",
        "D/vol_6.bmp",      "D/vol_7.bmp", "D/vol_8.bmp",      "D/vol_9.bmp", "D/vol_10.bmp"};
    expectFiles(ui::SkinSet::Slide, kFiles);
}

TEST(Layout, ClockAndVideoPlaces) {
    EXPECT_EQ(ui::kClockArea, (ui::Rect{627, 16, 742, 51}));
    EXPECT_EQ(ui::kHalfDayMark, (ui::Rect{607, 16, 628, 29}));
    EXPECT_EQ(ui::kClockDigits[0], (ui::Rect{630, 16, 649, 41}));
    EXPECT_EQ(ui::kClockDigits[1], (ui::Rect{650, 16, 669, 41}));
    EXPECT_EQ(ui::kClockDigits[2], (ui::Rect{677, 16, 696, 41}));
    EXPECT_EQ(ui::kClockDigits[3], (ui::Rect{697, 16, 716, 41}));
    EXPECT_EQ(ui::kFullLayout.video, (ui::Rect{0, 0, 800, 480}));
    EXPECT_EQ(ui::kHalfLayout.video, (ui::Rect{0, 60, 400, 320}));
    EXPECT_EQ(ui::kBannerArea, (ui::Rect{180, 0, 620, 64}));
    EXPECT_EQ(ui::kScreenWidth, 800);
    EXPECT_EQ(ui::kScreenHeight, 480);
}

TEST(Skin, ItsFolderAndItsTransparentColour) {
    EXPECT_EQ(std::u16string_view(ui::kSkinFolder), u"\\ResidentFlash\\Image\\Movie\\");
    EXPECT_EQ(ui::kTransparent, 0xFF00FFu);
    EXPECT_EQ(ui::kVideoKey, 0xF800F8u);
}

TEST(State, OfTheScreensBeforeTheFirstTouch) {
    const ui::ScreenState state;
    EXPECT_EQ(state.touch.start, (ui::Point{0, 0}));
    EXPECT_EQ(state.touch.slideAnchorY, 0);
    EXPECT_EQ(state.touch.pressedKey, -1);
    EXPECT_TRUE(state.barShown);
    EXPECT_FALSE(state.bannerShown);
    EXPECT_FALSE(state.listShown);
    EXPECT_EQ(state.displayedPosition, 0);
    EXPECT_EQ(state.displayedDuration, 0);
    EXPECT_EQ(state.displayedMinute, -1) << "of no day";
    const ui::PlayerView view;
    EXPECT_FALSE(view.playing);
    EXPECT_FALSE(view.videoArea);
    EXPECT_EQ(view.volume, 0);
    EXPECT_EQ(view.camera, -1);
    EXPECT_EQ(view.pressedKey, -1);
    EXPECT_EQ(view.knob, (ui::Size{0, 0}));
    EXPECT_EQ(view.displayedPosition, 0);
    EXPECT_EQ(view.duration, 0);
    EXPECT_EQ(view.hour, 0);
    EXPECT_EQ(view.minute, 0);
}

}  // namespace
