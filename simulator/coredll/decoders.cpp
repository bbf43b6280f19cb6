// The decoders of the unit's chip are ready before any program starts. Here each process loads the
// media library that stands in for them, which takes longer than all that the player does for its
// first picture. So it is loaded beside the player's start: a decoder that is made and given back
// has loaded the library and the decoder's own libraries.
#include <objbase.h>
#include <windows.h>

#include "simulator/coredll/settings.h"
#include "simulator/filters/class_ids.h"

namespace coredll {
namespace {

// Wine's decoders of H.264 and AAC (mfidl.h, wmcodecdsp.h).
constexpr CLSID kH264Decoder = {
    0x62CE7E72, 0x4C71, 0x4D20, {0xB1, 0x5D, 0x45, 0x28, 0x31, 0xA8, 0x7D, 0x9D}};
constexpr CLSID kAacDecoder = {
    0x32D186A7, 0x218F, 0x4C75, {0x88, 0x76, 0xDD, 0x77, 0x27, 0x3A, 0x89, 0x99}};

DWORD WINAPI load(void*) {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    // The demultiplexer first: it knows how a process ends that has the library in it.
    for (const CLSID& id : {filters::kDemuxClass, kH264Decoder, kAacDecoder}) {
        IUnknown* object = nullptr;
        if (SUCCEEDED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                       reinterpret_cast<void**>(&object)))) {
            object->Release();
        }
    }
    CoUninitialize();
    return 0;
}

}  // namespace

void readyDecoders() {
    if (const HANDLE thread = CreateThread(nullptr, 0, load, nullptr, 0, nullptr)) {
        CloseHandle(thread);
    }
}

}  // namespace coredll
