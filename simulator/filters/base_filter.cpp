#include "simulator/filters/base_filter.h"

#include <cwchar>

namespace filters {

HRESULT BaseFilter::QueryInterface(REFIID iid, void** out) {
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

HRESULT BaseFilter::FindPin(LPCWSTR id, IPin** out) {
    *out = nullptr;
    for (const ComPtr<IPin>& pin : pins()) {
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

HRESULT BaseFilter::QueryFilterInfo(FILTER_INFO* info) {
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

}  // namespace filters
