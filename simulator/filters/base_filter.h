// What all filters of the head unit share: reference count, name and graph, state and clock. A
// filter is created by the class factory with one reference and is never aggregated. Methods of
// IBaseFilter are called on the application's thread, samples arrive on the decoder's threads.
#pragma once

#include <dshow.h>
#include <wrl/client.h>

#include <algorithm>
#include <initializer_list>

#include "simulator/filters/enumerators.h"

namespace filters {

// An interface of a filter's own, not counted.
struct Face {
    const IID& iid;
    void* face;
};
// Null when there is none for `iid`.
inline void* findFace(REFIID iid, std::initializer_list<Face> faces) {
    const auto found =
        std::ranges::find_if(faces, [&iid](const Face& face) { return face.iid == iid; });
    return found == faces.end() ? nullptr : found->face;
}

class BaseFilter : public IBaseFilter {
public:
    explicit BaseFilter(const CLSID& classId) : classId_(classId) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* classId) override {
        *classId = classId_;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Stop() override {
        state_ = State_Stopped;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Pause() override {
        state_ = State_Paused;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME start) override {
        start_ = start;
        state_ = State_Running;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetState(DWORD, FILTER_STATE* state) override {
        *state = state_;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetSyncSource(IReferenceClock* clock) override {
        clock_ = clock;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetSyncSource(IReferenceClock** clock) override {
        return clock_.CopyTo(clock);
    }
    HRESULT STDMETHODCALLTYPE EnumPins(IEnumPins** out) override {
        return enumeratePins(pins(), out);
    }
    HRESULT STDMETHODCALLTYPE FindPin(LPCWSTR id, IPin** out) override;
    HRESULT STDMETHODCALLTYPE QueryFilterInfo(FILTER_INFO* info) override;
    HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) override;
    HRESULT STDMETHODCALLTYPE QueryVendorInfo(LPWSTR*) override { return E_NOTIMPL; }

protected:
    virtual ~BaseFilter() = default;

    // The interface pointer for `iid`, not counted, or null: the filter's own interfaces.
    virtual void* findInterface(REFIID iid) = 0;
    virtual PinList pins() = 0;
    CLSID classId_;
    FILTER_STATE state_ = State_Stopped;
    REFERENCE_TIME start_ = 0;
    Microsoft::WRL::ComPtr<IReferenceClock> clock_;
    IFilterGraph* graph_ = nullptr;  // not counted: the graph owns the filter

private:
    LONG references_ = 1;
    wchar_t name_[MAX_FILTER_NAME] = {};
};

}  // namespace filters
