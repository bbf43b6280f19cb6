// What all filters of the head unit share: reference count, name and graph, state and clock. A
// filter is created by the class factory with one reference and is never aggregated. Methods of
// IBaseFilter are called on the application's thread, samples arrive on the decoder's threads.
#pragma once

#include <dshow.h>
#include <wrl/client.h>

#include "simulator/filters/enumerators.h"

namespace filters {

class BaseFilter : public IBaseFilter {
public:
    explicit BaseFilter(const CLSID& classId);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* classId) override;
    HRESULT STDMETHODCALLTYPE Stop() override;
    HRESULT STDMETHODCALLTYPE Pause() override;
    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME start) override;
    HRESULT STDMETHODCALLTYPE GetState(DWORD milliseconds, FILTER_STATE* state) override;
    HRESULT STDMETHODCALLTYPE SetSyncSource(IReferenceClock* clock) override;
    HRESULT STDMETHODCALLTYPE GetSyncSource(IReferenceClock** clock) override;
    HRESULT STDMETHODCALLTYPE EnumPins(IEnumPins** out) override;
    HRESULT STDMETHODCALLTYPE FindPin(LPCWSTR id, IPin** out) override;
    HRESULT STDMETHODCALLTYPE QueryFilterInfo(FILTER_INFO* info) override;
    HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) override;
    HRESULT STDMETHODCALLTYPE QueryVendorInfo(LPWSTR* text) override;

protected:
    virtual ~BaseFilter();

    // The interface pointer for `iid`, not counted, or null: the filter's own interfaces.
    virtual void* findInterface(REFIID iid) = 0;
    virtual PinList pins() = 0;
    // Puts an event into the graph's queue; nothing without a graph.
    void notify(LONG code, LONG_PTR first, LONG_PTR second);

    CLSID classId_;
    FILTER_STATE state_ = State_Stopped;
    REFERENCE_TIME start_ = 0;
    Microsoft::WRL::ComPtr<IReferenceClock> clock_;
    IFilterGraph* graph_ = nullptr;  // not counted: the graph owns the filter

private:
    LONG references_ = 1;
    wchar_t name_[MAX_FILTER_NAME] = {};
};

// A derived filter inherits several interfaces; this joins their IUnknown to the base's.
#define FILTERS_JOIN_UNKNOWN                                                    \
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override { \
        return filters::BaseFilter::QueryInterface(iid, out);                   \
    }                                                                           \
    ULONG STDMETHODCALLTYPE AddRef() override {                                 \
        return filters::BaseFilter::AddRef();                                   \
    }                                                                           \
    ULONG STDMETHODCALLTYPE Release() override {                                \
        return filters::BaseFilter::Release();                                  \
    }

// The pin of `pins` whose identifier is `id`.
HRESULT findPinById(const PinList& pins, LPCWSTR id, IPin** out);

// Number of filters alive in this process: the library stays loaded while there are any.
LONG liveObjects();
void countObject(LONG change);

}  // namespace filters
