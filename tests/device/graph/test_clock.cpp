// Which clock the graph runs by once its audio streams have been counted.
#include "tests/device/graph/com_doubles.h"
#include "tests/device/graph/graph_test.h"

namespace {

using test::NotingFilter;
using Clock = platform::ComPtr<IReferenceClock>;

class AudioClock : public test::Graph {
protected:
    Clock used() {
        platform::ComPtr<IMediaFilter> graph;
        control_.builder()->QueryInterface(IID_IMediaFilter, graph.outVoid());
        Clock clock;
        graph->GetSyncSource(clock.out());
        return clock;
    }

    void use(IReferenceClock* clock) {
        platform::ComPtr<IMediaFilter> graph;
        control_.builder()->QueryInterface(IID_IMediaFilter, graph.outVoid());
        graph->SetSyncSource(clock);
    }

    // Adds a filter of the audio renderer's class with a clock of its own; the graph's walks meet
    // it before those that are there already.
    void addRenderer(NotingFilter& renderer, const wchar_t* name) {
        renderer.classId = CLSID_AudioRender;
        CoCreateInstance(CLSID_SystemClock, nullptr, CLSCTX_INPROC_SERVER, IID_IReferenceClock,
                         renderer.clock.outVoid());
        ASSERT_TRUE(renderer.clock);
        ASSERT_EQ(control_.builder()->AddFilter(&renderer, name), S_OK);
    }

    // What is printed meanwhile.
    std::string setAudioClock() {
        ::testing::internal::CaptureStdout();
        EXPECT_EQ(control_.SetAudioClock(), S_OK);
        return ::testing::internal::GetCapturedStdout();
    }

    NotingFilter first_, second_, third_;
};

TEST_F(AudioClock, SoundlessFileGetsAnAudioRendererForIt) {
    build(L"silent.mp4");
    EXPECT_EQ(control_.totalAudioStreams(), 0u);
    run();
    use(nullptr);
    EXPECT_EQ(setAudioClock(), "[TCMovieManager]m_TotalAudioStreamNum : 0\n");
    platform::ComPtr<IBaseFilter> added;
    control_.builder()->FindFilterByName(L"CLSID_AudioRender", added.out());
    ASSERT_TRUE(added);
    EXPECT_EQ(used().get(), added.query<IReferenceClock>(IID_IReferenceClock).get());
    added.reset();
    const std::string said = takeApart();
    EXPECT_NE(said.find("DeleteFilters() - Audio Renderer\n"), std::string::npos) << said;
}

TEST_F(AudioClock, OfOneStreamStaysAsTheGraphChose) {
    build(L"sound.mp4");
    run();
    addRenderer(first_, L"first");
    use(nullptr);
    EXPECT_EQ(setAudioClock(), "");
    EXPECT_FALSE(used());
    takeApart();
}

// The streams are counted down along the graph's order, from the number there are.
TEST_F(AudioClock, OfTwoStreamsIsThatOfTheOneInUse) {
    for (const DWORD stream : {0u, 1u}) {
        control_.setPendingAudioStream(stream);
        build(L"two.mkv");
        EXPECT_EQ(control_.totalAudioStreams(), 2u);
        EXPECT_EQ(control_.currentAudioStream(), stream);
        addRenderer(third_, L"third");
        addRenderer(second_, L"second");
        addRenderer(first_, L"first");
        use(third_.clock.get());
        EXPECT_EQ(setAudioClock(), "");
        EXPECT_FALSE(has("CLSID_AudioRender"));
        EXPECT_EQ(used().get(), stream == 1 ? first_.clock.get() : second_.clock.get());
        takeApart();
    }
}

}  // namespace
