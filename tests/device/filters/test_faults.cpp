// The unit misbehaves: cards that are pulled, reads that fail or take their time, files that grow,
// filters that are missing or keep a reference, and events put into the graph from outside.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cwchar>

#include "tests/device/filters/player_window.h"

namespace test {
namespace {

// Has the host's shell append `bytes` zeros to a file of drive H:.
bool appendFromOutside(const wchar_t* name, DWORD bytes) {
    wchar_t command[512];
    swprintf(command, 512, L"sh -c \"head -c %lu /dev/zero >>'%ls/dosdevices/h:/%ls'\"", bytes,
             _wgetenv(L"WINEPREFIX"), name);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(L"Z:\\bin\\sh", command, nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &start, &process)) {
        return false;
    }
    CloseHandle(process.hThread);
    WaitForSingleObject(process.hProcess, 5000);
    CloseHandle(process.hProcess);
    return true;
}

class Faults : public testing::Test {
protected:
    PlayerWindow player;
};

TEST_F(Faults, CardPulledWhilePlayingFailsTheReadOnce) {
    // A volume is a folder of the unit's root; here one of drive H:.
    const std::wstring volume = L"H:\\SDMMCDisk";
    CreateDirectoryW(volume.c_str(), nullptr);
    ASSERT_TRUE(CopyFileW(clip(L"long.mp4").c_str(), (volume + L"\\long.mp4").c_str(), FALSE));
    Graph graph(player);
    ASSERT_EQ(graph.render(volume + L"\\long.mp4"), S_OK);
    graph.setUp();
    ASSERT_TRUE(graph.run());
    player.wait(1000);
    EXPECT_EQ(player.readFailures, 0);
    ASSERT_TRUE(MoveFileW(volume.c_str(), L"H:\\pulled"));
    EXPECT_TRUE(player.wait(15000, [&] { return player.readFailures > 0; }));
    player.wait(500);
    EXPECT_EQ(player.readFailures, 1);
    EXPECT_EQ(graph.tearDown(), 0u);
    DeleteFileW(L"H:\\pulled\\long.mp4");
    RemoveDirectoryW(L"H:\\pulled");
}

TEST_F(Faults, ReadFailsAfterSoManyBytes) {
    const Fault fault(L"ReadFailAfterBytes", 4000000);
    Graph graph(player);
    ASSERT_EQ(graph.render(clip(L"long.mp4")), S_OK);
    graph.setUp();
    ASSERT_TRUE(graph.run());
    EXPECT_TRUE(player.wait(15000, [&] { return player.readFailures > 0; }));
    EXPECT_GT(graph.position(), 0.5);
    EXPECT_EQ(graph.tearDown(), 0u);
}

TEST_F(Faults, SlowCardTakesItsTime) {
    DWORD start = GetTickCount();
    {
        Graph graph(player);
        ASSERT_EQ(graph.render(clip(L"h264.avi")), S_OK);
    }
    const DWORD fast = GetTickCount() - start;
    const Fault fault(L"ReadDelayMilliseconds", 50);
    start = GetTickCount();
    Graph graph(player);
    ASSERT_EQ(graph.render(clip(L"h264.avi")), S_OK);
    EXPECT_GT(GetTickCount() - start, fast + 200);
    graph.setUp();
    ASSERT_TRUE(graph.run());
    EXPECT_TRUE(player.wait(5000, [&] { return graph.position() > 0.5; }));
}

// Reads fail at some moment of opening or of the first second of playing: the file is refused, or
// it opens and the player is told. Nothing waits for the media library for longer than five
// seconds.
class FailingReads : public Faults, public testing::WithParamInterface<const wchar_t*> {};

TEST_P(FailingReads, EndWhatTheyMeet) {
    constexpr DWORD kLongest = 5000;
    for (const DWORD bytes : {1u, 20'000u, 100'000u, 300'000u, 600'000u, 1'200'000u}) {
        const Fault fault(L"ReadFailAfterBytes", bytes);
        player.readFailures = 0;
        const DWORD begun = GetTickCount();
        Graph graph(player);
        const HRESULT rendered = graph.render(clip(GetParam()));
        EXPECT_LT(GetTickCount() - begun, kLongest) << bytes;
        if (SUCCEEDED(rendered)) {
            graph.setUp();
            const DWORD opened = GetTickCount();
            graph.run();
            player.wait(kLongest, [&] { return player.readFailures > 0; });
            EXPECT_EQ(graph.tearDown(), 0u);
            EXPECT_LT(GetTickCount() - opened, 2 * kLongest) << bytes;
        }
        player.wait(kLongest, [&] { return player.readFailures > 0; });
        EXPECT_EQ(player.readFailures, 1) << bytes;
    }
}

INSTANTIATE_TEST_SUITE_P(Containers, FailingReads,
                         testing::Values(L"pull.avi", L"pull.mp4", L"pull.mkv", L"pull.wmv",
                                         L"pull.mpg", L"pull.flv"));

// Takes six seconds: the demultiplexer gives a single read four.
TEST_F(Faults, ReadThatTakesTooLongIsRefusedAndMayStillComeBack) {
    const Fault fault(L"ReadDelayMilliseconds", 5000);
    Graph graph(player);
    const DWORD begun = GetTickCount();
    EXPECT_TRUE(FAILED(graph.render(clip(L"h264.avi"))));
    EXPECT_LT(GetTickCount() - begun, 5000u) << "it was tried more than once";
    EXPECT_EQ(graph.tearDown(), 0u);
    player.wait(2000);
}

TEST_F(Faults, SecondNameOnly) {
    const Fault fault(L"SecondNameOnly", 1);
    Graph graph(player);
    ASSERT_EQ(graph.render(clip(L"h264.mp4")), S_OK);
    EXPECT_FALSE(graph.has(vendor::kVideoRendererName));
    EXPECT_TRUE(graph.has(vendor::kVideoRendererSecondName));
}

TEST_F(Faults, MissingParts) {
    {
        const Fault fault(L"NoAudioRenderer", 1);
        Graph graph(player);
        ASSERT_TRUE(SUCCEEDED(graph.render(clip(L"h264.mp4"))));
        EXPECT_FALSE(graph.has(vendor::kAudioRendererName));
        EXPECT_TRUE(graph.has(vendor::kVideoRendererName));
    }
    {
        const Fault fault(L"NoVideoRenderer", 1);
        Graph graph(player);
        ASSERT_TRUE(SUCCEEDED(graph.render(clip(L"h264.mp4"))));
        EXPECT_TRUE(graph.has(vendor::kAudioRendererName));
        EXPECT_FALSE(graph.has(vendor::kVideoRendererName));
    }
    {
        const Fault fault(L"NullDecoder", 1);
        Graph graph(player);
        ASSERT_EQ(graph.render(clip(L"h264.mp4")), S_OK);
        EXPECT_TRUE(graph.has(vendor::kNullVideoDecoderName));
    }
}

TEST_F(Faults, AudioStreamNotConnected) {
    const Fault fault(L"NotConnectedAudio", 1);
    Graph graph(player);
    ASSERT_EQ(graph.render(clip(L"h264.mp4")), S_OK);
    const auto streams = graph.vendorInterface<vendor::AudioStreams>(vendor::kAudioStreams);
    ASSERT_TRUE(streams);
    DWORD value = 7;
    EXPECT_EQ(streams->streamCount(&value), VFW_E_NOT_CONNECTED);
    EXPECT_EQ(streams->currentStream(&value), VFW_E_NOT_CONNECTED);
}

TEST_F(Faults, LeakedReferenceIsSeenAtTheEnd) {
    const Fault fault(L"LeakReference", 1);
    Graph graph(player);
    ASSERT_EQ(graph.render(clip(L"h264.mp4")), S_OK);
    EXPECT_EQ(graph.tearDown(), 1u);
}

class RenderResults : public Faults, public testing::WithParamInterface<DWORD> {};

TEST_P(RenderResults, ComeOutOfRenderFile) {
    const Fault fault(L"RenderResult", GetParam());
    Graph graph(player);
    EXPECT_EQ(static_cast<DWORD>(graph.render(clip(L"h264.mp4"))), GetParam());
    EXPECT_EQ(graph.tearDown(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Codes, RenderResults,
                         testing::Values(0x80070005, 0x80070006, 0x8007000E, 0x80070057, 0x80004005,
                                         0x80004001, 0x80004002, 0x80004003, 0x80004004,
                                         0x80040265));

class Growing : public Faults {
protected:
    ~Growing() override { DeleteFileW(path_.c_str()); }

    // Plays a copy that the camera still writes to, for 1.5 s.
    void play(Graph& graph) {
        ASSERT_TRUE(CopyFileW(clip(L"h264.avi").c_str(), path_.c_str(), FALSE));
        ASSERT_TRUE(grow(1)) << "the copy has the original's time";
        ASSERT_EQ(graph.render(path_), S_OK);
        graph.setUp();
        ASSERT_TRUE(graph.run());
        player.wait(1500);
    }

    // The camera writes from outside the unit: no handle of this system stands in the way.
    static bool grow(DWORD bytes) { return appendFromOutside(L"growing.avi", bytes); }

    const std::wstring path_ = L"H:\\growing.avi";
};

TEST_F(Growing, FileAnnouncesItsLength) {
    Graph graph(player);
    ASSERT_NO_FATAL_FAILURE(play(graph));
    EXPECT_EQ(player.countEvents(33024), 0) << "it has not grown yet";
    WIN32_FILE_ATTRIBUTE_DATA facts{};
    GetFileAttributesExW(path_.c_str(), GetFileExInfoStandard, &facts);
    ASSERT_TRUE(grow(facts.nFileSizeLow));
    EXPECT_TRUE(player.wait(3000, [&] { return player.countEvents(33773) > 0; }));
    EXPECT_EQ(player.countEvents(33024), 1);
    for (const PlayerWindow::Event& event : player.events) {
        if (event.code == 33773) {
            EXPECT_NEAR(static_cast<double>(event.first), 8, 1) << "twice the bytes of 4 seconds";
        }
    }
    graph.tearDown();
}

class ReopenFailures : public Growing, public testing::WithParamInterface<DWORD> {};

TEST_P(ReopenFailures, EndTheRecording) {
    const Fault fault(L"ReopenFails", GetParam());
    Graph graph(player);
    ASSERT_NO_FATAL_FAILURE(play(graph));
    ASSERT_TRUE(grow(1000000));
    EXPECT_TRUE(player.wait(10000, [&] { return player.countEvents(EC_COMPLETE) > 0; }));
    EXPECT_EQ(player.countEvents(33769), 1) << "the player is told to go on";
    // Nothing may reach for what went away with the first opening.
    const int announced = player.countEvents(33773);
    ASSERT_TRUE(grow(1000000));
    player.wait(2500);
    EXPECT_EQ(player.countEvents(33773), announced);
    graph.pause();
    graph.seek(1);
    graph.stop();
    EXPECT_EQ(graph.tearDown(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ReopenFailures, testing::Values(1, 2));

TEST_F(Faults, LengthByCommand) {
    const Fault fault(L"LiveLength", 77);
    Graph graph(player);
    ASSERT_EQ(graph.render(clip(L"h264.mp4")), S_OK);
    graph.setUp();
    ASSERT_TRUE(graph.run());
    EXPECT_TRUE(player.wait(5000, [&] { return player.countEvents(33773) == 1; }));
    ASSERT_GE(player.events.size(), 2u);
    EXPECT_EQ(player.countEvents(33024), 1);
    EXPECT_EQ(player.events.back().first, 77);
}

TEST_F(Faults, EventFromOutside) {
    Graph graph(player);
    ASSERT_EQ(graph.render(clip(L"h264.mp4")), S_OK);
    const HWND window = FindWindowExW(HWND_MESSAGE, nullptr, L"headunit.filters", nullptr);
    ASSERT_NE(window, nullptr);
    const UINT message = RegisterWindowMessageW(L"HEADUNIT_GRAPH_EVENT");
    EXPECT_EQ(SendMessageW(window, message, 33769, 5), 1);
    EXPECT_TRUE(player.wait(1000, [&] { return player.countEvents(33769) == 1; }));
    EXPECT_EQ(player.events.back().first, 5);
    graph.tearDown();
    EXPECT_EQ(SendMessageW(window, message, 33769, 5), 0) << "no graph";
}

}  // namespace
}  // namespace test
