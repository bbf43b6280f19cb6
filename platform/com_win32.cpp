#include "platform/com.h"

#include <unknwn.h>
#include <windows.h>

#include "platform/wide.h"

namespace platform {
namespace {

constexpr CLSID kImagingFactoryClass = {
    0x327ABDA8, 0x072B, 0x11D3, {0x9D, 0x7B, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
constexpr IID kImagingFactory = {
    0x327ABDA7, 0x072B, 0x11D3, {0x9D, 0x7B, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

int entered = 0;  // successes that have not been taken back

}  // namespace

void enterCom() {
    if (SUCCEEDED(CoInitializeEx(nullptr, 0))) {
        ++entered;
    }
}

void leaveCom() {
    if (entered > 0) {
        --entered;
        CoUninitialize();
    }
}

IUnknown* createImagingFactory() {
    void* factory = nullptr;
    CoCreateInstance(kImagingFactoryClass, nullptr, CLSCTX_INPROC_SERVER, kImagingFactory,
                     &factory);
    return static_cast<IUnknown*>(factory);
}

void releaseObject(IUnknown* object) {
    if (object != nullptr) {
        object->Release();
    }
}

}  // namespace platform
