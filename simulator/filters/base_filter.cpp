#include "simulator/filters/base_filter.h"

#include <cwchar>

namespace filters {

namespace {

LONG objects = 0;

}  // namespace

LONG liveObjects() {
    return InterlockedCompareExchange(&objects, 0, 0);
}

void countObject(LONG change) {
    InterlockedExchangeAdd(&objects, change);
}

HRESULT findPinById(const PinList& pins, LPCWSTR id, IPin** out) {
    if (!id || !out) {
        return E_POINTER;
    }
    *out = nullptr;
    for (const ComPtr<IPin>& pin : pins) {
        LPWSTR own = nullptr;
        if (FAILED(pin.Get()->QueryId(&own))) {
            continue;
        }
        const bool found = std::wcscmp(own, id) == 0;
        CoTaskMemFree(own);
        if (found) {
            return pin.CopyTo(out);
        }
    }
    return VFW_E_NOT_FOUND;
}

BaseFilter::BaseFilter(const CLSID& classId) : classId_(classId) {
    countObject(1);
}

BaseFilter::~BaseFilter() {
    countObject(-1);
}

HRESULT BaseFilter::QueryInterface(REFIID iid, void** out) {
    if (!out) {
        return E_POINTER;
    }
    *out = nullptr;
    if (iid == IID_IUnknown || iid == IID_IPersist || iid == IID_IMediaFilter ||
        iid == IID_IBaseFilter) {
        *out = static_cast<IBaseFilter*>(this);
    } else {
        *out = findInterface(iid);
    }
    if (!*out) {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG BaseFilter::AddRef() {
    return static_cast<ULONG>(InterlockedIncrement(&references_));
}

ULONG BaseFilter::Release() {
    const LONG left = InterlockedDecrement(&references_);
    if (!left) {
        references_ = 1;  // pins are released through the filter while it goes away
        delete this;
    }
    return static_cast<ULONG>(left);
}

HRESULT BaseFilter::GetClassID(CLSID* classId) {
    if (!classId) {
        return E_POINTER;
    }
    *classId = classId_;
    return S_OK;
}

HRESULT BaseFilter::Stop() {
    state_ = State_Stopped;
    return S_OK;
}

HRESULT BaseFilter::Pause() {
    state_ = State_Paused;
    return S_OK;
}

HRESULT BaseFilter::Run(REFERENCE_TIME start) {
    start_ = start;
    state_ = State_Running;
    return S_OK;
}

HRESULT BaseFilter::GetState(DWORD, FILTER_STATE* state) {
    if (!state) {
        return E_POINTER;
    }
    *state = state_;
    return S_OK;
}

HRESULT BaseFilter::SetSyncSource(IReferenceClock* clock) {
    clock_ = clock;
    return S_OK;
}

HRESULT BaseFilter::GetSyncSource(IReferenceClock** clock) {
    if (!clock) {
        return E_POINTER;
    }
    return clock_.CopyTo(clock);
}

HRESULT BaseFilter::EnumPins(IEnumPins** out) {
    return enumeratePins(pins(), out);
}

HRESULT BaseFilter::FindPin(LPCWSTR id, IPin** out) {
    return findPinById(pins(), id, out);
}

HRESULT BaseFilter::QueryFilterInfo(FILTER_INFO* info) {
    if (!info) {
        return E_POINTER;
    }
    std::wcscpy(info->achName, name_);
    info->pGraph = graph_;
    if (graph_) {
        graph_->AddRef();
    }
    return S_OK;
}

HRESULT BaseFilter::JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) {
    graph_ = graph;
    name_[0] = L'\0';
    if (name) {
        std::wcsncpy(name_, name, MAX_FILTER_NAME - 1);
        name_[MAX_FILTER_NAME - 1] = L'\0';
    }
    return S_OK;
}

HRESULT BaseFilter::QueryVendorInfo(LPWSTR*) {
    return E_NOTIMPL;
}

void BaseFilter::notify(LONG code, LONG_PTR first, LONG_PTR second) {
    ComPtr<IMediaEventSink> sink;
    if (graph_ && SUCCEEDED(graph_->QueryInterface(IID_PPV_ARGS(&sink)))) {
        sink->Notify(code, first, second);
    }
}

}  // namespace filters
