#include "simulator/filters/stream_seeking.h"

namespace filters {

void StreamSeeking::bind(SeekTarget* target, IPin* pin, IPin* inner) {
    target_ = target;
    pin_ = pin;
    seeking_ = nullptr;
    if (SUCCEEDED(inner->QueryInterface(IID_IMediaSeeking, reinterpret_cast<void**>(&seeking_)))) {
        seeking_->Release();  // lives as long as the splitter's pin
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
    if (!seeking_) {
        return E_NOTIMPL;
    }
    if (playing()) {
        return leading_ ? target_->seekPlaying(current, currentFlags, stop, stopFlags) : S_OK;
    }
    return seeking_->SetPositions(current, currentFlags, stop, stopFlags);
}

HRESULT StreamSeeking::GetCapabilities(DWORD* capabilities) {
    return seeking_ ? seeking_->GetCapabilities(capabilities) : E_NOTIMPL;
}

HRESULT StreamSeeking::CheckCapabilities(DWORD* capabilities) {
    return seeking_ ? seeking_->CheckCapabilities(capabilities) : E_NOTIMPL;
}

HRESULT StreamSeeking::IsFormatSupported(const GUID* format) {
    return seeking_ ? seeking_->IsFormatSupported(format) : E_NOTIMPL;
}

HRESULT StreamSeeking::QueryPreferredFormat(GUID* format) {
    return seeking_ ? seeking_->QueryPreferredFormat(format) : E_NOTIMPL;
}

HRESULT StreamSeeking::GetTimeFormat(GUID* format) {
    return seeking_ ? seeking_->GetTimeFormat(format) : E_NOTIMPL;
}

HRESULT StreamSeeking::IsUsingTimeFormat(const GUID* format) {
    return seeking_ ? seeking_->IsUsingTimeFormat(format) : E_NOTIMPL;
}

HRESULT StreamSeeking::SetTimeFormat(const GUID* format) {
    return seeking_ ? seeking_->SetTimeFormat(format) : E_NOTIMPL;
}

HRESULT StreamSeeking::GetDuration(LONGLONG* duration) {
    return seeking_ ? seeking_->GetDuration(duration) : E_NOTIMPL;
}

HRESULT StreamSeeking::GetStopPosition(LONGLONG* stop) {
    return seeking_ ? seeking_->GetStopPosition(stop) : E_NOTIMPL;
}

HRESULT StreamSeeking::GetCurrentPosition(LONGLONG* current) {
    return seeking_ ? seeking_->GetCurrentPosition(current) : E_NOTIMPL;
}

HRESULT StreamSeeking::ConvertTimeFormat(LONGLONG* target, const GUID* targetFormat,
                                         LONGLONG source, const GUID* sourceFormat) {
    return seeking_ ? seeking_->ConvertTimeFormat(target, targetFormat, source, sourceFormat)
                    : E_NOTIMPL;
}

HRESULT StreamSeeking::GetPositions(LONGLONG* current, LONGLONG* stop) {
    return seeking_ ? seeking_->GetPositions(current, stop) : E_NOTIMPL;
}

HRESULT StreamSeeking::GetAvailable(LONGLONG* earliest, LONGLONG* latest) {
    return seeking_ ? seeking_->GetAvailable(earliest, latest) : E_NOTIMPL;
}

HRESULT StreamSeeking::SetRate(double rate) {
    return seeking_ ? seeking_->SetRate(rate) : E_NOTIMPL;
}

HRESULT StreamSeeking::GetRate(double* rate) {
    return seeking_ ? seeking_->GetRate(rate) : E_NOTIMPL;
}

HRESULT StreamSeeking::GetPreroll(LONGLONG* preroll) {
    return seeking_ ? seeking_->GetPreroll(preroll) : E_NOTIMPL;
}

}  // namespace filters
