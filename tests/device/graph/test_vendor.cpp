// What the vendor's filters are told, method by method, and what is said when parts are missing.
#include <deque>

#include "platform/print.h"
#include "tests/device/graph/box_stub.h"
#include "tests/device/graph/com_doubles.h"
#include "tests/device/graph/graph_test.h"

namespace {

using test::CreatedClass;
using test::Graph;
using test::GraphDouble;
using test::GraphPlan;
using test::NotingFilter;
using Calls = std::vector<std::string>;

const std::vector<IID> kRenderer = {vendor::kVideoRenderSwitch, vendor::kChromaKey};

// A fault of the simulated filters, for the length of a scope.
class Fault {
public:
    explicit Fault(const wchar_t* name) : name_(name) {
        const DWORD set = 1;
        RegSetKeyValueW(HKEY_CURRENT_USER, kKey, name, REG_DWORD, &set, sizeof set);
    }
    ~Fault() { RegDeleteKeyValueW(HKEY_CURRENT_USER, kKey, name_); }
    Fault(const Fault&) = delete;

private:
    static constexpr wchar_t kKey[] = L"Software\\HeadUnit\\Faults";
    const wchar_t* name_;
};

class Vendor : public Graph {
protected:
    // Puts `filter` in place of the graph's video renderer, under either of its names.
    void replaceRenderer(NotingFilter& filter, const wchar_t* name) {
        platform::ComPtr<IBaseFilter> renderer;
        control_.builder()->FindFilterByName(L"TCC Video Renderer", renderer.out());
        ASSERT_TRUE(renderer);
        control_.builder()->RemoveFilter(renderer.get());
        ASSERT_EQ(control_.builder()->AddFilter(&filter, name), S_OK);
    }

    // A filter that outlives the test's graph.
    NotingFilter& noting(const std::vector<IID>& offered) { return filters_.emplace_back(offered); }

    // What is printed while `act` runs.
    template <typename Act>
    static std::string printed(Act act) {
        ::testing::internal::CaptureStdout();
        act();
        return ::testing::internal::GetCapturedStdout();
    }

    test::Boxes boxes_;
    std::deque<NotingFilter> filters_;
};

TEST_F(Vendor, RendererIsToldEverythingUnderEitherName) {
    for (const wchar_t* name : {L"TCC Video Renderer", L"TCVideoRenderer"}) {
        control_.setAspect(4, 3);
        NotingFilter& renderer = noting(kRenderer);
        ASSERT_EQ(build(L"sound.mp4"), kGraphBuilt);
        replaceRenderer(renderer, name);
        control_.SetRender(12);
        control_.SetRendererChromakeyValue(1, 2, 3);
        control_.SetColourKey(0xF800F8);
        control_.SetChromakeySwitch(1);
        EXPECT_EQ(control_.SetModeFlag(1, 2, 300, 400), 1);
        EXPECT_EQ(control_.PlaceOutput({801, 481, 10, 10, false, kBackLayer, true}), 1);
        control_.CurrentFrameResize();
        // The third value of the key is never passed on.
        EXPECT_EQ(
            renderer.calls,
            (Calls{"render 12", "key 1 2 1", "key 248 0 248", "key switch 1", "mode 1 4:3",
                   "output 1 2 301 402 mask ffffff enabled 1 layer 36",
                   "output 801 481 811 491 mask ffffff enabled 0 layer 10 repaint", "redraw"}));
        takeApart();
        EXPECT_EQ(renderer.references, 1u);
    }
}

TEST_F(Vendor, RendererOfTheSecondNameAloneIsFound) {
    const Fault fault(L"SecondNameOnly");
    ASSERT_EQ(build(L"sound.mp4"), kGraphBuilt);
    EXPECT_FALSE(has("TCC Video Renderer"));
    EXPECT_TRUE(has("TCVideoRenderer"));
    EXPECT_EQ(control_.PlaceOutput({0, 0, 800, 480, true, kPlayerLayer, true}), 1);
    EXPECT_EQ(control_.RunGraph(), 1);
}

TEST_F(Vendor, RendererWithoutTheSwitchIsSaidSo) {
    NotingFilter& renderer = noting({vendor::kChromaKey});
    ASSERT_EQ(build(L"sound.mp4"), kGraphBuilt);
    replaceRenderer(renderer, L"TCC Video Renderer");
    EXPECT_EQ(printed([this] { control_.SetRender(10); }),
              "Fail Call IID_ITCCVideoRenderSwitch_SetRender Interface");
    EXPECT_EQ(control_.PlaceOutput({}), 0);
    EXPECT_EQ(renderer.calls, Calls{});
}

TEST_F(Vendor, NewGraphGetsTheStoredKeyAndItsFlag) {
    const Fault fault(L"NoVideoRenderer");
    control_.SetRendererChromakeyValue(5, 6, 7);
    for (const DWORD flag : {0u, 1u}) {
        NotingFilter& renderer = noting(kRenderer);
        const GraphDouble graph({.joining = &renderer, .joiningName = L"TCC Video Renderer"});
        control_.setChromaKeyFlag(flag);
        EXPECT_EQ(build(L"sound.mp4"), kGraphBuilt);
        Calls expected = {"mode 1 0:0", "output 0 0 800 480 mask ffffff enabled 1 layer 36",
                          "key 5 6 5"};
        if (flag != 0) {
            expected.emplace_back("render 0");
        }
        EXPECT_EQ(renderer.calls, expected);
        takeApart();
    }
}

TEST_F(Vendor, WalksReachEveryFilterButTheStatusTheFirst) {
    const std::vector<IID> offered = {vendor::kOwnerWindow, vendor::kFilterStatus,
                                      vendor::kStartOption1, vendor::kStartOption2,
                                      vendor::kAudioStreamSelection};
    ASSERT_EQ(build(L"sound.mp4"), kGraphBuilt);
    EXPECT_EQ(control_.FilterStatus(), 1u);
    NotingFilter& second = noting(offered);
    NotingFilter& first = noting(offered);
    ASSERT_EQ(control_.builder()->AddFilter(&second, L"second"), S_OK);
    ASSERT_EQ(control_.builder()->AddFilter(&first, L"first"), S_OK);
    first.statusValue = 2;
    second.statusValue = 5;
    EXPECT_EQ(control_.FilterStatus(), 2u);
    first.statusValue = 0;
    EXPECT_EQ(control_.FilterStatus(), 0u);
    EXPECT_EQ(second.calls, Calls{});
    first.calls.clear();
    EXPECT_EQ(control_.SetOwnerWindow(window_), 1);
    EXPECT_EQ(control_.SetFilterOption(3), 0);
    control_.ClearStartOptions();
    control_.SelectAudioStream(1);
    const Calls expected = {"owner 1", "option 3", "start option 0", "start option 0", "stream 1"};
    EXPECT_EQ(first.calls, expected);
    EXPECT_EQ(second.calls, expected);
    takeApart();
    EXPECT_EQ(first.references, 1u);
}

TEST_F(Vendor, CaptionParserIsToldTheTypeAndTheDuration) {
    const Calls types = {"smi", "srt", "sub", "ssa"};
    for (std::size_t type = 0; type < types.size(); ++type) {
        // Beside the recording lie its subtitles of this type and of all that come after it.
        const std::wstring file = L"from-" + std::wstring(types[type].begin(), types[type].end());
        NotingFilter& parser = noting({vendor::kCaptionParserControl});
        {
            const CreatedClass created(vendor::kCaptionParserClass,
                                       [&parser](REFIID iid, void** object) {
                                           return parser.QueryInterface(iid, object);
                                       });
            EXPECT_EQ(build((file + L".mp4").c_str()), kGraphBuilt);
            EXPECT_EQ(parser.calls, (Calls{"subtitle type " + std::to_string(type), "duration 4"}));
            EXPECT_FALSE(control_.captionsOn());  // it cannot be rendered
            takeApart();
            EXPECT_EQ(parser.references, 1u);
        }
        EXPECT_EQ(build((file + L".mp4").c_str()), kGraphBuilt);
        EXPECT_TRUE(control_.captionsOn());
        EXPECT_TRUE(captionFile().ends_with(L"." + file.substr(file.size() - 3))) << type;
        takeApart();
    }
}

TEST_F(Vendor, CaptionRendererIsToldFaceStyleAndVisibility) {
    const vendor::CaptionStyle style = {.height = 24,
                                        .weight = 700,
                                        .textColour = 0x112233,
                                        .outlineColour = 0x445566,
                                        .outlineWidth = 3,
                                        .bottomMargin = 40,
                                        .alignment = 2};
    NotingFilter& renderer = noting({vendor::kCaptionRendererStyle});
    const CreatedClass created(
        vendor::kCaptionRendererClass,
        [&renderer](REFIID iid, void** object) { return renderer.QueryInterface(iid, object); });
    const GraphDouble graph({.rendersAnyPin = true});
    control_.SetCaptionStyle(style, 1);  // no captions yet
    EXPECT_EQ(build(L"captions.mp4"), kGraphBuilt);
    EXPECT_EQ(renderer.calls, Calls{});
    control_.SetCaptionStyle(style, 1);
    control_.SetCaptionStyle(style, 0);
    EXPECT_EQ(renderer.calls, (Calls{"style arial 24 700 1122867 4478310 3 40 2 visible 1",
                                     "style arial 24 700 1122867 4478310 3 40 2 visible 0"}));
    takeApart();
    EXPECT_EQ(renderer.references, 1u);
}

TEST_F(Vendor, GraphThatCannotBeCreatedIsToldInABoxThenPrinted) {
    const CreatedClass created(CLSID_FilterGraph,
                               [](REFIID, void**) -> HRESULT { return E_ACCESSDENIED; });
    test::Boxes::onBox = [] { platform::print("[box]"); };
    const std::string said = printed([this] { EXPECT_EQ(build(L"sound.mp4"), kGraphFailed); });
    EXPECT_EQ(said,
              "[box][FAIL]CoCreateInstance(e436ebb311ce524f2000539f70a70baf) hr=80070005\r\n");
    EXPECT_EQ(control_.lastRenderResult(), E_ACCESSDENIED);
    ASSERT_EQ(boxes_.shown.size(), 1u);
    EXPECT_EQ(boxes_.shown[0].text,
              L"[FAIL]CoCreateInstance(e436ebb311ce524f2000539f70a70baf), CLSID_FilterGraph fail");
    EXPECT_EQ(boxes_.shown[0].title, L"TCCAMManger");
    EXPECT_EQ(boxes_.shown[0].style, static_cast<UINT>(MB_OK));
    EXPECT_FALSE(control_.hasGraph());
}

TEST_F(Vendor, CaptionChainEndsAtTheFirstFailureAndTheFilePlays) {
    constexpr char kNoCaptions[] =
        "[CFilterControl::CreateFilterForPlaying]ExtCaption Rendering Fail\n";
    {
        const CreatedClass parser(vendor::kCaptionParserClass,
                                  [](REFIID, void**) -> HRESULT { return E_OUTOFMEMORY; });
        const CreatedClass renderer(vendor::kCaptionRendererClass,
                                    [](REFIID, void**) -> HRESULT { return E_OUTOFMEMORY; });
        const std::string said =
            printed([this] { EXPECT_EQ(build(L"captions.mp4"), kGraphBuilt); });
        EXPECT_EQ(said, std::string("[FAIL]CoCreateInstance(f52bdb254f29e1779f3d7a9d6691bc54) "
                                    "hr=8007000e\r\n") +
                            kNoCaptions);
        ASSERT_EQ(boxes_.shown.size(), 1u);
        EXPECT_TRUE(boxes_.shown[0].text.ends_with(L", CLSID_TCCCAPTIONPARSER fail"));
        takeApart();
    }
    const GraphDouble graph({.refusedName = L"TCC Caption Parser"});
    EXPECT_EQ(printed([this] { EXPECT_EQ(build(L"captions.mp4"), kGraphBuilt); }),
              std::string("[FAIL]AddFilter TCC Caption Parser\n") + kNoCaptions);
    EXPECT_FALSE(has("TCC Caption Renderer"));
    EXPECT_FALSE(control_.captionsOn());
    EXPECT_EQ(control_.RunGraph(), 1);
}

TEST_F(Vendor, GraphWithoutMediaControlIsBuiltButDoesNotRun) {
    const GraphDouble graph({.withoutMediaControl = true});
    EXPECT_EQ(printed([this] { EXPECT_EQ(build(L"sound.mp4"), kGraphBuilt); }),
              "ERROR: m_pMC=NULL\r\n");
    EXPECT_EQ(control_.RunGraph(), 0);
    EXPECT_EQ(control_.PauseGraph(), 0);
    EXPECT_EQ(control_.GetDuration(), 0.0);
}

}  // namespace
