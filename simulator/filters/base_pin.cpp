#include "simulator/filters/base_pin.h"

#include <cwchar>

namespace filters {

HRESULT BasePin::QueryInterface(REFIID iid, void** out) {
    *out = iid == IID_IUnknown || iid == IID_IPin ? static_cast<IPin*>(this) : findInterface(iid);
    if (!*out) {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
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

HRESULT BasePin::QueryPinInfo(PIN_INFO* info) {
    info->pFilter = owner_;
    info->pFilter->AddRef();
    info->dir = direction_;
    std::wcscpy(info->achName, name_);
    return S_OK;
}

HRESULT BasePin::QueryId(LPWSTR* id) {
    const std::size_t bytes = (std::wcslen(name_) + 1) * sizeof(wchar_t);
    *id = static_cast<LPWSTR>(CoTaskMemAlloc(bytes));
    if (!*id) {
        return E_OUTOFMEMORY;
    }
    std::wcscpy(*id, name_);
    return S_OK;
}

HRESULT SamplePin::ReceiveMultiple(IMediaSample** samples, LONG count, LONG* taken) {
    HRESULT result = S_OK;
    for (*taken = 0; *taken < count && result == S_OK; ++*taken) {
        result = Receive(samples[*taken]);
    }
    return result;
}

}  // namespace filters
