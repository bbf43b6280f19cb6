// The video renderer's input pin: hands samples and stream events on to the renderer.
#pragma once

#include "simulator/filters/base_pin.h"
#include "simulator/filters/picture_type.h"

namespace filters {

class VideoRenderer;

class VideoInput final : public BasePin, public IMemInputPin {
public:
    explicit VideoInput(VideoRenderer* renderer);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        return BasePin::QueryInterface(iid, out);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return BasePin::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return BasePin::Release(); }

    HRESULT STDMETHODCALLTYPE EndOfStream() override;
    HRESULT STDMETHODCALLTYPE BeginFlush() override;
    HRESULT STDMETHODCALLTYPE EndFlush() override;

    HRESULT STDMETHODCALLTYPE GetAllocator(IMemAllocator** allocator) override;
    HRESULT STDMETHODCALLTYPE NotifyAllocator(IMemAllocator* allocator, BOOL readOnly) override;
    HRESULT STDMETHODCALLTYPE GetAllocatorRequirements(ALLOCATOR_PROPERTIES* wanted) override;
    HRESULT STDMETHODCALLTYPE Receive(IMediaSample* sample) override;
    HRESULT STDMETHODCALLTYPE ReceiveMultiple(IMediaSample** samples, LONG count,
                                              LONG* taken) override;
    HRESULT STDMETHODCALLTYPE ReceiveCanBlock() override;

    const PictureFormat& format() const { return format_; }
    // Whether the decoder can go on while one of its buffers is held.
    bool mayKeep() const { return buffers_ > 1; }
    // A sample may bring a new type with it.
    bool changeFormat(const AM_MEDIA_TYPE& type) { return readPictureFormat(type, &format_); }

protected:
    void* findInterface(REFIID iid) override;
    HRESULT checkType(const AM_MEDIA_TYPE& type) override;
    HRESULT connected(IPin* peer, const AM_MEDIA_TYPE& type) override;
    void disconnected() override;

private:
    VideoRenderer* const renderer_;
    ComPtr<IMemAllocator> allocator_;
    long buffers_ = 0;
    PictureFormat format_;
};

}  // namespace filters
