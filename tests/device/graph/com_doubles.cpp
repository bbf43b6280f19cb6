#include "tests/device/graph/com_doubles.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <new>

namespace test {
namespace {

// Hands everything on to a real graph but what the plan says.
class PlannedGraph final : public IGraphBuilder {
public:
    PlannedGraph(platform::ComPtr<IGraphBuilder> real, GraphPlan plan)
        : real_(std::move(real)), plan_(std::move(plan)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (IsEqualIID(iid, IID_IGraphBuilder) || IsEqualIID(iid, IID_IFilterGraph) ||
            IsEqualIID(iid, IID_IUnknown)) {
            *object = static_cast<IGraphBuilder*>(this);
            AddRef();
            return S_OK;
        }
        if (plan_.withoutMediaControl && IsEqualIID(iid, IID_IMediaControl)) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        if (plan_.answers) {
            const HRESULT answer = plan_.answers(iid, object);
            if (answer != E_NOINTERFACE) {
                return answer;
            }
        }
        return real_->QueryInterface(iid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }

    HRESULT STDMETHODCALLTYPE AddFilter(IBaseFilter* filter, LPCWSTR name) override {
        return name != nullptr && plan_.refusedName == name ? E_OUTOFMEMORY
                                                            : real_->AddFilter(filter, name);
    }
    HRESULT STDMETHODCALLTYPE RemoveFilter(IBaseFilter* filter) override {
        return real_->RemoveFilter(filter);
    }
    HRESULT STDMETHODCALLTYPE EnumFilters(IEnumFilters** filters) override {
        return real_->EnumFilters(filters);
    }
    HRESULT STDMETHODCALLTYPE FindFilterByName(LPCWSTR name, IBaseFilter** filter) override {
        if (plan_.joining != nullptr && plan_.joiningName == name) {
            plan_.joining->AddRef();
            *filter = plan_.joining;
            return S_OK;
        }
        return real_->FindFilterByName(name, filter);
    }
    HRESULT STDMETHODCALLTYPE ConnectDirect(IPin* out, IPin* in,
                                            const AM_MEDIA_TYPE* type) override {
        return real_->ConnectDirect(out, in, type);
    }
    HRESULT STDMETHODCALLTYPE Reconnect(IPin* pin) override { return real_->Reconnect(pin); }
    HRESULT STDMETHODCALLTYPE Disconnect(IPin* pin) override { return real_->Disconnect(pin); }
    HRESULT STDMETHODCALLTYPE SetDefaultSyncSource() override {
        return real_->SetDefaultSyncSource();
    }
    HRESULT STDMETHODCALLTYPE Connect(IPin* out, IPin* in) override {
        return real_->Connect(out, in);
    }
    HRESULT STDMETHODCALLTYPE Render(IPin* out) override {
        return plan_.rendersAnyPin ? S_OK : real_->Render(out);
    }
    HRESULT STDMETHODCALLTYPE RenderFile(LPCWSTR path, LPCWSTR playList) override {
        const HRESULT result = real_->RenderFile(path, playList);
        if (SUCCEEDED(result) && plan_.joining != nullptr) {
            real_->AddFilter(plan_.joining, plan_.joiningName.c_str());
        }
        return result;
    }
    HRESULT STDMETHODCALLTYPE AddSourceFilter(LPCWSTR path, LPCWSTR name,
                                              IBaseFilter** filter) override {
        return real_->AddSourceFilter(path, name, filter);
    }
    HRESULT STDMETHODCALLTYPE SetLogFile(DWORD_PTR file) override {
        return real_->SetLogFile(file);
    }
    HRESULT STDMETHODCALLTYPE Abort() override { return real_->Abort(); }
    HRESULT STDMETHODCALLTYPE ShouldOperationContinue() override {
        return real_->ShouldOperationContinue();
    }

private:
    platform::ComPtr<IGraphBuilder> real_;
    GraphPlan plan_;
    ULONG references_ = 1;
};

// No pins at all; a graph asks every filter for its pins when it starts.
class NoPins final : public IEnumPins {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE Next(ULONG, IPin**, ULONG*) override { return S_FALSE; }
    HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return S_FALSE; }
    HRESULT STDMETHODCALLTYPE Reset() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Clone(IEnumPins**) override { return E_NOTIMPL; }
};

}  // namespace

HRESULT makeRealGraph(REFIID iid, void** object) {
    using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
    const auto getClassObject = reinterpret_cast<GetClassObject>(
        reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(L"quartz.dll"), "DllGetClassObject")));
    platform::ComPtr<IClassFactory> factory;
    const HRESULT result = getClassObject(CLSID_FilterGraph, IID_IClassFactory, factory.outVoid());
    return SUCCEEDED(result) ? factory->CreateInstance(nullptr, iid, object) : result;
}

CreatedClass::CreatedClass(REFCLSID classId, Make make) : make_(std::move(make)) {
    CoRegisterClassObject(classId, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
}

CreatedClass::~CreatedClass() {
    CoRevokeClassObject(cookie_);
}

HRESULT CreatedClass::QueryInterface(REFIID iid, void** object) {
    const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IClassFactory);
    *object = known ? static_cast<IClassFactory*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
}

HRESULT CreatedClass::CreateInstance(IUnknown*, REFIID iid, void** object) {
    *object = nullptr;
    return make_(iid, object);
}

HRESULT NotingFilter::QueryInterface(REFIID iid, void** object) {
    struct Row {
        const IID* iid;
        void* object;
    };
    const std::array<Row, 9> vendorRows = {{
        {&vendor::kOwnerWindow, static_cast<vendor::OwnerWindow*>(this)},
        {&vendor::kFilterStatus, static_cast<vendor::FilterStatus*>(this)},
        {&vendor::kStartOption1, static_cast<vendor::StartOption*>(this)},
        {&vendor::kStartOption2, static_cast<vendor::StartOption*>(this)},
        {&vendor::kAudioStreamSelection, static_cast<vendor::AudioStreamSelection*>(this)},
        {&vendor::kChromaKey, static_cast<vendor::ChromaKey*>(this)},
        {&vendor::kVideoRenderSwitch, static_cast<vendor::VideoRenderSwitch*>(this)},
        {&vendor::kCaptionParserControl, static_cast<vendor::CaptionParserControl*>(this)},
        {&vendor::kCaptionRendererStyle, static_cast<vendor::CaptionRendererStyle*>(this)},
    }};
    *object = nullptr;
    if (clock && IsEqualIID(iid, IID_IReferenceClock)) {
        return clock->QueryInterface(iid, object);
    }
    for (const IID* own : {&IID_IUnknown, &IID_IPersist, &IID_IMediaFilter, &IID_IBaseFilter}) {
        if (IsEqualIID(iid, *own)) {
            *object = static_cast<IBaseFilter*>(this);
        }
    }
    for (const Row& row : vendorRows) {
        if (IsEqualIID(iid, *row.iid) &&
            std::find(offered.begin(), offered.end(), iid) != offered.end()) {
            *object = row.object;
        }
    }
    if (*object == nullptr) {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

HRESULT NotingFilter::GetClassID(CLSID* id) {
    *id = classId;
    return S_OK;
}

HRESULT NotingFilter::GetState(DWORD, FILTER_STATE* state) {
    *state = State_Stopped;
    return S_OK;
}

HRESULT NotingFilter::GetSyncSource(IReferenceClock** source) {
    *source = nullptr;
    return S_OK;
}

HRESULT NotingFilter::EnumPins(IEnumPins** pins) {
    static NoPins none;
    *pins = &none;
    return S_OK;
}

HRESULT NotingFilter::FindPin(LPCWSTR, IPin** pin) {
    *pin = nullptr;
    return VFW_E_NOT_FOUND;
}

HRESULT NotingFilter::QueryFilterInfo(FILTER_INFO* info) {
    name_.copy(info->achName, MAX_FILTER_NAME - 1);
    info->achName[std::min<std::size_t>(name_.size(), MAX_FILTER_NAME - 1)] = L'\0';
    info->pGraph = graph_;
    if (graph_ != nullptr) {
        graph_->AddRef();
    }
    return S_OK;
}

HRESULT NotingFilter::JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) {
    graph_ = graph;
    name_ = graph != nullptr && name != nullptr ? name : L"";
    return S_OK;
}

HRESULT NotingFilter::note(const char* format, ...) {
    std::array<char, 128> line{};
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line.data(), line.size(), format, arguments);
    va_end(arguments);
    calls.emplace_back(line.data());
    return S_OK;
}

HRESULT NotingFilter::setOwnerWindow(HWND window) {
    return note("owner %d", window != nullptr ? 1 : 0);
}

HRESULT NotingFilter::setOption(DWORD value) {
    return note("option %lu", value);
}

HRESULT NotingFilter::status(DWORD* value) {
    *value = statusValue;
    return note("status");
}

HRESULT NotingFilter::setValue(DWORD value) {
    return note("start option %lu", value);
}

HRESULT NotingFilter::selectStream(DWORD index) {
    return note("stream %lu", index);
}

HRESULT NotingFilter::setKey(DWORD red, DWORD green, DWORD blue) {
    return note("key %lu %lu %lu", red, green, blue);
}

HRESULT NotingFilter::enableKey(DWORD enable) {
    return note("key switch %lu", enable);
}

HRESULT NotingFilter::setRender(DWORD value) {
    return note("render %lu", value);
}

HRESULT NotingFilter::setOutput(const vendor::VideoOutput* output) {
    const RECT& place = output->rectangle;
    return note("output %ld %ld %ld %ld mask %lx enabled %lu layer %lu%s", place.left, place.top,
                place.right, place.bottom, output->colourKeyMask, output->enabled, output->layer,
                output->repaint == 1 ? " repaint" : "");
}

HRESULT NotingFilter::setModeFlags(DWORD flags, DWORD aspectX, DWORD aspectY) {
    return note("mode %lu %lu:%lu", flags, aspectX, aspectY);
}

HRESULT NotingFilter::redrawFrame() {
    return note("redraw");
}

HRESULT NotingFilter::setSubtitleType(DWORD type) {
    return note("subtitle type %lu", type);
}

HRESULT NotingFilter::setDuration(double seconds) {
    return note("duration %.0f", seconds);
}

HRESULT NotingFilter::setPosition(DWORD a, DWORD b) {
    return note("position %lu %lu", a, b);
}

HRESULT NotingFilter::setStyle(const wchar_t* face, const vendor::CaptionStyle* style,
                               DWORD visible) {
    return note("style %ls %lu %lu %lu %lu %lu %lu %lu visible %lu", face, style->height,
                style->weight, style->textColour, style->outlineColour, style->outlineWidth,
                style->bottomMargin, style->alignment, visible);
}

GraphDouble::GraphDouble(GraphPlan plan)
    : plan_(std::move(plan)), created_(CLSID_FilterGraph, [this](REFIID iid, void** object) {
          platform::ComPtr<IGraphBuilder> real;
          const HRESULT result = makeRealGraph(IID_IGraphBuilder, real.outVoid());
          if (FAILED(result)) {
              return result;
          }
          platform::ComPtr<PlannedGraph> planned;
          *planned.out() = new (std::nothrow) PlannedGraph(std::move(real), plan_);
          return planned ? planned->QueryInterface(iid, object) : E_OUTOFMEMORY;
      }) {
}

}  // namespace test
