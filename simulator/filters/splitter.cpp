#include "simulator/filters/splitter.h"

#include <memory>

#include "graph/vendor_interfaces.h"
#include "simulator/filters/class_ids.h"
#include "simulator/filters/process_end.h"
#include "simulator/filters/watched_call.h"
#include "simulator/tape/tape.h"

namespace filters {

void Splitter::make() {
    endAtOnceFromNowOn();
    if (FAILED(CoCreateInstance(kSplitterClass, outer_, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                reinterpret_cast<void**>(unknown_.GetAddressOf())))) {
        return;
    }
    inner_ = static_cast<IBaseFilter*>(query(IID_IBaseFilter));
    if (inner_) {
        outer_->Release();  // the reference went to the outer filter
    }
}

void Splitter::release() {
    inner_ = nullptr;
    unknown_.Reset();
}

void* Splitter::query(REFIID iid) {
    void* found = nullptr;
    return unknown_ && SUCCEEDED(unknown_.Get()->QueryInterface(iid, &found)) ? found : nullptr;
}

std::vector<ComPtr<IPin>> Splitter::pins(PIN_DIRECTION direction) const {
    std::vector<ComPtr<IPin>> found;
    ComPtr<IEnumPins> all;
    if (!inner_ || FAILED(inner_->EnumPins(&all))) {
        return found;
    }
    ComPtr<IPin> pin;
    while (all->Next(1, pin.ReleaseAndGetAddressOf(), nullptr) == S_OK) {
        PIN_DIRECTION own;
        if (SUCCEEDED(pin.Get()->QueryDirection(&own)) && own == direction) {
            found.push_back(pin);
        }
    }
    return found;
}

HRESULT Splitter::watched(const wchar_t* what, std::function<HRESULT()> call) {
    if (!inner_) {
        return E_UNEXPECTED;
    }
    struct Call {
        std::function<HRESULT()> function;
        HRESULT result;
    };
    const auto made = std::make_shared<Call>(Call{std::move(call), E_UNEXPECTED});
    if (callWatched([made] { made->result = made->function(); }, reader_->activity(), Patience{})) {
        return made->result;
    }
    tape::FilterLine(vendor::kDemuxName, L"splitter left behind")
        .text("over", what)
        .text("file", reader_->path().c_str());
    outer_->AddRef();  // never given back: threads of the library may still come to it
    unknown_.Detach();
    inner_ = nullptr;
    return VFW_E_TIMEOUT;
}

HRESULT Splitter::open(const AM_MEDIA_TYPE& type) {
    const auto inputs = pins(PINDIR_INPUT);
    const auto copy = std::make_shared<MediaType>(type);
    if (inputs.empty()) {
        return E_UNEXPECTED;
    }
    return watched(L"opening", [pin = inputs.front(), copy, reader = reader_] {
        return pin.Get()->ReceiveConnection(reader, &copy->get());
    });
}

void Splitter::close() {
    for (const ComPtr<IPin>& pin : pins(PINDIR_INPUT)) {
        watched(L"closing", [pin] { return pin.Get()->Disconnect(); });
    }
}

HRESULT Splitter::stop() {
    return watched(L"stopping", [inner = inner_] { return inner->Stop(); });
}

HRESULT Splitter::pause() {
    return watched(L"pausing", [inner = inner_] { return inner->Pause(); });
}

HRESULT Splitter::run(REFERENCE_TIME start) {
    return watched(L"starting", [inner = inner_, start] { return inner->Run(start); });
}

}  // namespace filters
