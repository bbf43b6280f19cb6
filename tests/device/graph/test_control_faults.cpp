// What is said when the graph does not start, pause or stop, and how it is told which window hears
// of its events: with a media control and an event source of the test's own.
#include <array>

#include "tests/device/graph/com_doubles.h"
#include "tests/device/graph/graph_test.h"

namespace {

using test::Graph;
using test::GraphDouble;

// What each automation interface starts with, of no use here.
template <typename Interface, const IID& kId>
class Automation : public Interface {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const bool known = IsEqualIID(iid, kId) || IsEqualIID(iid, IID_IUnknown);
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return E_NOTIMPL;
    }
};

class Control final : public Automation<IMediaControl, IID_IMediaControl> {
public:
    HRESULT run = S_OK, pause = S_OK, stop = S_OK;

    HRESULT STDMETHODCALLTYPE Run() override { return run; }
    HRESULT STDMETHODCALLTYPE Pause() override { return pause; }
    HRESULT STDMETHODCALLTYPE Stop() override { return stop; }
    HRESULT STDMETHODCALLTYPE GetState(LONG, OAFilterState*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RenderFile(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE AddSourceFilter(BSTR, IDispatch**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_FilterCollection(IDispatch**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_RegFilterCollection(IDispatch**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE StopWhenReady() override { return E_NOTIMPL; }
};

class Events final : public Automation<IMediaEventEx, IID_IMediaEventEx> {
public:
    struct Told {
        OAHWND window;
        long message;
        LONG_PTR parameter;
        bool operator==(const Told&) const = default;
    };
    std::vector<Told> told;
    std::size_t filtersThen = 0;  // in the graph when it was told the last time
    std::function<std::size_t()> filters;

    HRESULT STDMETHODCALLTYPE SetNotifyWindow(OAHWND window, long message,
                                              LONG_PTR parameter) override {
        told.push_back({window, message, parameter});
        filtersThen = filters();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetNotifyFlags(long) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetNotifyFlags(long*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetEventHandle(OAEVENT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetEvent(long*, LONG_PTR*, LONG_PTR*, long) override {
        return E_ABORT;
    }
    HRESULT STDMETHODCALLTYPE WaitForCompletion(long, long*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CancelDefaultHandling(long) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RestoreDefaultHandling(long) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FreeEventParams(long, LONG_PTR, LONG_PTR) override { return S_OK; }
};

class ControlFaults : public Graph {
protected:
    template <typename Act>
    static std::string printed(Act act) {
        ::testing::internal::CaptureStdout();
        act();
        return ::testing::internal::GetCapturedStdout();
    }

    // The graph that is built next has the test's media control, while there is one.
    test::GraphPlan withControl() {
        return {.answers = [this](REFIID iid, void** object) {
            return control != nullptr ? control->QueryInterface(iid, object) : E_NOINTERFACE;
        }};
    }

    Control faulty;
    Control* control = &faulty;
};

TEST_F(ControlFaults, RunThatFailsIsPrintedAndTheGraphDoesNotCountAsRunning) {
    const GraphDouble graph(withControl());
    ASSERT_EQ(build(L"sound.mp4"), kGraphBuilt);
    faulty.run = static_cast<HRESULT>(0x80040265);
    EXPECT_EQ(printed([this] { EXPECT_EQ(control_.RunGraph(), 0); }),
              "[CFilterControl::RunGraph]Fail : RunGraph(ret=0x80040265)\r\n");
    EXPECT_FALSE(control_.isRunning());
    faulty.run = S_FALSE;  // still on its way is a success
    EXPECT_EQ(printed([this] { EXPECT_EQ(control_.RunGraph(), 1); }),
              "[CFilterControl::RunGraph]Succeed RunGraph\r\n");
    EXPECT_TRUE(control_.isRunning());
}

TEST_F(ControlFaults, PauseThatFailsIsPrintedAndTheGraphDoesNotCountAsRunning) {
    const GraphDouble graph(withControl());
    ASSERT_EQ(build(L"sound.mp4"), kGraphBuilt);
    faulty.pause = E_FAIL;
    EXPECT_EQ(printed([this] { EXPECT_EQ(control_.PauseGraph(), 0); }),
              "[CFilterControl::PauseGraph]Fail : PauseGraph(ret=0x80004005)\r\n");
    EXPECT_FALSE(control_.isRunning());
    faulty.pause = S_FALSE;
    EXPECT_EQ(printed([this] { EXPECT_EQ(control_.PauseGraph(), 1); }), "");
    EXPECT_TRUE(control_.isRunning());
}

TEST_F(ControlFaults, StopThatFailsIsPrintedAndTheGraphGoesOnRunning) {
    const GraphDouble graph(withControl());
    ASSERT_EQ(build(L"sound.mp4"), kGraphBuilt);
    ASSERT_EQ(control_.RunGraph(), 1);
    faulty.stop = E_UNEXPECTED;
    EXPECT_EQ(printed([this] { EXPECT_EQ(control_.StopGraph(), 0); }),
              "[TCMovieManager]Fail : StopGraph 0x8000ffff\n");
    EXPECT_TRUE(control_.isRunning());
    faulty.stop = S_FALSE;
    EXPECT_EQ(printed([this] { EXPECT_EQ(control_.StopGraph(), 1); }),
              "[TCMovieManager]Succeed to stop Graph\n");
    EXPECT_FALSE(control_.isRunning());
}

TEST_F(ControlFaults, GraphThatLostItsMediaControlIsSaidSoWhenItIsToStop) {
    const GraphDouble graph({.answers = [this](REFIID iid, void** object) -> HRESULT {
        if (control == nullptr && IsEqualIID(iid, IID_IMediaControl)) {
            return E_POINTER;
        }
        return control != nullptr ? control->QueryInterface(iid, object) : E_NOINTERFACE;
    }});
    ASSERT_EQ(build(L"sound.mp4"), kGraphBuilt);
    ASSERT_EQ(control_.RunGraph(), 1);
    control = nullptr;
    EXPECT_EQ(printed([this] { EXPECT_EQ(control_.StopGraph(), 0); }),
              "[TCMovieManager]Fail : mpGraph->QueryInterface(IID_IMediaControl)\n");
    EXPECT_TRUE(control_.isRunning());
    EXPECT_EQ(printed([this] { EXPECT_EQ(control_.RunGraph(), 0); }), "");
    EXPECT_EQ(printed([this] { EXPECT_EQ(control_.PauseGraph(), 0); }), "");
}

TEST_F(ControlFaults, WindowHearsOfEventsFromTheBuildingUntilTheFiltersGo) {
    Events events;
    events.filters = [this] { return filterNames().size(); };
    const GraphDouble graph({.answers = [&events](REFIID iid, void** object) {
        return events.QueryInterface(iid, object);
    }});
    const std::vector<Events::Told> asked = {
        {reinterpret_cast<OAHWND>(window_), 0x8001, 0},
        {0, 0x8001, 0},
    };
    ASSERT_EQ(build(L"sound.mp4"), kGraphBuilt);
    EXPECT_EQ(events.told, (std::vector<Events::Told>{asked[0]}));
    const std::size_t built = events.filtersThen;
    EXPECT_GE(built, 3u);
    control_.DeleteFilters();
    EXPECT_EQ(events.told, asked);
    EXPECT_EQ(events.filtersThen, built) << "before the first filter goes";
    control_.DestroyFilterGraph();
    EXPECT_EQ(events.told, asked);
}

}  // namespace
