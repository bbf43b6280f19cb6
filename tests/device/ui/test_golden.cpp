// The golden pictures: every screen in the states that a driver meets.
#include <gtest/gtest.h>

#include <vector>

#include "catalogue/folder_listing.h"
#include "golden.h"
#include "picture.h"
#include "scene.h"

namespace {

using ui_test::Picture;
using ui_test::playingView;
using ui_test::Scene;
using ui_test::Screen;
using ui_test::setRow;

constexpr char16_t kLongName[] =
    u"2026-03-14 강릉에서 서울까지 돌아오는 길 아주 긴 이름의 기록 영상 첫째 부분.avi";

Scene player(const char* name, Screen screen, auto change) {
    Scene scene{.name = name, .screen = screen, .view = playingView()};
    change(scene.view);
    return scene;
}

Scene list(const char* name, int entries, auto change) {
    Scene scene{.name = name, .screen = Screen::List, .view = {}};
    scene.list = {.table = nullptr,
                  .path = u"\\SDMMCDisk\\Record",
                  .page = 0,
                  .pageCount = catalogue::pagesFor(entries),
                  .pressedKey = -1,
                  .goingUp = false,
                  .hasParent = true};
    for (int r = 0; r < std::min(entries, 8); ++r) {
        const std::u16string name16 = u"20260314_08150" + std::u16string(1, char16_t(u'0' + r));
        if (r == 0) {
            setRow(scene.rows, 0, ui::RowKind::Folder, ui::kListFolder, u"이벤트");
        } else {
            setRow(scene.rows, static_cast<std::size_t>(r), ui::RowKind::File, ui::kListFile,
                   (name16 + u"_F.avi").c_str());
        }
    }
    change(scene);
    return scene;
}

std::vector<Scene> fullScenes() {
    const auto full = [](const char* name, auto change) {
        return player(name, Screen::Full, change);
    };
    return {
        full("full_playing", [](ui::PlayerView& v) { v.videoArea = true; }),
        full("full_paused", [](ui::PlayerView& v) { v.videoArea = v.paused = true; }),
        full("full_stopped",
             [](ui::PlayerView& v) {
                 v.playing = false;
                 v.displayedPosition = 0;
             }),
        full("full_muted_loud",
             [](ui::PlayerView& v) {
                 v.muted = true;
                 v.volume = 10;
             }),
        full("full_midnight_silent",
             [](ui::PlayerView& v) {
                 v.hour = v.minute = 0;
                 v.volume = 0;
                 v.displayedPosition = 240;
             }),
        full("full_blocked", [](ui::PlayerView& v) { v.drivingBlock = true; }),
        full("full_blocked_muted",
             [](ui::PlayerView& v) {
                 v.drivingBlock = v.muted = true;
                 v.audible = false;
             }),
        full("full_hidden_bar", [](ui::PlayerView& v) { v.barShown = false; }),
        full("full_connect_front",
             [](ui::PlayerView& v) {
                 v.connectMode = true;
                 v.camera = 0;
             }),
        full("full_connect_rear_held",
             [](ui::PlayerView& v) {
                 v.connectMode = true;
                 v.camera = 1;
                 v.pressedKey = ui::kFullCameraKey;
             }),
        full("full_held_arrow", [](ui::PlayerView& v) { v.pressedKey = ui::kFullPreviousKey; }),
        full("full_held_minus", [](ui::PlayerView& v) { v.pressedKey = 8; }),
        full("full_held_pause", [](ui::PlayerView& v) { v.pressedKey = ui::kFullPlayKey; }),
        full("full_held_close", [](ui::PlayerView& v) { v.pressedKey = 2; }),
        full("full_held_list", [](ui::PlayerView& v) { v.pressedKey = 7; }),
        full("full_held_muted_key",
             [](ui::PlayerView& v) {
                 v.muted = true;
                 v.pressedKey = ui::kFullMuteKey;
             }),
        full("full_long_name",
             [](ui::PlayerView& v) {
                 v.fileName = kLongName;
                 v.duration = 400000;
             }),
    };
}

std::vector<Scene> halfAndSlideScenes() {
    return {
        player("half_playing", Screen::Half, [](ui::PlayerView& v) { v.videoArea = true; }),
        player("half_stopped", Screen::Half, [](ui::PlayerView& v) { v.playing = false; }),
        player("half_muted_paused", Screen::Half,
               [](ui::PlayerView& v) { v.muted = v.paused = true; }),
        player("half_blocked", Screen::Half, [](ui::PlayerView& v) { v.drivingBlock = true; }),
        player("half_held_play", Screen::Half,
               [](ui::PlayerView& v) { v.pressedKey = ui::kHalfPlayKey; }),
        player("half_long_name", Screen::Half, [](ui::PlayerView& v) { v.fileName = kLongName; }),
        player("slide_banner", Screen::Slide,
               [](ui::PlayerView& v) { v.bannerShown = v.videoArea = true; }),
        player("slide_muted", Screen::Slide,
               [](ui::PlayerView& v) { v.bannerShown = v.muted = true; }),
        player("slide_blocked", Screen::Slide, [](ui::PlayerView& v) { v.drivingBlock = true; }),
    };
}

std::vector<Scene> listScenes() {
    return {
        list("list_0", 0, [](Scene&) {}),
        list("list_1", 1, [](Scene&) {}),
        list("list_2", 2, [](Scene& s) { s.rows.rows[1].playing = true; }),
        list("list_9_last_page", 9,
             [](Scene& s) {
                 s.rows = {};
                 setRow(s.rows, 0, ui::RowKind::File, ui::kListFile, kLongName);
                 s.list.page = 1;
             }),
        list("list_100_middle", 100, [](Scene& s) { s.list.page = 6; }),
        list("list_held_playing_row", 8,
             [](Scene& s) {
                 s.rows.rows[3].playing = true;
                 s.list.pressedKey = ui::kListRowKeys + 3;
             }),
        list("list_held_bin", 8, [](Scene& s) { s.list.pressedKey = ui::kListBinKeys + 2; }),
        list("list_held_page_down", 100,
             [](Scene& s) { s.list.pressedKey = ui::kListPageDownKey; }),
        list("list_going_up", 8,
             [](Scene& s) {
                 s.list.pressedKey = ui::kListRowKeys + 1;
                 s.list.goingUp = true;
             }),
        list("list_root", 0,
             [](Scene& s) {
                 setRow(s.rows, 0, ui::RowKind::Folder, ui::kListCard, u"SDMMCDisk");
                 setRow(s.rows, 1, ui::RowKind::Folder, ui::kListUsb, u"USB");
                 s.list.path = u"ROOT";
                 s.list.hasParent = false;
             }),
        list("list_long_path", 2,
             [](Scene& s) { s.list.path = u"\\SDMMCDisk\\2026년 3월 여행\\강릉과 서울 & 기타"; }),
    };
}

std::vector<Scene> spoiltScenes() {
    std::vector<Scene> scenes = {
        player("full_no_bitmaps_for_bars", Screen::Full, [](ui::PlayerView&) {}),
        player("half_no_background", Screen::Half, [](ui::PlayerView&) {}),
        list("list_no_background", 3, [](Scene&) {}),
        player("full_no_pause_face", Screen::Full, [](ui::PlayerView& v) { v.videoArea = true; })};
    scenes[0].missing = "A2 A3 A4 A40";
    scenes[1].missing = "B1";
    scenes[2].missing = "C0";
    scenes[3].missing = "A40";
    return scenes;
}

void expectGolden(const ui_test::Stage& stage, const Scene& scene) {
    Picture actual;
    stage.paint(scene, actual.device(), ui_test::wholeOf(scene.screen));
    ui_test::expectGolden(actual, scene.name, ui_test::widthOf(scene.screen));
}

TEST(Golden, Pictures) {
    const ui_test::Stage stage(SKIN_FOLDER);
    ASSERT_NE(stage.screens.bitmaps[0][ui::kFullBackground], nullptr)
        << "the skin was not made: skin/build.sh";
    for (const auto& scenes : {fullScenes(), halfAndSlideScenes(), listScenes(), spoiltScenes()}) {
        for (const Scene& scene : scenes) {
            expectGolden(stage, scene);
        }
    }
}

}  // namespace
