// A message box of the building runs messages, and one of them may take the graph apart and build
// the next: what was being built then leaves the newer graph alone.
#include "tests/device/graph/box_stub.h"
#include "tests/device/graph/com_doubles.h"
#include "tests/device/graph/graph_test.h"

namespace {

using test::CreatedClass;
using test::Graph;
using test::NotingFilter;
using Names = std::vector<std::string>;

HRESULT refused(REFIID, void**) {
    return E_OUTOFMEMORY;
}

class Overtaken : public Graph {
protected:
    void SetUp() override {
        Graph::SetUp();
        expectBox();
    }
    void TearDown() override {
        test::Boxes::onBox = nullptr;
        Graph::TearDown();
    }

    // The next box is the one whose messages do something.
    void expectBox() {
        test_ = this;
        opened_ = 0;
        control_.setBoxOpens([] { ++opened_; });
        test::Boxes::onBox = [] {
            test::Boxes::onBox = nullptr;
            EXPECT_EQ(opened_, 1) << "told before the box is open";
            test_->meanwhile();
        };
    }

    // What the messages of the first box do.
    void meanwhile() {
        control_.StopGraph();
        control_.DeleteFilters();
        control_.DestroyFilterGraph();
        if (next_ != nullptr) {
            EXPECT_EQ(build(next_), kGraphBuilt);
            run();
            filtersOfNext_ = filters();
            graphOfNext_ = control_.builder();
        }
    }

    // By name: a graph that starts puts them in another order.
    Names filters() {
        Names names = filterNames();
        std::sort(names.begin(), names.end());
        return names;
    }

    // The graph that was built meanwhile stands and runs as it was left.
    void expectNextUntouched() {
        EXPECT_EQ(control_.builder(), graphOfNext_);
        EXPECT_EQ(filters(), filtersOfNext_);
        EXPECT_TRUE(control_.isRunning());
        EXPECT_FALSE(control_.captionsOn());
        EXPECT_EQ(control_.lastRenderResult(), 0);
    }

    static inline Overtaken* test_ = nullptr;
    static inline int opened_ = 0;
    test::Boxes boxes_;
    const wchar_t* next_ = nullptr;
    Names filtersOfNext_;
    IGraphBuilder* graphOfNext_ = nullptr;
};

TEST_F(Overtaken, GraphThatCannotBeMadeGivesWayToTheOneOfItsBox) {
    int asked = 0;
    const CreatedClass created(CLSID_FilterGraph, [&asked](REFIID iid, void** object) {
        return ++asked == 1 ? E_OUTOFMEMORY : test::makeRealGraph(iid, object);
    });
    next_ = L"sound.mp4";
    EXPECT_EQ(build(L"two.mkv"), kGraphOvertaken);
    expectNextUntouched();
    EXPECT_EQ(control_.totalAudioStreams(), 1u);
    EXPECT_EQ(asked, 2);
}

TEST_F(Overtaken, GraphTakenApartInTheBoxOfItsCaptionsIsNotGoneOnWith) {
    for (const CLSID& part : {vendor::kCaptionParserClass, vendor::kCaptionRendererClass}) {
        expectBox();
        const CreatedClass created(part, refused);
        EXPECT_EQ(build(L"captions.mp4"), kGraphOvertaken);
        EXPECT_FALSE(control_.hasGraph());
        EXPECT_FALSE(control_.captionsOn());
    }
    EXPECT_EQ(boxes_.shown.size(), 2u);
}

TEST_F(Overtaken, GraphBuiltInTheBoxOfAnothersCaptionsIsLeftAlone) {
    const CreatedClass created(vendor::kCaptionParserClass, refused);
    next_ = L"sound.mp4";
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(build(L"captions.mp4"), kGraphOvertaken);
    const std::string said = ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(said.find("ExtCaption Rendering Fail"), std::string::npos) << said;
    expectNextUntouched();
    EXPECT_EQ(boxes_.shown.size(), 1u);
}

TEST_F(Overtaken, ClockOfAGraphTakenApartMeanwhileIsNotSet) {
    const CreatedClass created(CLSID_AudioRender, refused);
    ASSERT_NE(build(L"silent.mp4"), kGraphFailed);
    EXPECT_EQ(control_.SetAudioClock(), E_ABORT);
    EXPECT_FALSE(control_.hasGraph());
    EXPECT_EQ(boxes_.shown.size(), 1u);
    EXPECT_TRUE(boxes_.shown[0].text.ends_with(L", CLSID_AudioRender fail"));
}

TEST_F(Overtaken, ClockOfTheGraphBuiltMeanwhileIsNotSetForTheOldOne) {
    const CreatedClass created(CLSID_AudioRender, refused);
    ASSERT_NE(build(L"silent.mp4"), kGraphFailed);
    next_ = L"two.mkv";
    EXPECT_EQ(control_.SetAudioClock(), E_ABORT);
    expectNextUntouched();
}

}  // namespace
