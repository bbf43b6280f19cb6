#include "simulator/filters/stream_pin.h"

namespace filters {

StreamPin::StreamPin(IBaseFilter* owner, SeekTarget* target, IPin* inner)
    : BasePin(owner, PINDIR_OUTPUT, L"Stream"),
      target_(target),
      inner_(inner),
      relay_(owner, this) {
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
    if (receiver_) {
        return VFW_E_ALREADY_CONNECTED;
    }
    if (!inner_) {
        return E_UNEXPECTED;
    }
    setReceiver(receiver);
    const HRESULT result = inner_->Connect(&relay_, wanted);
    if (FAILED(result)) {
        setReceiver(nullptr);
    }
    return result;
}

HRESULT StreamPin::Disconnect() {
    if (!receiver_) {
        return S_FALSE;
    }
    if (inner_) {
        inner_->Disconnect();
    }
    relay_.Disconnect();
    setReceiver(nullptr);
    return S_OK;
}

void StreamPin::setReceiver(IPin* receiver) {
    const std::lock_guard guard(lock_);
    receiver_ = receiver;
}

void StreamPin::setOffset(LONGLONG offset, LONGLONG first) {
    offset_ = offset;
    first_ = first;
    endKept_ = false;
}

void StreamPin::leave() {
    innerType_ = relay_.type();
    changing_ = true;
    inner_->Disconnect();
    relay_.Disconnect();
    changing_ = false;
}

HRESULT StreamPin::rejoin(IPin* inner) {
    inner_ = inner;
    seeking_.bind(target_, this, inner);
    if (!receiver_) {
        return S_OK;
    }
    changing_ = true;
    const HRESULT result = inner_->Connect(&relay_, &innerType_.get());
    changing_ = false;
    return result;
}

void StreamPin::stayAlone() {
    alone_ = true;
    inner_ = nullptr;
    seeking_.release();
    endKept_ = false;
}

HRESULT StreamPin::ConnectedTo(IPin** peer) {
    *peer = nullptr;
    return receiver_ ? receiver_.CopyTo(peer) : VFW_E_NOT_CONNECTED;
}

HRESULT StreamPin::ConnectionMediaType(AM_MEDIA_TYPE* type) {
    return receiver_ ? relay_.receivedType().copyTo(type) : VFW_E_NOT_CONNECTED;
}

HRESULT StreamPin::QueryPinInfo(PIN_INFO* info) {
    if (!inner_) {
        return BasePin::QueryPinInfo(info);
    }
    const HRESULT result = inner_->QueryPinInfo(info);
    if (SUCCEEDED(result)) {
        info->pFilter->Release();
        info->pFilter = owner_;
        info->pFilter->AddRef();
    }
    return result;
}

HRESULT StreamPin::QueryId(LPWSTR* id) {
    return inner_ ? inner_->QueryId(id) : BasePin::QueryId(id);
}

HRESULT StreamPin::EnumMediaTypes(IEnumMediaTypes** out) {
    return inner_ ? inner_->EnumMediaTypes(out) : BasePin::EnumMediaTypes(out);
}

void* StreamPin::findInterface(REFIID iid) {
    if (iid == IID_IMediaSeeking) {
        return static_cast<IMediaSeeking*>(&seeking_);
    }
    void* found = nullptr;
    if (inner_ && iid != IID_IMemInputPin && SUCCEEDED(inner_->QueryInterface(iid, &found))) {
        Release();  // the caller counts
    }
    return found;
}

HRESULT StreamPin::checkType(const AM_MEDIA_TYPE& type) {
    return inner_ ? inner_->QueryAccept(&type) : S_FALSE;
}

}  // namespace filters
