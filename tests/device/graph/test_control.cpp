// Running the graph, the renderer's and the other settings, and the threads' priorities.
#include <cmath>

#include "graph/thread_priority.h"
#include "tests/device/graph/graph_test.h"

namespace {

using test::Graph;

long volumeOf(IGraphBuilder* builder) {
    platform::ComPtr<IBasicAudio> audio;
    builder->QueryInterface(IID_IBasicAudio, audio.outVoid());
    long volume = 1;
    if (audio) {
        audio->get_Volume(&volume);
    }
    return volume;
}

TEST_F(Graph, VolumeStepsAreTheUnits) {
    build(L"sound.mp4");
    const long steps[] = {-10000, -7500, -6700, -6000, -5300, -4500,
                          -4000,  -3500, -3000, -2400, -1800};
    for (int index = 0; index <= 10; ++index) {
        EXPECT_EQ(control_.SetVolume(index), 1);
        EXPECT_EQ(volumeOf(control_.builder()), steps[index]) << index;
    }
    control_.SetVolume(0);
    control_.SetVolume(11);
    EXPECT_EQ(volumeOf(control_.builder()), -1800);
    control_.SetVolume(0);
    control_.SetVolume(-1);
    EXPECT_EQ(volumeOf(control_.builder()), -1800);
}

TEST_F(Graph, StoppingTwiceIsSkipped) {
    build(L"sound.mp4");
    EXPECT_EQ(control_.RunGraph(), 1);
    EXPECT_TRUE(control_.isRunning());
    EXPECT_EQ(control_.StopGraph(), 1);
    EXPECT_FALSE(control_.isRunning());
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(control_.StopGraph(), 0);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "[TCMovieManager]StopGraph(SKIPPED) since it's already stopped\r\n");
}

TEST_F(Graph, PausingCountsAsRunning) {
    build(L"sound.mp4");
    EXPECT_EQ(control_.PauseGraph(), 1);
    EXPECT_TRUE(control_.isRunning());
    EXPECT_EQ(control_.StopGraph(), 1);
}

TEST_F(Graph, PositionRunsAndSeeks) {
    build(L"sound.mp4");
    EXPECT_NEAR(control_.GetDuration(), 4.0, 0.2);
    EXPECT_EQ(control_.RunGraph(), 1);
    control_.SetAudioClock();
    control_.StartPositionReporting();
    pump(800);
    EXPECT_GT(control_.GetPosition(), 0.1);
    EXPECT_EQ(control_.SetPosition(3.0), 1);
    EXPECT_GE(control_.GetPosition(), 2.9);
    pump(300);
    EXPECT_LT(control_.GetPosition(), 4.1);
    EXPECT_EQ(control_.SetPosition(-1), 0);
    EXPECT_EQ(control_.SetPosition(NAN), 0);
    EXPECT_EQ(control_.SetPosition(1e300), 0);
}

TEST_F(Graph, EndOfTheFileArrivesAsAnEvent) {
    build(L"sound.mp4");
    EXPECT_EQ(control_.RunGraph(), 1);
    control_.SetAudioClock();
    control_.SetPosition(3.5);
    bool complete = false;
    for (int i = 0; i < 50 && !complete; ++i) {
        pump(100);
        long code = 0;
        LONG_PTR param1 = 0, param2 = 0;
        while (SUCCEEDED(control_.GetEvent(code, param1, param2))) {
            EXPECT_EQ(control_.FreeEvent(code, param1, param2), S_OK);
            complete = complete || code == 1;
        }
    }
    EXPECT_TRUE(complete);
}

TEST_F(Graph, WithoutAGraphNothingHappensQuietly) {
    long code = 0;
    LONG_PTR param1 = 0, param2 = 0;
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(control_.RunGraph(), 0);
    EXPECT_EQ(control_.PauseGraph(), 0);
    EXPECT_EQ(control_.StopGraph(), 0);
    EXPECT_EQ(control_.SetVolume(3), 0);
    EXPECT_EQ(control_.SetAudioClock(), E_FAIL);
    EXPECT_EQ(control_.GetEvent(code, param1, param2), E_FAIL);
    EXPECT_EQ(control_.FreeEvent(code, param1, param2), E_FAIL);
    EXPECT_EQ(control_.SetOwnerWindow(window_), 0);
    EXPECT_EQ(control_.FilterStatus(), 1u);
    EXPECT_EQ(control_.GetPosition(), 0.0);
    EXPECT_EQ(control_.HasAudioRenderer(), 0);
    control_.SetRender(10);
    control_.SetRendererChromakeyValue(1, 2, 3);
    control_.CurrentFrameResize();
    control_.DeleteFilters();
    control_.DestroyFilterGraph();
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST_F(Graph, MissingRendererIsToldByEveryOperation) {
    build(L"sound.mp4");
    platform::ComPtr<IBaseFilter> renderer;
    ASSERT_TRUE(
        SUCCEEDED(control_.builder()->FindFilterByName(L"TCC Video Renderer", renderer.out())));
    control_.builder()->RemoveFilter(renderer.get());
    ::testing::internal::CaptureStdout();
    control_.SetRender(10);
    control_.SetRendererChromakeyValue(1, 2, 3);
    EXPECT_EQ(control_.SetModeFlag(0, 0, 800, 480), 0);
    control_.CurrentFrameResize();
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "Fail SetRender"
              "[CFilterControl::SetRendererChromakeyValue]Fail to find Video Render\n"
              "[TCMovieManager]Fail to find Video Render for SetModeFlag\n"
              "[CFilterControl::CurrentFrameResize]Fail to find Video Render\n");
}

TEST_F(Graph, RendererIsFoundUnderItsSecondName) {
    build(L"sound.mp4");
    platform::ComPtr<IBaseFilter> renderer;
    ASSERT_TRUE(
        SUCCEEDED(control_.builder()->FindFilterByName(L"TCC Video Renderer", renderer.out())));
    control_.builder()->RemoveFilter(renderer.get());
    control_.builder()->AddFilter(renderer.get(), L"TCVideoRenderer");
    ::testing::internal::CaptureStdout();
    control_.SetRender(10);
    control_.SetRendererChromakeyValue(1, 2, 3);
    EXPECT_EQ(control_.SetModeFlag(0, 0, 800, 480), 1);
    control_.CurrentFrameResize();
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST_F(Graph, OwnerWindowIsTakenAndStatusAnswered) {
    build(L"sound.mp4");
    EXPECT_EQ(control_.SetOwnerWindow(window_), 1);
    EXPECT_EQ(control_.SetFilterOption(0), 0);
    EXPECT_EQ(control_.SetDemuxOption(1), S_OK);
    EXPECT_EQ(control_.PlaceOutput({0, 0, 800, 480, true, kPlayerLayer, true}), 1);
}

DWORD priority(const wchar_t* name) {
    DWORD value = 0, bytes = sizeof value;
    RegGetValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\DirectShow\\ThreadPriority", name,
                 RRF_RT_REG_DWORD, nullptr, &value, &bytes);
    return value;
}

TEST(ThreadPriority, IsWrittenAndRemovedWithItsParent) {
    EXPECT_EQ(SetDirectShowThreadPriority(1), ERROR_SUCCESS);
    EXPECT_EQ(priority(L"Highest"), 249u);
    EXPECT_EQ(priority(L"AboveNormal"), 250u);
    EXPECT_EQ(priority(L"Normal"), 251u);
    EXPECT_EQ(priority(L"BelowNormal"), 252u);
    EXPECT_EQ(priority(L"Video"), 250u);
    EXPECT_EQ(priority(L"AsyncVideoRenderer"), 249u);
    EXPECT_EQ(SetDirectShowThreadPriority(0), ERROR_SUCCESS);
    HKEY key = nullptr;
    EXPECT_EQ(
        RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\DirectShow", 0, KEY_READ, &key),
        ERROR_FILE_NOT_FOUND);
    EXPECT_NE(SetDirectShowThreadPriority(0), ERROR_SUCCESS);
}

}  // namespace
