// A pin of a head unit filter: the connection and its media type. Its lifetime is its filter's, so
// references are counted there. Connections are made and broken on the application's thread with
// the filter stopped.
#pragma once

#include <dshow.h>

#include "simulator/filters/enumerators.h"

namespace filters {

class BasePin : public IPin {
public:
    // `owner` is the filter, `name` (a literal) is identifier and name at once.
    BasePin(IBaseFilter* owner, PIN_DIRECTION direction, const wchar_t* name)
        : owner_(owner), direction_(direction), name_(name) {}
    virtual ~BasePin() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return owner_->AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return owner_->Release(); }

    HRESULT STDMETHODCALLTYPE Connect(IPin* receiver, const AM_MEDIA_TYPE* wanted) override;
    HRESULT STDMETHODCALLTYPE ReceiveConnection(IPin* connector,
                                                const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE Disconnect() override;
    HRESULT STDMETHODCALLTYPE ConnectedTo(IPin** peer) override {
        *peer = nullptr;
        return peer_ ? peer_.CopyTo(peer) : VFW_E_NOT_CONNECTED;
    }
    HRESULT STDMETHODCALLTYPE ConnectionMediaType(AM_MEDIA_TYPE* type) override {
        *type = {};
        return peer_ ? type_.copyTo(type) : VFW_E_NOT_CONNECTED;
    }
    HRESULT STDMETHODCALLTYPE QueryPinInfo(PIN_INFO* info) override;
    HRESULT STDMETHODCALLTYPE QueryDirection(PIN_DIRECTION* direction) override {
        *direction = direction_;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE QueryId(LPWSTR* id) override;
    HRESULT STDMETHODCALLTYPE QueryAccept(const AM_MEDIA_TYPE* type) override {
        return checkType(*type);
    }
    HRESULT STDMETHODCALLTYPE EnumMediaTypes(IEnumMediaTypes** out) override {
        return enumerateTypes(offeredTypes(), out);
    }
    HRESULT STDMETHODCALLTYPE QueryInternalConnections(IPin**, ULONG*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE EndOfStream() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE BeginFlush() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE EndFlush() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE NewSegment(REFERENCE_TIME, REFERENCE_TIME, double) override {
        return S_OK;
    }

    IPin* peer() const { return peer_.Get(); }
    const MediaType& type() const { return type_; }

protected:
    // Further interfaces of the pin, not counted; null when there is none for `iid`.
    virtual void* findInterface(REFIID) { return nullptr; }
    // S_OK when the pin takes (input) or could give (output) this type.
    virtual HRESULT checkType(const AM_MEDIA_TYPE& type) = 0;
    // The types an output pin offers, best first.
    virtual TypeList offeredTypes() { return {}; }
    // Called while a connection is being made; a failure refuses it.
    virtual HRESULT connected(IPin*, const AM_MEDIA_TYPE&) { return S_OK; }
    virtual void disconnected() {}

    IBaseFilter* const owner_;

private:
    const PIN_DIRECTION direction_;
    const wchar_t* const name_;
    ComPtr<IPin> peer_;
    MediaType type_;
};

// An input pin that samples come to.
class SamplePin : public BasePin, public IMemInputPin {
public:
    SamplePin(IBaseFilter* owner, const wchar_t* name) : BasePin(owner, PINDIR_INPUT, name) {}
    FILTERS_JOIN_UNKNOWN(BasePin)

    HRESULT STDMETHODCALLTYPE ReceiveMultiple(IMediaSample** samples, LONG count,
                                              LONG* taken) override;
    HRESULT STDMETHODCALLTYPE ReceiveCanBlock() override { return S_OK; }

protected:
    void* findInterface(REFIID iid) override {
        return iid == IID_IMemInputPin ? static_cast<IMemInputPin*>(this) : nullptr;
    }
};

}  // namespace filters
