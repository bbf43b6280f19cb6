// Recordings of every kind play through the vendor's filters: who is in the graph, what is on the
// screen, what a touch on the picture does, and what is left afterwards.
#include <gtest/gtest.h>

#include "tests/device/filters/player_window.h"

namespace test {
namespace {

class Playing : public testing::Test {
protected:
    PlayerWindow player;
};

struct Recording {
    const wchar_t* file;
    bool sound;
    double seconds;
};

class Recordings : public Playing, public testing::WithParamInterface<Recording> {};

TEST_P(Recordings, PlayThroughTheVendorsFilters) {
    const Recording& recording = GetParam();
    Graph graph(player);
    ASSERT_EQ(graph.render(clip(recording.file)), S_OK);
    EXPECT_TRUE(graph.has(vendor::kDemuxName));
    EXPECT_TRUE(graph.has(vendor::kVideoRendererName));
    EXPECT_EQ(graph.has(vendor::kAudioRendererName), recording.sound);
    EXPECT_FALSE(graph.has(vendor::kNullVideoDecoderName));
    EXPECT_EQ(graph.names().size(), recording.sound ? 4u : 3u);
    EXPECT_NEAR(graph.duration(), recording.seconds, 0.5);
    graph.setUp();
    ASSERT_TRUE(graph.run());
    // The upper right corner of the test picture is cyan, see-through where the key is painted.
    EXPECT_TRUE(
        player.wait(3000, [] { return alike(screenPixel(790, 12), RGB(0, 255, 255), 40); }));
    EXPECT_TRUE(alike(screenPixel(400, 450), RGB(30, 40, 50), 0)) << "the bar stands over it";
    EXPECT_TRUE(player.wait(3000, [&] { return graph.position() > 0.5; }));
    EXPECT_EQ(graph.tearDown(), 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, Recordings,
    testing::Values(Recording{L"h264.mp4", true, 8}, Recording{L"h264.avi", true, 4},
                    Recording{L"h264.mkv", true, 4}, Recording{L"mpeg4.avi", true, 4},
                    Recording{L"wmv2.wmv", true, 4}, Recording{L"mpeg2.mpg", true, 4},
                    Recording{L"mjpeg.avi", true, 4}, Recording{L"silent.mp4", false, 2}));

class Undecodable : public Playing, public testing::WithParamInterface<const wchar_t*> {};

TEST_P(Undecodable, LeadsToTheNullDecoder) {
    Graph graph(player);
    ASSERT_EQ(graph.render(clip(GetParam())), S_OK);
    EXPECT_TRUE(graph.has(vendor::kDemuxName));
    EXPECT_TRUE(graph.has(vendor::kNullVideoDecoderName));
    EXPECT_TRUE(graph.has(vendor::kVideoRendererName));
    EXPECT_TRUE(graph.has(vendor::kAudioRendererName));
    EXPECT_EQ(graph.names().size(), 5u);
    EXPECT_EQ(graph.tearDown(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Codecs, Undecodable,
                         testing::Values(L"hevc.mp4", L"hevc.mkv", L"hevc.avi", L"vp9.mkv"));

TEST_F(Playing, SoundOfAnUndecodableFileStillRunsToItsEnd) {
    Graph graph(player);
    ASSERT_EQ(graph.render(clip(L"hevc.mp4")), S_OK);
    graph.setUp();
    ASSERT_TRUE(graph.run());
    EXPECT_TRUE(player.wait(8000, [&] { return player.countEvents(EC_COMPLETE) == 1; }));
    EXPECT_TRUE(alike(screenPixel(400, 200), RGB(0, 0, 0), 0)) << "no picture: black";
}

TEST_F(Playing, NoRecordingIsRefused) {
    for (const wchar_t* name : {L"garbage.mp4", L"empty.avi", L"missing.avi"}) {
        Graph graph(player);
        EXPECT_TRUE(FAILED(graph.render(clip(name)))) << name;
        EXPECT_EQ(graph.tearDown(), 0u);
    }
}

TEST_F(Playing, EndIsAnnouncedOnce) {
    Graph graph(player);
    ASSERT_EQ(graph.render(clip(L"silent.mp4")), S_OK);
    graph.setUp();
    ASSERT_TRUE(graph.run());
    EXPECT_TRUE(player.wait(6000, [&] { return player.countEvents(EC_COMPLETE) > 0; }));
    player.wait(300);
    EXPECT_EQ(player.countEvents(EC_COMPLETE), 1);
}

TEST_F(Playing, SeeksRunningAndPaused) {
    Graph graph(player);
    ASSERT_EQ(graph.render(clip(L"h264.mp4")), S_OK);
    graph.setUp();
    ASSERT_TRUE(graph.run());
    player.wait(700);
    graph.seek(5);
    EXPECT_TRUE(player.wait(2000, [&] { return graph.position() >= 5.2; }));
    EXPECT_LT(graph.position(), 7.5);
    graph.pause();
    player.wait(300);
    const double held = graph.position();
    player.wait(400);
    EXPECT_DOUBLE_EQ(graph.position(), held);
    graph.seek(1);
    player.wait(300);
    EXPECT_NEAR(graph.position(), 1, 0.05);
    ASSERT_TRUE(graph.run());
    EXPECT_TRUE(player.wait(2000, [&] { return graph.position() > 1.3; }));
    EXPECT_EQ(graph.tearDown(), 0u);
}

TEST_F(Playing, TwentyOpeningsLeaveNothingBehind) {
    const auto play = [&] {
        Graph graph(player);
        ASSERT_EQ(graph.render(clip(L"h264.avi")), S_OK);
        graph.setUp();
        ASSERT_TRUE(graph.run());
        player.wait(150);
        ASSERT_EQ(graph.tearDown(), 0u);
    };
    struct Counts {
        DWORD handles = 0, gdi = 0, user = 0;
    };
    const auto count = [] {
        Counts counts;
        GetProcessHandleCount(GetCurrentProcess(), &counts.handles);
        counts.gdi = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
        counts.user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
        return counts;
    };
    for (int i = 0; i < 3; ++i) {
        play();
    }
    player.wait(1000);
    const Counts before = count();
    for (int i = 0; i < 20; ++i) {
        play();
    }
    player.wait(1000);
    const Counts after = count();
    EXPECT_LE(after.handles, before.handles + 4);
    EXPECT_EQ(after.gdi, before.gdi);
    EXPECT_EQ(after.user, before.user);
}

TEST_F(Playing, ValuesOfTheDemultiplexer) {
    Graph graph(player);
    ASSERT_EQ(graph.render(clip(L"two-sounds.mkv")), S_OK);
    const auto values = graph.vendorInterface<vendor::DemuxValues>(vendor::kDemuxValues);
    const auto options = graph.vendorInterface<vendor::DemuxOptions>(vendor::kDemuxOptions);
    const auto streams = graph.vendorInterface<vendor::AudioStreams>(vendor::kAudioStreams);
    const auto selection =
        graph.vendorInterface<vendor::AudioStreamSelection>(vendor::kAudioStreamSelection);
    ASSERT_TRUE(values && options && streams && selection);
    DWORD value = 0;
    EXPECT_EQ(values->valueA(&value), S_OK);
    EXPECT_EQ(value, 1u);
    EXPECT_EQ(values->valueB(&value), S_OK);
    EXPECT_EQ(value, 2u);
    EXPECT_EQ(options->valueC(&value), S_OK);
    EXPECT_EQ(value, static_cast<DWORD>('H' | '2' << 8 | '6' << 16 | '4' << 24));
    EXPECT_EQ(streams->streamCount(&value), S_OK);
    EXPECT_EQ(value, 2u);
    EXPECT_EQ(streams->currentStream(&value), S_OK);
    EXPECT_EQ(value, 0u);
    EXPECT_EQ(selection->selectStream(1), S_OK);
    EXPECT_EQ(streams->currentStream(&value), S_OK);
    EXPECT_EQ(value, 1u);
    EXPECT_EQ(selection->selectStream(2), E_INVALIDARG);
    const auto status = graph.vendorInterface<vendor::FilterStatus>(vendor::kFilterStatus);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->status(&value), S_OK);
    EXPECT_EQ(value, 1u);
}

}  // namespace
}  // namespace test
