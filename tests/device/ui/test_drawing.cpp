// Damage, spoilt bitmaps and what is left behind.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "picture.h"
#include "scene.h"
#include "ui/follow.h"

namespace {

using ui_test::Picture;
using ui_test::Scene;
using ui_test::Screen;

constexpr std::uint32_t kUntouched = 0x00123456;

std::vector<Scene> oneOfEach() {
    std::vector<Scene> scenes;
    for (const Screen screen : {Screen::Full, Screen::Half, Screen::Slide, Screen::List}) {
        Scene scene{.name = "", .screen = screen, .view = ui_test::playingView()};
        scene.view.bannerShown = true;
        scene.view.connectMode = true;
        scene.view.camera = 1;
        scene.view.muted = screen == Screen::Full;
        scene.view.pressedKey = screen == Screen::Half ? 4 : 3;
        scene.list = {nullptr, u"\\SDMMCDisk\\Record", 1, 3, ui::kListRowKeys + 1, false, true};
        ui_test::setRow(scene.rows, 0, ui::RowKind::Folder, ui::kListFolder, u"이벤트");
        ui_test::setRow(scene.rows, 1, ui::RowKind::File, ui::kListFile, u"a.avi");
        scene.rows.rows[1].playing = true;
        scenes.push_back(scene);
    }
    return scenes;
}

// What is drawn for a damaged part is what the whole picture has there, and nothing else.
TEST(Damage, EveryPartIsDrawnAsInTheWholePicture) {
    const ui_test::Stage stage(SKIN_FOLDER);
    std::mt19937 random(20261121);
    Picture whole, part;
    for (const Scene& scene : oneOfEach()) {
        const int width = ui_test::widthOf(scene.screen);
        stage.paint(scene, whole.device(), ui_test::wholeOf(scene.screen));
        for (int i = 0; i < 60; ++i) {
            const auto upTo = [&](int most) { return static_cast<int>(random() % most); };
            const int left = upTo(width), top = upTo(480);
            const ui::Rect damaged = {left, top, left + 1 + upTo(width - left),
                                      top + 1 + upTo(480 - top)};
            part.fill(kUntouched);
            stage.paint(scene, part.device(), damaged);
            int wrong = 0;
            for (int y = 0; y < 480; ++y) {
                for (int x = 0; x < width; ++x) {
                    const bool inside = x >= damaged.left && x < damaged.right &&
                                        y >= damaged.top && y < damaged.bottom;
                    wrong += part.at(x, y) != (inside ? whole.at(x, y) : kUntouched) ? 1 : 0;
                }
            }
            ASSERT_EQ(wrong, 0) << "screen " << static_cast<int>(scene.screen) << " damage "
                                << damaged.left << "," << damaged.top << "," << damaged.right << ","
                                << damaged.bottom;
        }
    }
}

TEST(Damage, EveryPixelOfAScreenIsDrawn) {
    const ui_test::Stage stage(SKIN_FOLDER);
    Picture once, again;
    for (Scene scene : oneOfEach()) {
        for (const bool videoArea : {false, true}) {
            scene.view.videoArea = videoArea;
            once.fill(0x00000000);
            again.fill(0x00FFFFFF);
            stage.paint(scene, once.device(), ui_test::wholeOf(scene.screen));
            stage.paint(scene, again.device(), ui_test::wholeOf(scene.screen));
            Picture difference;
            std::string where;
            EXPECT_EQ(compare(once, again, ui_test::widthOf(scene.screen), difference, where), 0)
                << static_cast<int>(scene.screen) << " at " << where;
        }
    }
}

// A skin with a knob of its own size: where it stood nothing of it stays.
TEST(Damage, ALargeKnobLeavesNothingBehind) {
    struct Case {
        Screen screen;
        const ui::PlayerLayout& layout;
    };
    const Case cases[] = {{Screen::Full, ui::kFullLayout}, {Screen::Half, ui::kHalfLayout}};
    ui_test::Stage stage(SKIN_FOLDER);
    Picture picture, expected, difference;
    for (const Case& c : cases) {
        const auto set = static_cast<std::size_t>(c.layout.knob.set);
        const HBITMAP large =
            CreateBitmap(30, 26, 1, 32, std::vector<char>(30 * 26 * 4, 90).data());
        void*& slot = stage.screens.bitmaps[set][static_cast<std::size_t>(c.layout.knob.slot)];
        DeleteObject(slot);
        slot = large;
        const ui::Size size = ui::bitmapSize(stage.screens, c.layout.knob);
        EXPECT_EQ(size, (ui::Size{30, 26}));
        Scene scene{.name = "", .screen = c.screen, .view = ui_test::playingView()};
        const auto knobOf = [&](double position) {
            return ui::knobX(c.layout.progress, position, scene.view.duration, true);
        };
        const ui::Rect whole = ui_test::wholeOf(c.screen);
        const int width = ui_test::widthOf(c.screen);
        std::string where;
        for (const double position : {85.0, 20.0, 160.0}) {
            const double before = scene.view.displayedPosition;
            stage.paint(scene, picture.device(), whole);
            scene.view.displayedPosition = position;
            stage.paint(scene, expected.device(), whole);
            EXPECT_GT(compare(picture, expected, width, difference, where), 0);
            stage.paint(scene, picture.device(),
                        ui::knobTrack(c.layout.progress, knobOf(before), knobOf(position), size));
            stage.paint(scene, picture.device(), c.layout.position);
            EXPECT_EQ(compare(picture, expected, width, difference, where), 0)
                << "screen " << static_cast<int>(c.screen) << " at " << where;
        }
    }
}

// Without a target, or without a context to draw from, nothing is drawn and nothing goes wrong.
TEST(Drawing, MissingContextsDrawNothing) {
    const ui_test::Stage stage(SKIN_FOLDER);
    constexpr ui::Rect kWhole = {0, 0, 800, 480};
    constexpr ui::Bitmap kFace = {ui::SkinSet::FullWidth, ui::kFullControlBar};
    Picture picture;
    picture.fill(kUntouched);
    for (const HDC target : {static_cast<HDC>(nullptr), picture.device()}) {
        ui::GdiCanvas canvas(target, nullptr, stage.screens, {}, kWhole);
        canvas.draw(kFace, {0, 0});
        canvas.drawRegion(kFace, kWhole);
        canvas.drawInto(kFace, kWhole);
        canvas.drawTransparent(kFace, {0, 0});
        canvas.drawTransparentInto(kFace, kWhole);
        if (target == nullptr) {
            canvas.fill(kWhole, ui::kWhite);
            canvas.text(u"a", ui::Font::Height24, ui::kWhite, kWhole, ui::kCentredText);
        }
    }
    GdiFlush();
    EXPECT_EQ(picture.at(400, 400), kUntouched);
    EXPECT_EQ(picture.at(0, 0), kUntouched);
}

// What looks as if it could be touched can be: no pixel in the colour of a key's tile lies where no
// key is hit.
TEST(Drawing, NoKeyIsLargerThanItsTouchArea) {
    constexpr std::uint32_t kTile = 0x31404D;  // "key" of the skin's palette
    const ui_test::Stage stage(SKIN_FOLDER);
    Picture picture;
    for (Scene scene : oneOfEach()) {
        scene.view.bannerShown = false;
        scene.view.pressedKey = scene.list.pressedKey = -1;
        stage.paint(scene, picture.device(), ui_test::wholeOf(scene.screen));
        const auto isHit = [&](int x, int y) {
            std::span<const ui::Key> keys = scene.screen == Screen::Half   ? ui::kHalfLayout.keys
                                            : scene.screen == Screen::Full ? ui::kFullLayout.keys
                                                                           : ui::kListKeys;
            const std::int32_t key = ui::hitTest(keys, {x, y});
            return key >= 0 && keys[static_cast<std::size_t>(key)].action != ui::Action::HideBar;
        };
        int tile = 0, outside = 0;
        for (int y = 0; y < 480; ++y) {
            for (int x = 0; x < ui_test::widthOf(scene.screen); ++x) {
                const bool isTile = picture.at(x, y) == kTile;
                tile += isTile ? 1 : 0;
                outside += isTile && !isHit(x, y) ? 1 : 0;
            }
        }
        EXPECT_EQ(outside, 0) << static_cast<int>(scene.screen);
        EXPECT_EQ(tile > 10000, scene.screen != Screen::Slide) << static_cast<int>(scene.screen);
    }
}

// Paints at once what a tick of the position timer invalidates.
class PaintingHost : public ui::TouchHost {
public:
    PaintingHost(const ui_test::Stage& stage, const Scene& scene, Picture& picture)
        : stage_(stage), scene_(scene), picture_(picture) {}
    void invalidate(const ui::Rect& area) override {
        stage_.paint(scene_, picture_.device(), area);
    }
    void invalidateAll() override { invalidate(ui_test::wholeOf(scene_.screen)); }
    void update() override {}
    void capturePointer() override {}
    void releasePointer() override {}
    void startTimer(ui::ScreenTimer) override {}
    void stopTimer(ui::ScreenTimer) override {}
    void click() override {}
    void act(ui::Action, std::int32_t) override {}
    void setVolumeLevel(std::int32_t) override {}
    void setListPage(std::int32_t) override {}
    void showBanner() override {}

private:
    const ui_test::Stage& stage_;
    const Scene& scene_;
    Picture& picture_;
};

// A recording grows between two ticks, and something makes the window paint before the second one.
TEST(Damage, AGrowingRecordingLeavesNoSecondKnob) {
    const ui_test::Stage stage(SKIN_FOLDER);
    Picture picture, fresh, difference;
    std::string where;
    for (const Screen screen : {Screen::Full, Screen::Half}) {
        const ui::PlayerLayout& layout = screen == Screen::Full ? ui::kFullLayout : ui::kHalfLayout;
        const ui::Rect whole = ui_test::wholeOf(screen);
        Scene scene{.name = "", .screen = screen, .view = ui_test::playingView()};
        scene.view.displayedPosition = 0.9;
        scene.view.duration = 5;
        stage.paint(scene, picture.device(), whole);
        for (const double grown : {6.0, 6.4, 60.0}) {
            const ui::ShownTime before = {scene.view.displayedPosition, scene.view.duration};
            scene.view.duration = grown;
            stage.paint(scene, picture.device(), whole);
            scene.view.displayedPosition += 0.3;
            PaintingHost host(stage, scene, picture);
            ui::followTime(layout, ui::bitmapSize(stage.screens, layout.knob), true, before,
                           {scene.view.displayedPosition, grown}, host);
            stage.paint(scene, fresh.device(), whole);
            EXPECT_EQ(compare(picture, fresh, ui_test::widthOf(screen), difference, where), 0)
                << static_cast<int>(screen) << " at " << where << ", " << grown << " s";
        }
    }
}

// Without the pause face the play key shows the face of the bar under it, and nothing else changes.
TEST(Drawing, AMissingPauseFaceIsMissedOnItsKeyAlone) {
    const ui_test::Stage stage(SKIN_FOLDER);
    Scene scene{.name = "", .screen = Screen::Full, .view = ui_test::playingView()};
    scene.view.videoArea = true;
    Picture complete, missing;
    stage.paint(scene, complete.device(), ui_test::wholeOf(scene.screen));
    scene.missing = "A40";
    stage.paint(scene, missing.device(), ui_test::wholeOf(scene.screen));
    const ui::Rect& key = ui::kFullLayout.keys[ui::kFullPlayKey].area;
    int onTheKey = 0, elsewhere = 0;
    for (int y = 0; y < 480; ++y) {
        for (int x = 0; x < 800; ++x) {
            const bool inside = x >= key.left && x < key.right && y >= key.top && y < key.bottom;
            (inside ? onTheKey : elsewhere) += complete.at(x, y) != missing.at(x, y) ? 1 : 0;
        }
    }
    EXPECT_GT(onTheKey, 100);
    EXPECT_EQ(elsewhere, 0);
}

TEST(Drawing, LeavesMagentaOutOfKeyedBitmaps) {
    const ui_test::Stage stage(SKIN_FOLDER);
    Scene scene{.name = "", .screen = Screen::Full, .view = ui_test::playingView()};
    scene.view.videoArea = true;
    Picture picture;
    stage.paint(scene, picture.device(), ui_test::wholeOf(scene.screen));
    int key = 0, magenta = 0;
    for (int y = 141; y < 280; ++y) {
        for (int x = 0; x < 800; ++x) {
            key += picture.at(x, y) == 0xF800F8 ? 1 : 0;
            magenta += picture.at(x, y) == 0xFF00FF ? 1 : 0;
        }
    }
    EXPECT_GT(key, 520 * 139);
    EXPECT_EQ(magenta, 0);
}

// Sets of one skin whose every file has the same bytes.
class SpoiltSkin {
public:
    explicit SpoiltSkin(const std::vector<std::uint8_t>& bytes) {
        wchar_t temp[MAX_PATH];
        GetTempPathW(MAX_PATH, temp);
        folder_ = std::wstring(temp) + L"ui_skin\\";
        CreateDirectoryW(folder_.c_str(), nullptr);
        for (std::size_t set = 0; set < ui::kSkinSets; ++set) {
            for (const ui::SlotRow& row : ui::slotTable(static_cast<ui::SkinSet>(set))) {
                const std::wstring below = folder_ + static_cast<wchar_t>(row.folder) + L"\\";
                CreateDirectoryW(below.c_str(), nullptr);
                write(below + reinterpret_cast<const wchar_t*>(row.file), bytes);
            }
        }
    }
    [[nodiscard]] const char16_t* folder() const {
        return reinterpret_cast<const char16_t*>(folder_.c_str());
    }

private:
    static void write(const std::wstring& path, const std::vector<std::uint8_t>& bytes) {
        const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
        DWORD written = 0;
        WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
        CloseHandle(file);
    }
    std::wstring folder_;
};

// A 24-bit bitmap file; `claimed` sizes need not be what follows.
std::vector<std::uint8_t> bitmapFile(std::int32_t width, std::int32_t height, std::size_t bytes) {
    std::vector<std::uint8_t> file(54 + bytes, 0x40);
    std::fill(file.begin(), file.begin() + 54, std::uint8_t{0});
    const auto put = [&](std::size_t at, auto value) {
        std::memcpy(file.data() + at, &value, sizeof(value));
    };
    put(0, std::uint16_t{0x4D42});
    put(2, static_cast<std::uint32_t>(file.size()));
    put(10, std::uint32_t{54});
    put(14, std::uint32_t{40});
    put(18, width);
    put(22, height);
    put(26, std::uint16_t{1});
    put(28, std::uint16_t{24});
    return file;
}

TEST(SpoiltSkin, EveryScreenIsStillDrawn) {
    struct Case {
        const char* name;
        std::vector<std::uint8_t> bytes;
    };
    const std::vector<std::uint8_t> nothing;
    const Case cases[] = {
        {"empty", nothing},
        {"garbage", std::vector<std::uint8_t>(3000, 0xAB)},
        {"one pixel", bitmapFile(1, 1, 4)},
        {"cut off", bitmapFile(800, 480, 1000)},
        {"huge claim", bitmapFile(0x7FFFFFFF, 0x7FFFFFFF, 64)},
        {"negative", bitmapFile(-5, -5, 64)},
        {"no size", bitmapFile(0, 0, 0)},
        {"large", bitmapFile(2000, 1500, 2000 * 3 * 1500)},
    };
    for (const Case& c : cases) {
        const SpoiltSkin skin(c.bytes);
        const ui_test::Stage stage(skin.folder());
        Picture once, again, difference;
        std::string where;
        for (const Scene& scene : oneOfEach()) {
            const int width = ui_test::widthOf(scene.screen);
            once.fill(0x00000000);
            again.fill(0x00FFFFFF);
            stage.paint(scene, once.device(), ui_test::wholeOf(scene.screen));
            stage.paint(scene, again.device(), ui_test::wholeOf(scene.screen));
            EXPECT_EQ(compare(once, again, width, difference, where), 0)
                << c.name << ", screen " << static_cast<int>(scene.screen) << " at " << where;
        }
    }
}

TEST(MissingSkin, ScreensAreBlackWithTexts) {
    const ui_test::Stage stage(u"Z:/no/such/folder/");
    Picture picture;
    Scene scene{.name = "", .screen = Screen::Full, .view = ui_test::playingView()};
    picture.fill(0x00FFFFFF);
    stage.paint(scene, picture.device(), ui_test::wholeOf(scene.screen));
    EXPECT_EQ(picture.at(10, 10), 0u);
    EXPECT_EQ(picture.at(790, 470), 0u);
    int text = 0;
    for (int y = 338; y < 368; ++y) {
        for (int x = 12; x < 627; ++x) {
            text += picture.at(x, y) != 0 ? 1 : 0;
        }
    }
    EXPECT_GT(text, 500);
}

TEST(Objects, NothingIsLeftBehind) {
    const auto objects = [] { return GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS); };
    Picture picture;
    DWORD before = 0;
    for (int round = 0; round < 20; ++round) {
        {
            const ui_test::Stage stage(SKIN_FOLDER);
            for (const Scene& scene : oneOfEach()) {
                stage.paint(scene, picture.device(), ui_test::wholeOf(scene.screen));
            }
        }
        if (round == 1) {
            before = objects();
        }
    }
    EXPECT_EQ(objects(), before);
}

}  // namespace
