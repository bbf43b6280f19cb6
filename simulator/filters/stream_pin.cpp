#include "simulator/filters/stream_pin.h"

#include <cstring>

namespace filters {

StreamPin::StreamPin(IBaseFilter* owner, SeekTarget* target, IPin* inner)
    : BasePin(owner, PINDIR_OUTPUT, L"Stream"), inner_(inner), relay_(owner, this) {
    seeking_.bind(target, this, inner);
    ComPtr<IEnumMediaTypes> types;
    AM_MEDIA_TYPE* type = nullptr;
    if (SUCCEEDED(inner->EnumMediaTypes(&types)) && types->Next(1, &type, nullptr) == S_OK) {
        majorType_ = type->majortype;
        CoTaskMemFree(type->pbFormat);
        CoTaskMemFree(type);
    }
}

HRESULT StreamPin::Connect(IPin* receiver, const AM_MEDIA_TYPE* wanted) {
    if (!receiver) {
        return E_POINTER;
    }
    if (receiver_) {
        return VFW_E_ALREADY_CONNECTED;
    }
    receiver_ = receiver;
    const HRESULT result = inner_->Connect(&relay_, wanted);
    if (FAILED(result)) {
        receiver_.Reset();
    }
    return result;
}

HRESULT StreamPin::Disconnect() {
    if (!receiver_) {
        return S_FALSE;
    }
    inner_->Disconnect();
    relay_.Disconnect();
    receiver_.Reset();
    return S_OK;
}

HRESULT StreamPin::ConnectedTo(IPin** peer) {
    if (!peer) {
        return E_POINTER;
    }
    *peer = nullptr;
    return receiver_ ? receiver_.CopyTo(peer) : VFW_E_NOT_CONNECTED;
}

HRESULT StreamPin::ConnectionMediaType(AM_MEDIA_TYPE* type) {
    return inner_->ConnectionMediaType(type);
}

HRESULT StreamPin::QueryPinInfo(PIN_INFO* info) {
    const HRESULT result = inner_->QueryPinInfo(info);
    if (SUCCEEDED(result)) {
        info->pFilter->Release();
        info->pFilter = owner_;
        info->pFilter->AddRef();
    }
    return result;
}

HRESULT StreamPin::QueryId(LPWSTR* id) {
    return inner_->QueryId(id);
}

HRESULT StreamPin::EnumMediaTypes(IEnumMediaTypes** out) {
    return inner_->EnumMediaTypes(out);
}

void* StreamPin::findInterface(REFIID iid) {
    if (iid == IID_IMediaSeeking) {
        return static_cast<IMediaSeeking*>(&seeking_);
    }
    void* found = nullptr;
    if (iid != IID_IMemInputPin && SUCCEEDED(inner_->QueryInterface(iid, &found))) {
        Release();  // the caller counts
    }
    return found;
}

HRESULT StreamPin::checkType(const AM_MEDIA_TYPE& type) {
    return inner_->QueryAccept(&type);
}

void* StreamPin::Relay::findInterface(REFIID iid) {
    return iid == IID_IMemInputPin ? static_cast<IMemInputPin*>(this) : nullptr;
}

HRESULT StreamPin::Relay::checkType(const AM_MEDIA_TYPE& type) {
    IPin* receiver = stream_->receiver_.Get();
    return receiver ? receiver->QueryAccept(&type) : S_FALSE;
}

HRESULT StreamPin::Relay::connected(IPin*, const AM_MEDIA_TYPE& type) {
    IPin* receiver = stream_->receiver_.Get();
    HRESULT result = receiver->QueryInterface(IID_PPV_ARGS(&memory_));
    if (SUCCEEDED(result)) {
        result = receiver->ReceiveConnection(stream_, &type);
    }
    if (FAILED(result)) {
        memory_.Reset();
    }
    return result;
}

void StreamPin::Relay::disconnected() {
    // The splitter lets go when it cannot use a connection; then the receiver must let go too.
    if (stream_->receiver_) {
        stream_->receiver_.Get()->Disconnect();
    }
    memory_.Reset();
}

HRESULT StreamPin::Relay::EndOfStream() {
    return stream_->receiver_ ? stream_->receiver_.Get()->EndOfStream() : S_OK;
}

HRESULT StreamPin::Relay::BeginFlush() {
    return stream_->receiver_ ? stream_->receiver_.Get()->BeginFlush() : S_OK;
}

HRESULT StreamPin::Relay::EndFlush() {
    return stream_->receiver_ ? stream_->receiver_.Get()->EndFlush() : S_OK;
}

HRESULT StreamPin::Relay::NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate) {
    return stream_->receiver_ ? stream_->receiver_.Get()->NewSegment(start, stop, rate) : S_OK;
}

HRESULT StreamPin::Relay::GetAllocator(IMemAllocator** allocator) {
    return memory_ ? memory_.Get()->GetAllocator(allocator) : VFW_E_NO_ALLOCATOR;
}

HRESULT StreamPin::Relay::NotifyAllocator(IMemAllocator* allocator, BOOL readOnly) {
    return memory_ ? memory_.Get()->NotifyAllocator(allocator, readOnly) : VFW_E_NOT_CONNECTED;
}

HRESULT StreamPin::Relay::GetAllocatorRequirements(ALLOCATOR_PROPERTIES* wanted) {
    return memory_ ? memory_.Get()->GetAllocatorRequirements(wanted) : E_NOTIMPL;
}

HRESULT StreamPin::Relay::Receive(IMediaSample* sample) {
    BYTE* bytes = nullptr;
    if (stream_->silent_ && SUCCEEDED(sample->GetPointer(&bytes))) {
        // Signed samples: all bits zero is silence. (Eight-bit sound would click once.)
        std::memset(bytes, 0, static_cast<std::size_t>(sample->GetActualDataLength()));
    }
    return memory_ ? memory_.Get()->Receive(sample) : VFW_E_NOT_CONNECTED;
}

HRESULT StreamPin::Relay::ReceiveMultiple(IMediaSample** samples, LONG count, LONG* taken) {
    if (!samples || !taken) {
        return E_POINTER;
    }
    HRESULT result = S_OK;
    for (*taken = 0; *taken < count && result == S_OK; ++*taken) {
        result = Receive(samples[*taken]);
    }
    return result;
}

HRESULT StreamPin::Relay::ReceiveCanBlock() {
    return memory_ ? memory_.Get()->ReceiveCanBlock() : S_OK;
}

}  // namespace filters
