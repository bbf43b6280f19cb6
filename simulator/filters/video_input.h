// The video renderer's input pin: hands samples and stream events on to the renderer.
#pragma once

#include "simulator/filters/base_pin.h"
#include "simulator/filters/picture_type.h"

namespace filters {

class VideoRenderer;

class VideoInput final : public SamplePin {
public:
    explicit VideoInput(VideoRenderer* renderer);

    HRESULT STDMETHODCALLTYPE EndOfStream() override;
    HRESULT STDMETHODCALLTYPE BeginFlush() override;
    HRESULT STDMETHODCALLTYPE EndFlush() override;

    HRESULT STDMETHODCALLTYPE GetAllocator(IMemAllocator** allocator) override {
        *allocator = nullptr;
        return VFW_E_NO_ALLOCATOR;
    }
    HRESULT STDMETHODCALLTYPE NotifyAllocator(IMemAllocator* allocator, BOOL readOnly) override;
    HRESULT STDMETHODCALLTYPE GetAllocatorRequirements(ALLOCATOR_PROPERTIES* wanted) override;
    HRESULT STDMETHODCALLTYPE Receive(IMediaSample* sample) override;

    const PictureFormat& format() const { return format_; }
    // Whether the decoder can go on while one of its buffers is held.
    bool mayKeep() const { return buffers_ > 1; }
    // A sample may bring a new type with it.
    bool changeFormat(const AM_MEDIA_TYPE& type) { return readPictureFormat(type, &format_); }

protected:
    HRESULT checkType(const AM_MEDIA_TYPE& type) override;
    HRESULT connected(IPin*, const AM_MEDIA_TYPE& type) override {
        return changeFormat(type) ? S_OK : VFW_E_TYPE_NOT_ACCEPTED;
    }
    void disconnected() override { allocator_.Reset(); }

private:
    VideoRenderer* const renderer_;
    ComPtr<IMemAllocator> allocator_;
    long buffers_ = 0;
    PictureFormat format_;
};

}  // namespace filters
