// The relay inside a stream pin: what the splitter delivers to.
#include "simulator/filters/stream_pin.h"

#include <cstring>
// WAVEFORMATEX, and the subtypes of its extensible form.
#include <mmreg.h>

#include <ks.h>

#include <ksmedia.h>

namespace filters {

namespace {

HRESULT makeAllocator(IMemAllocator** allocator) {
    return CoCreateInstance(CLSID_MemoryAllocator, nullptr, CLSCTX_INPROC_SERVER, IID_IMemAllocator,
                            reinterpret_cast<void**>(allocator));
}

// Wine's mixer runs at this rate wherever the device allows it.
constexpr DWORD kMixerRate = 48000;
constexpr long kConvertedBuffers = 2;

SoundFormat soundFormat(const WAVEFORMATEX& format, std::size_t bytes) {
    WORD tag = format.wFormatTag;
    if (tag == WAVE_FORMAT_EXTENSIBLE && bytes >= sizeof(WAVEFORMATEXTENSIBLE)) {
        // The subtype begins with the tag.
        const auto& extensible = reinterpret_cast<const WAVEFORMATEXTENSIBLE&>(format);
        tag = static_cast<WORD>(extensible.SubFormat.Data1);
    }
    const SampleKind kind = tag == WAVE_FORMAT_PCM          ? SampleKind::Pcm
                            : tag == WAVE_FORMAT_IEEE_FLOAT ? SampleKind::Float
                                                            : SampleKind::Other;
    return {kind, format.wBitsPerSample, format.nChannels, format.nBlockAlign,
            format.nSamplesPerSec};
}

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
    if (converter.open(soundFormat(*format, type.cbFormat), kMixerRate)) {
        format->nSamplesPerSec = kMixerRate;
        format->nAvgBytesPerSec = kMixerRate * format->nBlockAlign;
    }
    return converted;
}

}  // namespace

HRESULT StreamPin::Relay::checkType(const AM_MEDIA_TYPE& type) {
    IPin* receiver = stream_->receiver_.Get();
    RateConverter trial;
    return receiver ? receiver->QueryAccept(&convertedType(type, trial).get()) : S_FALSE;
}

HRESULT StreamPin::Relay::connected(IPin*, const AM_MEDIA_TYPE& type) {
    IPin* receiver = stream_->receiver_.Get();
    receivedType_ = convertedType(type, converter_);
    {
        const std::lock_guard guard(stream_->lock_);
        const HRESULT found = receiver->QueryInterface(IID_PPV_ARGS(&memory_));
        if (FAILED(found)) {
            return found;
        }
    }
    const HRESULT result =
        stream_->changing_ ? S_OK : receiver->ReceiveConnection(stream_, &receivedType_.get());
    if (FAILED(result)) {
        letGo();
    }
    return result;
}

void StreamPin::Relay::disconnected() {
    // The splitter lets go when it cannot use a connection; then the receiver must let go too.
    if (stream_->receiver_ && !stream_->changing_) {
        stream_->receiver_.Get()->Disconnect();
    }
    letGo();
}

void StreamPin::Relay::letGo() {
    const std::lock_guard guard(stream_->lock_);
    memory_.Reset();
    converted_.Reset();
}

ComPtr<IPin> StreamPin::Relay::receiver() {
    const std::lock_guard guard(stream_->lock_);
    return stream_->alone_ ? nullptr : stream_->receiver_;
}

ComPtr<IMemInputPin> StreamPin::Relay::memory() {
    const std::lock_guard guard(stream_->lock_);
    return stream_->alone_ ? nullptr : memory_;
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
    const ComPtr<IPin> pin = receiver();
    return pin ? pin.Get()->EndOfStream() : S_OK;
}

HRESULT StreamPin::Relay::BeginFlush() {
    const ComPtr<IPin> pin = receiver();
    return pin ? pin.Get()->BeginFlush() : S_OK;
}

HRESULT StreamPin::Relay::EndFlush() {
    const ComPtr<IPin> pin = receiver();
    return pin ? pin.Get()->EndFlush() : S_OK;
}

HRESULT StreamPin::Relay::NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate) {
    converter_.restart();
    const ComPtr<IPin> pin = receiver();
    return pin ? pin.Get()->NewSegment(start, stop, rate) : S_OK;
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
    const ComPtr<IMemInputPin> memory = this->memory();
    if (!memory) {
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
    return converter_.isOpen() ? receiveConverted(sample, memory.Get())
                               : memory.Get()->Receive(sample);
}

HRESULT StreamPin::Relay::receiveConverted(IMediaSample* sample, IMemInputPin* memory) {
    REFERENCE_TIME begin = 0;
    REFERENCE_TIME end = 0;
    const bool timed = sample->GetTime(&begin, &end) == S_OK;
    const bool broken = sample->IsDiscontinuity() == S_OK;
    const auto bytes = static_cast<std::size_t>(sample->GetActualDataLength());
    ComPtr<IMediaSample> out;
    BYTE* from = nullptr;
    BYTE* to = nullptr;
    ComPtr<IMemAllocator> buffers;
    {
        const std::lock_guard guard(stream_->lock_);
        buffers = converted_;
    }
    HRESULT result =
        buffers ? buffers.Get()->GetBuffer(&out, nullptr, nullptr, 0) : VFW_E_NOT_COMMITTED;
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
    return memory->Receive(out.Get());
}

HRESULT StreamPin::Relay::ReceiveCanBlock() {
    const ComPtr<IMemInputPin> memory = this->memory();
    return memory ? memory.Get()->ReceiveCanBlock() : S_OK;
}

}  // namespace filters
