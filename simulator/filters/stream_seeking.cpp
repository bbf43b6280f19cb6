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

}  // namespace filters
