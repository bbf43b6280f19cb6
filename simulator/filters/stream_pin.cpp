#include "simulator/filters/stream_pin.h"

#include <cstring>

namespace filters {

namespace {

HRESULT makeAllocator(IMemAllocator** allocator) {
    return CoCreateInstance(CLSID_MemoryAllocator, nullptr, CLSCTX_INPROC_SERVER, IID_IMemAllocator,
                            reinterpret_cast<void**>(allocator));
}

// Wine's mixer runs at this rate wherever the device allows it.
constexpr DWORD kMixerRate = 48000;
constexpr long kConvertedBuffers = 2;

// What the receiver gets of the splitter's type. Leaves the converter open for sound that is
// brought to the mixer's rate, and closed for everything else.
MediaType convertedType(const AM_MEDIA_TYPE& type, RateConverter& converter) {
    converter.close();
    MediaType converted(type);
    if (type.majortype != MEDIATYPE_Audio || type.formattype != FORMAT_WaveFormatEx ||
        type.cbFormat < sizeof(WAVEFORMATEX)) {
        return converted;
    }
    auto* format = reinterpret_cast<WAVEFORMATEX*>(converted.edit().pbFormat);
    if (converter.open(*format, type.cbFormat, kMixerRate)) {
        format->nSamplesPerSec = kMixerRate;
        format->nAvgBytesPerSec = kMixerRate * format->nBlockAlign;
    }
    return converted;
}

}  // namespace

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
    if (!receiver) {
        return E_POINTER;
    }
    if (receiver_) {
        return VFW_E_ALREADY_CONNECTED;
    }
    if (!inner_) {
        return E_UNEXPECTED;
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
    if (inner_) {
        inner_->Disconnect();
    }
    relay_.Disconnect();
    receiver_.Reset();
    return S_OK;
}

void StreamPin::setOffset(LONGLONG offset, LONGLONG first) {
    offset_ = offset;
    first_ = first;
    endKept_ = false;
}

void StreamPin::leave() {
    AM_MEDIA_TYPE type{};
    innerType_.clear();
    if (SUCCEEDED(relay_.ConnectionMediaType(&type))) {
        innerType_.assign(type);
        CoTaskMemFree(type.pbFormat);
    }
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
    inner_ = nullptr;
    seeking_.release();
    endKept_ = false;
}

void StreamPin::end() {
    if (receiver_) {
        receiver_.Get()->EndOfStream();
    }
}

HRESULT StreamPin::ConnectedTo(IPin** peer) {
    if (!peer) {
        return E_POINTER;
    }
    *peer = nullptr;
    return receiver_ ? receiver_.CopyTo(peer) : VFW_E_NOT_CONNECTED;
}

HRESULT StreamPin::ConnectionMediaType(AM_MEDIA_TYPE* type) {
    if (!type) {
        return E_POINTER;
    }
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

void* StreamPin::Relay::findInterface(REFIID iid) {
    return iid == IID_IMemInputPin ? static_cast<IMemInputPin*>(this) : nullptr;
}

HRESULT StreamPin::Relay::checkType(const AM_MEDIA_TYPE& type) {
    IPin* receiver = stream_->receiver_.Get();
    RateConverter trial;
    return receiver ? receiver->QueryAccept(&convertedType(type, trial).get()) : S_FALSE;
}

HRESULT StreamPin::Relay::connected(IPin*, const AM_MEDIA_TYPE& type) {
    IPin* receiver = stream_->receiver_.Get();
    receivedType_ = convertedType(type, converter_);
    HRESULT result = receiver->QueryInterface(IID_PPV_ARGS(&memory_));
    if (SUCCEEDED(result) && !stream_->changing_) {
        result = receiver->ReceiveConnection(stream_, &receivedType_.get());
    }
    if (FAILED(result)) {
        memory_.Reset();
    }
    return result;
}

void StreamPin::Relay::disconnected() {
    // The splitter lets go when it cannot use a connection; then the receiver must let go too.
    if (stream_->receiver_ && !stream_->changing_) {
        stream_->receiver_.Get()->Disconnect();
    }
    memory_.Reset();
    converted_.Reset();
}

void StreamPin::Relay::start() {
    converter_.restart();
    if (converted_) {
        converted_.Get()->Commit();
    }
}

void StreamPin::Relay::stop() {
    if (converted_) {
        converted_.Get()->Decommit();
    }
}

HRESULT StreamPin::Relay::EndOfStream() {
    if (stream_->target_->mayGoOn()) {
        stream_->endKept_ = true;
        return S_OK;
    }
    return stream_->receiver_ ? stream_->receiver_.Get()->EndOfStream() : S_OK;
}

HRESULT StreamPin::Relay::BeginFlush() {
    return stream_->receiver_ ? stream_->receiver_.Get()->BeginFlush() : S_OK;
}

HRESULT StreamPin::Relay::EndFlush() {
    return stream_->receiver_ ? stream_->receiver_.Get()->EndFlush() : S_OK;
}

HRESULT StreamPin::Relay::NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate) {
    converter_.restart();
    return stream_->receiver_ ? stream_->receiver_.Get()->NewSegment(start, stop, rate) : S_OK;
}

HRESULT StreamPin::Relay::GetAllocator(IMemAllocator** allocator) {
    if (!memory_) {
        return VFW_E_NO_ALLOCATOR;
    }
    // The receiver's own buffers, if it has any, are for what it gets.
    return converter_.isOpen() ? makeAllocator(allocator) : memory_.Get()->GetAllocator(allocator);
}

HRESULT StreamPin::Relay::NotifyAllocator(IMemAllocator* allocator, BOOL readOnly) {
    if (!memory_) {
        return VFW_E_NOT_CONNECTED;
    }
    if (!converter_.isOpen()) {
        return memory_.Get()->NotifyAllocator(allocator, readOnly);
    }
    ALLOCATOR_PROPERTIES properties{};
    ALLOCATOR_PROPERTIES actual{};
    HRESULT result = allocator->GetProperties(&properties);
    if (SUCCEEDED(result) &&
        FAILED(memory_.Get()->GetAllocator(converted_.ReleaseAndGetAddressOf()))) {
        result = makeAllocator(&converted_);
    }
    if (SUCCEEDED(result)) {
        const auto bytes = static_cast<std::size_t>(properties.cbBuffer);
        properties.cBuffers = kConvertedBuffers;
        properties.cbBuffer = static_cast<long>(converter_.mostBytes(bytes));
        properties.cbAlign = 1;
        properties.cbPrefix = 0;
        result = converted_.Get()->SetProperties(&properties, &actual);
    }
    return SUCCEEDED(result) ? memory_.Get()->NotifyAllocator(converted_.Get(), FALSE) : result;
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
    if (!memory_) {
        return VFW_E_NOT_CONNECTED;
    }
    REFERENCE_TIME begin = 0;
    REFERENCE_TIME end = 0;
    const LONGLONG offset = stream_->offset_;
    const LONGLONG first = stream_->first_;
    if ((offset || first) && sample->GetTime(&begin, &end) == S_OK) {
        begin += offset;
        end += offset;
        if (begin < first) {
            return S_OK;
        }
        sample->SetTime(&begin, &end);
    }
    return converter_.isOpen() ? receiveConverted(sample) : memory_.Get()->Receive(sample);
}

HRESULT StreamPin::Relay::receiveConverted(IMediaSample* sample) {
    REFERENCE_TIME begin = 0;
    REFERENCE_TIME end = 0;
    const bool timed = sample->GetTime(&begin, &end) == S_OK;
    const bool broken = sample->IsDiscontinuity() == S_OK;
    const auto bytes = static_cast<std::size_t>(sample->GetActualDataLength());
    ComPtr<IMediaSample> out;
    BYTE* from = nullptr;
    BYTE* to = nullptr;
    HRESULT result = converted_.Get()->GetBuffer(&out, nullptr, nullptr, 0);
    if (FAILED(result) || FAILED(result = sample->GetPointer(&from)) ||
        FAILED(result = out->GetPointer(&to))) {
        return result;
    }
    if (converter_.mostBytes(bytes) > static_cast<std::size_t>(out->GetSize())) {
        return VFW_E_BUFFER_OVERFLOW;
    }
    if (broken) {
        converter_.restart();
    }
    out->SetActualDataLength(static_cast<long>(converter_.convert(from, bytes, to)));
    out->SetTime(timed ? &begin : nullptr, timed ? &end : nullptr);
    out->SetDiscontinuity(broken);
    out->SetPreroll(sample->IsPreroll() == S_OK);
    out->SetSyncPoint(sample->IsSyncPoint() == S_OK);
    return memory_.Get()->Receive(out.Get());
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
