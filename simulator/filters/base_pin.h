// A pin of a head unit filter: the connection and its media type. Its lifetime is its filter's, so
// references are counted there. Connections are made and broken on the application's thread with
// the filter stopped.
#pragma once

#include <dshow.h>

#include <functional>

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

// What a pin does where its filter has nothing to add: each may be empty.
struct PinRules {
    // Whether it takes (input) or could give (output) this type; required.
    std::function<bool(const AM_MEDIA_TYPE& type)> takes;
    // The types an output pin offers, best first.
    std::function<TypeList()> offers = {};
    // A connection is being made; a failure refuses it.
    std::function<HRESULT(IPin* peer, const AM_MEDIA_TYPE& type)> connected = {};
    std::function<void()> disconnected = {};
    std::function<HRESULT()> endOfStream = {};
    // A further interface of the pin's, not counted; null for another `iid`.
    std::function<void*(REFIID iid)> finds = {};
};

// A pin that no samples pass through.
class Pin final : public BasePin {
public:
    Pin(IBaseFilter* owner, PIN_DIRECTION direction, const wchar_t* name, PinRules rules)
        : BasePin(owner, direction, name), rules_(std::move(rules)) {}

    HRESULT STDMETHODCALLTYPE EndOfStream() override {
        return rules_.endOfStream ? rules_.endOfStream() : S_OK;
    }

protected:
    void* findInterface(REFIID iid) override { return rules_.finds ? rules_.finds(iid) : nullptr; }
    HRESULT checkType(const AM_MEDIA_TYPE& type) override {
        return rules_.takes(type) ? S_OK : S_FALSE;
    }
    TypeList offeredTypes() override { return rules_.offers ? rules_.offers() : TypeList(); }
    HRESULT connected(IPin* peer, const AM_MEDIA_TYPE& type) override {
        return rules_.connected ? rules_.connected(peer, type) : S_OK;
    }
    void disconnected() override {
        if (rules_.disconnected) {
            rules_.disconnected();
        }
    }

private:
    const PinRules rules_;
};

// For PinRules::takes.
inline std::function<bool(const AM_MEDIA_TYPE&)> ofMajorType(const GUID& majorType) {
    return [&majorType](const AM_MEDIA_TYPE& type) { return type.majortype == majorType; };
}

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
