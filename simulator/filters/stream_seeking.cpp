#include "simulator/filters/stream_seeking.h"

namespace filters {

void StreamSeeking::bind(SeekTarget* target, IPin* pin, IPin* inner) {
    target_ = target;
    pin_ = pin;
    if (SUCCEEDED(inner->QueryInterface(IID_IMediaSeeking, reinterpret_cast<void**>(&seeking_)))) {
        seeking_->Release();  // lives as long as the splitter
    }
}

HRESULT StreamSeeking::QueryInterface(REFIID iid, void** out) {
    return pin_->QueryInterface(iid, out);
}

ULONG StreamSeeking::AddRef() {
    return pin_->AddRef();
}

ULONG StreamSeeking::Release() {
    return pin_->Release();
}

bool StreamSeeking::playing() const {
    PIN_INFO info{};
    FILTER_STATE state = State_Stopped;
    if (SUCCEEDED(pin_->QueryPinInfo(&info)) && info.pFilter) {
        info.pFilter->GetState(0, &state);
        info.pFilter->Release();
    }
    return state != State_Stopped;
}

HRESULT StreamSeeking::SetPositions(LONGLONG* current, DWORD currentFlags, LONGLONG* stop,
                                    DWORD stopFlags) {
    if (playing()) {
        return leading_ ? target_->seekPlaying(current, currentFlags, stop, stopFlags) : S_OK;
    }
    return seeking_->SetPositions(current, currentFlags, stop, stopFlags);
}

HRESULT StreamSeeking::GetCapabilities(DWORD* capabilities) {
    return seeking_->GetCapabilities(capabilities);
}

HRESULT StreamSeeking::CheckCapabilities(DWORD* capabilities) {
    return seeking_->CheckCapabilities(capabilities);
}

HRESULT StreamSeeking::IsFormatSupported(const GUID* format) {
    return seeking_->IsFormatSupported(format);
}

HRESULT StreamSeeking::QueryPreferredFormat(GUID* format) {
    return seeking_->QueryPreferredFormat(format);
}

HRESULT StreamSeeking::GetTimeFormat(GUID* format) {
    return seeking_->GetTimeFormat(format);
}

HRESULT StreamSeeking::IsUsingTimeFormat(const GUID* format) {
    return seeking_->IsUsingTimeFormat(format);
}

HRESULT StreamSeeking::SetTimeFormat(const GUID* format) {
    return seeking_->SetTimeFormat(format);
}

HRESULT StreamSeeking::GetDuration(LONGLONG* duration) {
    return seeking_->GetDuration(duration);
}

HRESULT StreamSeeking::GetStopPosition(LONGLONG* stop) {
    return seeking_->GetStopPosition(stop);
}

HRESULT StreamSeeking::GetCurrentPosition(LONGLONG* current) {
    return seeking_->GetCurrentPosition(current);
}

HRESULT StreamSeeking::ConvertTimeFormat(LONGLONG* target, const GUID* targetFormat,
                                         LONGLONG source, const GUID* sourceFormat) {
    return seeking_->ConvertTimeFormat(target, targetFormat, source, sourceFormat);
}

HRESULT StreamSeeking::GetPositions(LONGLONG* current, LONGLONG* stop) {
    return seeking_->GetPositions(current, stop);
}

HRESULT StreamSeeking::GetAvailable(LONGLONG* earliest, LONGLONG* latest) {
    return seeking_->GetAvailable(earliest, latest);
}

HRESULT StreamSeeking::SetRate(double rate) {
    return seeking_->SetRate(rate);
}

HRESULT StreamSeeking::GetRate(double* rate) {
    return seeking_->GetRate(rate);
}

HRESULT StreamSeeking::GetPreroll(LONGLONG* preroll) {
    return seeking_->GetPreroll(preroll);
}

}  // namespace filters
