// The two enumerators that every filter needs: of its pins and of a pin's media types. Both walk a
// fixed copy of the list, so they never go out of step with their filter.
#pragma once

#include <dshow.h>
#include <wrl/client.h>

#include <vector>

#include "simulator/filters/media_type.h"

namespace filters {

using Microsoft::WRL::ComPtr;

using PinList = std::vector<ComPtr<IPin>>;
using TypeList = std::vector<MediaType>;

// An object of one interface, with one reference at first; deletes itself with the last.
template <class Interface>
class Counted : public Interface {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        *out = iid == IID_IUnknown || iid == __uuidof(Interface) ? this : nullptr;
        if (!*out) {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override {
        return static_cast<ULONG>(InterlockedIncrement(&references_));
    }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG left = InterlockedDecrement(&references_);
        if (!left) {
            delete this;
        }
        return static_cast<ULONG>(left);
    }

protected:
    virtual ~Counted() = default;

private:
    LONG references_ = 1;
};

// A filter or pin inherits several interfaces; this joins their IUnknown to that of `Base`.
#define FILTERS_JOIN_UNKNOWN(Base)                                              \
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override { \
        return Base::QueryInterface(iid, out);                                  \
    }                                                                           \
    ULONG STDMETHODCALLTYPE AddRef() override {                                 \
        return Base::AddRef();                                                  \
    }                                                                           \
    ULONG STDMETHODCALLTYPE Release() override {                                \
        return Base::Release();                                                 \
    }

// Both return E_OUTOFMEMORY on failure; the caller releases `*out`.
HRESULT enumeratePins(const PinList& pins, IEnumPins** out);
HRESULT enumerateTypes(const TypeList& types, IEnumMediaTypes** out);

}  // namespace filters
