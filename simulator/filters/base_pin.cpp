#include "simulator/filters/base_pin.h"

#include <cwchar>

namespace filters {

BasePin::BasePin(IBaseFilter* owner, PIN_DIRECTION direction, const wchar_t* name)
    : owner_(owner), direction_(direction), name_(name) {
}

HRESULT BasePin::QueryInterface(REFIID iid, void** out) {
    if (!out) {
        return E_POINTER;
    }
    *out = iid == IID_IUnknown || iid == IID_IPin ? static_cast<IPin*>(this) : findInterface(iid);
    if (!*out) {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG BasePin::AddRef() {
    return owner_->AddRef();
}

ULONG BasePin::Release() {
    return owner_->Release();
}

HRESULT BasePin::Connect(IPin* receiver, const AM_MEDIA_TYPE* wanted) {
    if (!receiver || direction_ != PINDIR_OUTPUT) {
        return E_UNEXPECTED;
    }
    if (peer_) {
        return VFW_E_ALREADY_CONNECTED;
    }
    HRESULT result = VFW_E_NO_ACCEPTABLE_TYPES;
    for (const MediaType& type : offeredTypes()) {
        if (!type.matches(wanted)) {
            continue;
        }
        peer_ = receiver;
        type_ = type;
        result = receiver->ReceiveConnection(this, &type.get());
        if (SUCCEEDED(result)) {
            result = connected(receiver, type.get());
            if (SUCCEEDED(result)) {
                return result;
            }
            receiver->Disconnect();
        }
        peer_.Reset();
        type_.clear();
    }
    return result;
}

HRESULT BasePin::ReceiveConnection(IPin* connector, const AM_MEDIA_TYPE* type) {
    if (!connector || !type || direction_ != PINDIR_INPUT) {
        return E_UNEXPECTED;
    }
    if (peer_) {
        return VFW_E_ALREADY_CONNECTED;
    }
    if (checkType(*type) != S_OK) {
        return VFW_E_TYPE_NOT_ACCEPTED;
    }
    peer_ = connector;
    type_.assign(*type);
    const HRESULT result = connected(connector, *type);
    if (FAILED(result)) {
        peer_.Reset();
        type_.clear();
    }
    return result;
}

HRESULT BasePin::Disconnect() {
    if (!peer_) {
        return S_FALSE;
    }
    disconnected();
    peer_.Reset();
    type_.clear();
    return S_OK;
}

HRESULT BasePin::ConnectedTo(IPin** peer) {
    if (!peer) {
        return E_POINTER;
    }
    *peer = nullptr;
    return peer_ ? peer_.CopyTo(peer) : VFW_E_NOT_CONNECTED;
}

HRESULT BasePin::ConnectionMediaType(AM_MEDIA_TYPE* type) {
    if (!type) {
        return E_POINTER;
    }
    *type = {};
    return peer_ ? type_.copyTo(type) : VFW_E_NOT_CONNECTED;
}

HRESULT BasePin::QueryPinInfo(PIN_INFO* info) {
    if (!info) {
        return E_POINTER;
    }
    info->pFilter = owner_;
    info->pFilter->AddRef();
    info->dir = direction_;
    std::wcscpy(info->achName, name_);
    return S_OK;
}

HRESULT BasePin::QueryDirection(PIN_DIRECTION* direction) {
    if (!direction) {
        return E_POINTER;
    }
    *direction = direction_;
    return S_OK;
}

HRESULT BasePin::QueryId(LPWSTR* id) {
    if (!id) {
        return E_POINTER;
    }
    const std::size_t bytes = (std::wcslen(name_) + 1) * sizeof(wchar_t);
    *id = static_cast<LPWSTR>(CoTaskMemAlloc(bytes));
    if (!*id) {
        return E_OUTOFMEMORY;
    }
    std::wcscpy(*id, name_);
    return S_OK;
}

HRESULT BasePin::QueryAccept(const AM_MEDIA_TYPE* type) {
    return type ? checkType(*type) : E_POINTER;
}

HRESULT BasePin::EnumMediaTypes(IEnumMediaTypes** out) {
    return enumerateTypes(offeredTypes(), out);
}

HRESULT BasePin::QueryInternalConnections(IPin**, ULONG*) {
    return E_NOTIMPL;
}

HRESULT BasePin::EndOfStream() {
    return S_OK;
}

HRESULT BasePin::BeginFlush() {
    return S_OK;
}

HRESULT BasePin::EndFlush() {
    return S_OK;
}

HRESULT BasePin::NewSegment(REFERENCE_TIME, REFERENCE_TIME, double) {
    return S_OK;
}

}  // namespace filters
