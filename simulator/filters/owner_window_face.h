// What a filter that takes the owner window need not say itself: the methods that the player never
// calls, and an option of which no value changes anything here.
#pragma once

#include "graph/vendor_interfaces.h"

namespace filters {

struct OwnerWindowFace : vendor::OwnerWindow {
    HRESULT STDMETHODCALLTYPE method1() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE method3() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE method4() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE method5() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE setOption(DWORD) override { return S_OK; }
};

}  // namespace filters
