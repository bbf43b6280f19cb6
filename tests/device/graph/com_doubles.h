// Stand-ins for COM objects that a graph is made of: what CoCreateInstance gives the class under
// test, a graph whose parts can be refused, and a filter that writes down what it is told. They
// hold for this process and its multi-threaded apartment.
#pragma once

#include <dshow.h>
#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "graph/vendor_interfaces.h"
#include "platform/com_ptr.h"

namespace test {

// Answers the creation of one class for the length of a scope.
class CreatedClass : public IClassFactory {
public:
    using Make = std::function<HRESULT(REFIID iid, void** object)>;
    CreatedClass(REFCLSID classId, Make make);
    ~CreatedClass();
    CreatedClass(const CreatedClass&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    Make make_;
    DWORD cookie_ = 0;
};

// A filter without pins that lives as long as the test holds it. It offers the vendor's interfaces
// in `offered` and appends what it is told to `calls`, a line each: "render 12".
class NotingFilter : public IBaseFilter,
                     public vendor::OwnerWindow,
                     public vendor::FilterStatus,
                     public vendor::StartOption,
                     public vendor::AudioStreamSelection,
                     public vendor::ChromaKey,
                     public vendor::VideoRenderSwitch,
                     public vendor::CaptionParserControl,
                     public vendor::CaptionRendererStyle {
public:
    explicit NotingFilter(std::vector<IID> offeredInterfaces = {})
        : offered(std::move(offeredInterfaces)) {}

    std::vector<IID> offered;
    std::vector<std::string> calls;
    DWORD statusValue = 1;
    CLSID classId = {};
    platform::ComPtr<IReferenceClock> clock;  // given out when there is one
    ULONG references = 1;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* id) override;
    HRESULT STDMETHODCALLTYPE Stop() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Pause() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetState(DWORD, FILTER_STATE* state) override;
    HRESULT STDMETHODCALLTYPE SetSyncSource(IReferenceClock*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetSyncSource(IReferenceClock** source) override;
    HRESULT STDMETHODCALLTYPE EnumPins(IEnumPins** pins) override;
    HRESULT STDMETHODCALLTYPE FindPin(LPCWSTR, IPin** pin) override;
    HRESULT STDMETHODCALLTYPE QueryFilterInfo(FILTER_INFO* info) override;
    HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) override;
    HRESULT STDMETHODCALLTYPE QueryVendorInfo(LPWSTR*) override { return E_NOTIMPL; }

    HRESULT STDMETHODCALLTYPE method1() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE setOwnerWindow(HWND window) override;
    HRESULT STDMETHODCALLTYPE method3() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE method4() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE method5() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE setOption(DWORD value) override;
    HRESULT STDMETHODCALLTYPE status(DWORD* value) override;
    HRESULT STDMETHODCALLTYPE setValue(DWORD value) override;
    HRESULT STDMETHODCALLTYPE selectStream(DWORD index) override;
    HRESULT STDMETHODCALLTYPE setKey(DWORD red, DWORD green, DWORD blue) override;
    HRESULT STDMETHODCALLTYPE enableKey(DWORD enable) override;
    HRESULT STDMETHODCALLTYPE setRender(DWORD value) override;
    HRESULT STDMETHODCALLTYPE setOutput(const vendor::VideoOutput* output) override;
    HRESULT STDMETHODCALLTYPE setModeFlags(DWORD flags, DWORD aspectX, DWORD aspectY) override;
    HRESULT STDMETHODCALLTYPE redrawFrame() override;
    HRESULT STDMETHODCALLTYPE setSubtitleType(DWORD type) override;
    HRESULT STDMETHODCALLTYPE setDuration(double seconds) override;
    HRESULT STDMETHODCALLTYPE setPosition(DWORD a, DWORD b) override;
    HRESULT STDMETHODCALLTYPE setStyle(const wchar_t* face, const vendor::CaptionStyle* style,
                                       DWORD visible) override;

private:
    HRESULT note(const char* format, ...);

    IFilterGraph* graph_ = nullptr;  // a graph outlives its filters' membership
    std::wstring name_;
};

// What CoCreateInstance gives for CLSID_FilterGraph where nothing answers in its place.
HRESULT makeRealGraph(REFIID iid, void** object);

// The graph that is created next is a real one behind this.
struct GraphPlan {
    // Asked before the real graph for an interface; answers E_NOINTERFACE where it should go on to
    // that, anything else is the answer.
    std::function<HRESULT(REFIID iid, void** object)> answers = {};
    bool withoutMediaControl = false;
    bool rendersAnyPin = false;     // nothing is connected to the pin
    std::wstring refusedName = {};  // a filter of this name cannot be added
    // Joins under its name once the file is rendered; the graph's walks meet it first, and by that
    // name no other filter is found.
    NotingFilter* joining = nullptr;
    std::wstring joiningName = {};
};

class GraphDouble {
public:
    explicit GraphDouble(GraphPlan plan = {});

private:
    GraphPlan plan_;
    CreatedClass created_;
};

}  // namespace test
