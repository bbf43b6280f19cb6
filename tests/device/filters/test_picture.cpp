// Where the picture stands on the screen: the output rectangle, the shape of the picture, what
// hides it, the colour key, and the touches that land on it.
#include <gtest/gtest.h>

#include "tests/device/filters/player_window.h"

namespace test {
namespace {

constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kPicture = RGB(0xC0, 0x40, 0x80);  // what wide.mp4 (4 : 1) is filled with

class Picture : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(graph.render(clip(L"wide.mp4")), S_OK);
        graph.setUp();
        video = graph.vendorInterface<vendor::VideoRenderSwitch>(vendor::kVideoRenderSwitch);
        ASSERT_TRUE(video);
        ASSERT_TRUE(graph.run());
        ASSERT_TRUE(becomes(400, 200, kPicture));
    }

    bool becomes(int x, int y, COLORREF colour) {
        return player.wait(1500, [&] { return alike(screenPixel(x, y), colour); });
    }
    void place(RECT rectangle, DWORD enabled = 1) {
        const vendor::VideoOutput output = {rectangle, 0xFFFFFF, enabled, 36, 1};
        EXPECT_EQ(video->setOutput(&output), S_OK);
    }

    PlayerWindow player;
    Graph graph{player};
    ComPtr<vendor::VideoRenderSwitch> video;
};

TEST_F(Picture, FillsItsRectangle) {
    EXPECT_TRUE(alike(screenPixel(3, 3), kPicture));
    EXPECT_TRUE(alike(screenPixel(796, 410), kPicture));
    place({100, 50, 500, 250});
    EXPECT_TRUE(becomes(90, 100, kBlack));
    EXPECT_TRUE(alike(screenPixel(104, 54), kPicture));
    EXPECT_TRUE(alike(screenPixel(496, 246), kPicture));
    EXPECT_TRUE(alike(screenPixel(504, 100), kBlack));
    EXPECT_TRUE(alike(screenPixel(200, 254), kBlack));
    EXPECT_TRUE(alike(screenPixel(200, 46), kBlack));
}

TEST_F(Picture, KeepsItsShapeWithBars) {
    ASSERT_EQ(video->setModeFlags(vendor::kKeepAspectRatio, 4, 1), S_OK);
    EXPECT_TRUE(becomes(400, 100, kBlack));  // 800 x 200 in the middle of 800 x 480
    EXPECT_TRUE(alike(screenPixel(400, 136), kBlack));
    EXPECT_TRUE(alike(screenPixel(4, 144), kPicture));
    EXPECT_TRUE(alike(screenPixel(796, 336), kPicture));
    EXPECT_TRUE(alike(screenPixel(400, 344), kBlack));
    ASSERT_EQ(video->setModeFlags(vendor::kKeepAspectRatio, 1, 2), S_OK);
    EXPECT_TRUE(becomes(270, 240, kBlack));  // 240 x 480
    EXPECT_TRUE(alike(screenPixel(284, 10), kPicture));
    ASSERT_EQ(video->setModeFlags(vendor::kKeepAspectRatio, 0, 0), S_OK);
    EXPECT_TRUE(becomes(400, 100, kBlack)) << "its own 4 : 1";
    ASSERT_EQ(video->setModeFlags(0, 4, 1), S_OK);
    EXPECT_TRUE(becomes(400, 100, kPicture));
}

TEST_F(Picture, IsHiddenByEveryWayOfHidingIt) {
    const RECT full = {0, 0, 800, 480};
    place(full, 0);
    EXPECT_TRUE(becomes(400, 200, kBlack));
    place(full);
    EXPECT_TRUE(becomes(400, 200, kPicture));
    video->setRender(12);
    EXPECT_TRUE(becomes(400, 200, kBlack));
    video->setRender(0);  // leaves it as it is
    player.wait(150);
    EXPECT_TRUE(alike(screenPixel(400, 200), kBlack));
    video->setRender(10);
    EXPECT_TRUE(becomes(400, 200, kPicture));
    place({801, 481, 811, 491});
    EXPECT_TRUE(becomes(400, 200, kBlack));
    place({0, 480, 100, 580});
    player.wait(150);
    EXPECT_TRUE(alike(screenPixel(50, 200), kBlack));
    place(full);
    EXPECT_TRUE(becomes(400, 200, kPicture));
}

TEST_F(Picture, FollowsItsOwner) {
    SetWindowPos(player.window(), HWND_BOTTOM, 400, 0, 400, 480, SWP_SHOWWINDOW);
    place({0, 0, 400, 200});
    EXPECT_TRUE(becomes(600, 210, kBlack));
    EXPECT_TRUE(becomes(404, 4, kPicture));
    EXPECT_FALSE(alike(screenPixel(396, 100), kPicture));
    EXPECT_TRUE(alike(screenPixel(600, 450), RGB(30, 40, 50), 0)) << "the bar stands over it";
    ShowWindow(player.window(), SW_HIDE);
    EXPECT_TRUE(player.wait(1000, [] { return !alike(screenPixel(600, 100), kPicture); }));
    ShowWindow(player.window(), SW_SHOW);
    EXPECT_TRUE(becomes(600, 100, kPicture));
    EXPECT_TRUE(becomes(600, 450, RGB(30, 40, 50))) << "the bar stands over it";
}

TEST_F(Picture, ShowsThroughTheKeyOnly) {
    const auto key = graph.vendorInterface<vendor::ChromaKey>(vendor::kChromaKey);
    ASSERT_TRUE(key);
    key->setKey(0, 0x80, 0);
    EXPECT_TRUE(becomes(400, 200, RGB(0xF8, 0, 0xF8))) << "the owner paints another colour";
    key->setKey(0, 0, 0);  // the chip's own
    EXPECT_TRUE(becomes(400, 200, kPicture));
    key->enableKey(0);
    EXPECT_TRUE(becomes(400, 200, RGB(0xF8, 0, 0xF8)));
    key->enableKey(1);
    EXPECT_TRUE(becomes(400, 200, kPicture));
}

TEST_F(Picture, StaysAwayAfterTheGraph) {
    video.Reset();
    EXPECT_EQ(graph.tearDown(), 0u);
    EXPECT_TRUE(becomes(400, 200, kBlack));
    EXPECT_TRUE(alike(screenPixel(400, 450), RGB(30, 40, 50), 0));
}

TEST_F(Picture, TouchReachesTheOwner) {
    SetCursorPos(300, 100);
    mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
    mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
    ASSERT_TRUE(player.wait(1000, [&] { return !player.touches.empty(); }));
    EXPECT_EQ(player.touches[0].x, 300);
    EXPECT_EQ(player.touches[0].y, 100);
}

}  // namespace
}  // namespace test
