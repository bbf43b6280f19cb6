#include "simulator/filters/video_input.h"

#include "simulator/filters/video_renderer.h"

namespace filters {

VideoInput::VideoInput(VideoRenderer* renderer)
    : SamplePin(renderer, L"Input"), renderer_(renderer) {
}

HRESULT VideoInput::checkType(const AM_MEDIA_TYPE& type) {
    return renderer_->available() && readPictureFormat(type, nullptr) ? S_OK : S_FALSE;
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

HRESULT VideoInput::NotifyAllocator(IMemAllocator* allocator, BOOL) {
    ALLOCATOR_PROPERTIES properties{};
    allocator_ = allocator;
    buffers_ =
        allocator && SUCCEEDED(allocator->GetProperties(&properties)) ? properties.cBuffers : 0;
    return S_OK;
}

HRESULT VideoInput::GetAllocatorRequirements(ALLOCATOR_PROPERTIES* wanted) {
    constexpr long kBuffers = 3;  // one on the screen, one that waits, one that is decoded into
    *wanted = {kBuffers, 0, 0, 0};
    return S_OK;
}

HRESULT VideoInput::Receive(IMediaSample* sample) {
    return renderer_->receive(sample);
}

}  // namespace filters
