// Building the graph of one file and taking it apart.
#include <cstring>

#include "tests/device/graph/com_doubles.h"
#include "tests/device/graph/graph_test.h"

namespace {

using test::Graph;

TEST_F(Graph, RecordingIsPlayedByTheVendorsFilters) {
    EXPECT_EQ(build(L"sound.mp4"), kGraphBuilt);
    EXPECT_TRUE(has("TCC CDK Demux Filter"));
    EXPECT_TRUE(has("TCC Video Renderer"));
    EXPECT_EQ(control_.HasAudioRenderer(), 1);
    EXPECT_EQ(control_.HasNullVideoDecoder(), 0);
    EXPECT_EQ(control_.totalAudioStreams(), 1u);
}

TEST_F(Graph, DemultiplexersValuesAreKept) {
    const auto packed = [](const char(&letters)[5]) {
        DWORD value = 0;
        std::memcpy(&value, letters, sizeof value);
        return value;
    };
    EXPECT_EQ(build(L"two.mkv"), kGraphBuilt);
    EXPECT_EQ(control_.demuxValueA(), 1u) << "streams of pictures";
    EXPECT_EQ(control_.demuxValueB(), 2u) << "streams of sound";
    EXPECT_EQ(control_.demuxValueC(), packed("H264")) << "codec";
    EXPECT_EQ(control_.demuxFlag(), 1u);
    takeApart();
    EXPECT_NE(build(L"silent.mp4"), kGraphFailed);
    EXPECT_EQ(control_.demuxValueA(), 1u);
    EXPECT_EQ(control_.demuxValueB(), 0u);
    EXPECT_EQ(control_.demuxFlag(), 1u);
}

TEST_F(Graph, SecondBuildIsRefusedUntilTheFirstIsGone) {
    EXPECT_EQ(build(L"sound.mp4"), kGraphBuilt);
    EXPECT_EQ(build(L"sound.mp4"), kGraphFailed);
    takeApart();
    EXPECT_EQ(build(L"sound.mp4"), kGraphBuilt);
}

TEST_F(Graph, TeardownLeavesNoReference) {
    for (const wchar_t* name : {L"sound.mp4", L"captions.mp4", L"silent.mp4", L"two.mkv"}) {
        EXPECT_NE(build(name), kGraphFailed);
        run();
        control_.SetAudioClock();
        pump(200);
        const std::string said = takeApart();
        EXPECT_EQ(said.find("RemindRef"), std::string::npos) << said;
        EXPECT_NE(said.find("DeleteFilters() - TCC CDK Demux Filter\r\n"), std::string::npos);
        EXPECT_FALSE(control_.hasGraph());
    }
}

TEST_F(Graph, HeldReferenceIsReported) {
    EXPECT_EQ(build(L"sound.mp4"), kGraphBuilt);
    platform::ComPtr<IGraphBuilder> held;
    control_.builder()->QueryInterface(IID_IGraphBuilder, held.outVoid());
    const std::string said = takeApart();
    EXPECT_NE(said.find("\t\t DestroyFilterGraph::RemindRef=2\n"), std::string::npos) << said;
    EXPECT_FALSE(control_.hasGraph());
}

TEST_F(Graph, UnsupportedVideoEndsInTheNullDecoder) {
    build(L"hevc.mp4");
    EXPECT_EQ(control_.HasNullVideoDecoder(), 1);
    EXPECT_EQ(control_.HasAudioRenderer(), 1);
    takeApart();
    build(L"hevc-silent.mp4");
    EXPECT_EQ(control_.HasNullVideoDecoder(), 1);
    EXPECT_EQ(control_.HasAudioRenderer(), 0);
}

TEST_F(Graph, FileThatCannotBeRenderedKeepsItsReason) {
    for (const wchar_t* name : {L"empty.avi", L"garbage.avi", L"cut.mp4", L"missing.avi"}) {
        EXPECT_EQ(build(name), kGraphFailed);
        EXPECT_TRUE(FAILED(control_.lastRenderResult()));
        takeApart();
    }
}

TEST_F(Graph, ReasonOfTheLastFailureOutlivesASuccess) {
    EXPECT_EQ(build(L"missing.avi"), kGraphFailed);
    const HRESULT reason = control_.lastRenderResult();
    EXPECT_TRUE(FAILED(reason));
    takeApart();
    EXPECT_EQ(build(L"sound.mp4"), kGraphBuilt);
    EXPECT_EQ(control_.lastRenderResult(), reason);
}

TEST_F(Graph, DemultiplexersValuesDoNotOutliveTheirFile) {
    EXPECT_EQ(build(L"sound.mp4"), kGraphBuilt);
    EXPECT_EQ(control_.demuxValueA(), 1u);
    EXPECT_EQ(control_.demuxValueB(), 1u);
    EXPECT_EQ(control_.demuxFlag(), 1u);
    takeApart();
    test::NotingFilter silent;  // stands under the demultiplexer's name and tells nothing
    const test::GraphDouble graph({.joining = &silent, .joiningName = L"TCC CDK Demux Filter"});
    EXPECT_EQ(build(L"sound.mp4"), kGraphBuilt);
    EXPECT_EQ(control_.demuxValueA(), 0u);
    EXPECT_EQ(control_.demuxValueB(), 0u);
    EXPECT_EQ(control_.demuxValueC(), 0u);
    EXPECT_EQ(control_.demuxFlag(), 0u);
    takeApart();
}

// A parser whose output pin is made when its input is connected.
class LateParser final : public test::NotingFilter {
public:
    LateParser() : NotingFilter({vendor::kCaptionParserControl}) {}
    HRESULT STDMETHODCALLTYPE FindPin(LPCWSTR id, IPin** pin) override {
        const bool input = std::wstring(id) == L"Input";
        calls.push_back(input ? "find input" : "find output");
        *pin = input || joined ? &pin_ : nullptr;
        return *pin != nullptr ? S_OK : VFW_E_NOT_FOUND;
    }
    bool joined = false;

private:
    class Pin final : public IPin {
    public:
        explicit Pin(LateParser* parser) : parser_(parser) {}
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
            *object = IsEqualIID(iid, IID_IPin) || IsEqualIID(iid, IID_IUnknown) ? this : nullptr;
            return *object != nullptr ? S_OK : E_NOINTERFACE;
        }
        ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
        ULONG STDMETHODCALLTYPE Release() override { return 1; }
        HRESULT STDMETHODCALLTYPE Connect(IPin*, const AM_MEDIA_TYPE*) override { return E_FAIL; }
        HRESULT STDMETHODCALLTYPE ReceiveConnection(IPin*, const AM_MEDIA_TYPE*) override {
            parser_->joined = true;
            parser_->calls.emplace_back("joined");
            return S_OK;
        }
        HRESULT STDMETHODCALLTYPE Disconnect() override { return S_FALSE; }
        HRESULT STDMETHODCALLTYPE ConnectedTo(IPin**) override { return VFW_E_NOT_CONNECTED; }
        HRESULT STDMETHODCALLTYPE ConnectionMediaType(AM_MEDIA_TYPE*) override { return E_FAIL; }
        HRESULT STDMETHODCALLTYPE QueryPinInfo(PIN_INFO* info) override {
            *info = {};
            info->pFilter = parser_;
            info->pFilter->AddRef();
            info->dir = PINDIR_INPUT;
            return S_OK;
        }
        HRESULT STDMETHODCALLTYPE QueryDirection(PIN_DIRECTION* direction) override {
            *direction = PINDIR_INPUT;
            return S_OK;
        }
        HRESULT STDMETHODCALLTYPE QueryId(LPWSTR*) override { return E_NOTIMPL; }
        HRESULT STDMETHODCALLTYPE QueryAccept(const AM_MEDIA_TYPE*) override { return S_OK; }
        HRESULT STDMETHODCALLTYPE EnumMediaTypes(IEnumMediaTypes**) override { return E_NOTIMPL; }
        HRESULT STDMETHODCALLTYPE QueryInternalConnections(IPin**, ULONG*) override {
            return E_NOTIMPL;
        }
        HRESULT STDMETHODCALLTYPE EndOfStream() override { return S_OK; }
        HRESULT STDMETHODCALLTYPE BeginFlush() override { return S_OK; }
        HRESULT STDMETHODCALLTYPE EndFlush() override { return S_OK; }
        HRESULT STDMETHODCALLTYPE NewSegment(REFERENCE_TIME, REFERENCE_TIME, double) override {
            return S_OK;
        }

    private:
        LateParser* const parser_;
    };
    Pin pin_{this};
};

TEST_F(Graph, CaptionSourceIsJoinedBeforeTheParsersOutputIsLookedFor) {
    LateParser parser;
    const test::CreatedClass created(
        vendor::kCaptionParserClass,
        [&parser](REFIID iid, void** object) { return parser.QueryInterface(iid, object); });
    EXPECT_EQ(build(L"captions.mp4"), kGraphBuilt);
    EXPECT_EQ(parser.calls, (std::vector<std::string>{"subtitle type 0", "duration 4", "find input",
                                                      "joined", "find output"}));
    takeApart();
}

TEST_F(Graph, SamiCaptionsComeBeforeSubRip) {
    EXPECT_EQ(build(L"captions.mp4"), kGraphBuilt);
    EXPECT_TRUE(control_.captionsOn());
    EXPECT_TRUE(has("TCC Caption Parser"));
    EXPECT_TRUE(has("TCC Caption Renderer"));
    EXPECT_TRUE(captionFile().ends_with(L"captions.smi"));
    EXPECT_EQ(control_.SetCaptionPosition(500, 1500), 1);
}

TEST_F(Graph, BrokenCaptionsAreTakenOutAndTheFilePlays) {
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(build(L"broken-captions.mp4"), kGraphBuilt);
    const std::string said = ::testing::internal::GetCapturedStdout();
    EXPECT_NE(said.find("[CFilterControl::CreateFilterForPlaying]ExtCaption Rendering Fail\n"),
              std::string::npos)
        << said;
    EXPECT_FALSE(control_.captionsOn());
    EXPECT_FALSE(has("TCC Caption Parser"));
    EXPECT_FALSE(has("ASYNC Reader"));
    EXPECT_EQ(control_.SetCaptionPosition(0, 0), 0);
    EXPECT_EQ(control_.RunGraph(), 1);
}

DWORD countHandles() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

TEST_F(Graph, TwentyOpeningsLeaveNothingBehind) {
    const auto open = [this] {
        EXPECT_EQ(build(L"sound.mp4"), kGraphBuilt);
        EXPECT_EQ(control_.RunGraph(), 1);
        pump(50);
        takeApart();
    };
    for (int i = 0; i < 5; ++i) {
        open();
    }
    const DWORD handles = countHandles();
    const DWORD objects = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    for (int i = 0; i < 20; ++i) {
        open();
    }
    pump(300);
    EXPECT_LE(countHandles(), handles + 2);
    EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), objects);
}

}  // namespace
