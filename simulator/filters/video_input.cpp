#include "simulator/filters/video_input.h"

#include "simulator/filters/video_renderer.h"

namespace filters {

VideoInput::VideoInput(VideoRenderer* renderer)
    : BasePin(renderer, PINDIR_INPUT, L"Input"), renderer_(renderer) {
}

void* VideoInput::findInterface(REFIID iid) {
    return iid == IID_IMemInputPin ? static_cast<IMemInputPin*>(this) : nullptr;
}

HRESULT VideoInput::checkType(const AM_MEDIA_TYPE& type) {
    return renderer_->available() && readPictureFormat(type, nullptr) ? S_OK : S_FALSE;
}

HRESULT VideoInput::connected(IPin*, const AM_MEDIA_TYPE& type) {
    return changeFormat(type) ? S_OK : VFW_E_TYPE_NOT_ACCEPTED;
}

void VideoInput::disconnected() {
    allocator_.Reset();
}

HRESULT VideoInput::EndOfStream() {
    return renderer_->endOfStream();
}

HRESULT VideoInput::BeginFlush() {
    return renderer_->beginFlush();
}

HRESULT VideoInput::EndFlush() {
    return renderer_->endFlush();
}

HRESULT VideoInput::GetAllocator(IMemAllocator** allocator) {
    if (!allocator) {
        return E_POINTER;
    }
    *allocator = nullptr;
    return VFW_E_NO_ALLOCATOR;
}

HRESULT VideoInput::NotifyAllocator(IMemAllocator* allocator, BOOL) {
    ALLOCATOR_PROPERTIES properties{};
    allocator_ = allocator;
    buffers_ =
        allocator && SUCCEEDED(allocator->GetProperties(&properties)) ? properties.cBuffers : 0;
    return S_OK;
}

HRESULT VideoInput::GetAllocatorRequirements(ALLOCATOR_PROPERTIES* wanted) {
    if (!wanted) {
        return E_POINTER;
    }
    constexpr long kBuffers = 3;  // one on the screen, one that waits, one that is decoded into
    *wanted = {kBuffers, 0, 0, 0};
    return S_OK;
}

HRESULT VideoInput::Receive(IMediaSample* sample) {
    return sample ? renderer_->receive(sample) : E_POINTER;
}

HRESULT VideoInput::ReceiveMultiple(IMediaSample** samples, LONG count, LONG* taken) {
    if (!samples || !taken) {
        return E_POINTER;
    }
    HRESULT result = S_OK;
    for (*taken = 0; *taken < count && result == S_OK; ++*taken) {
        result = Receive(samples[*taken]);
    }
    return result;
}

HRESULT VideoInput::ReceiveCanBlock() {
    return S_OK;
}

}  // namespace filters
