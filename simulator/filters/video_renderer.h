// "TCC Video Renderer": shows decoded pictures on the video layer at their time. Samples come on a
// decoder's thread, which waits here until the picture is due; everything else is called on the
// application's thread.
#pragma once

#include <condition_variable>
#include <mutex>

#include "graph/vendor_interfaces.h"
#include "simulator/filters/base_filter.h"
#include "simulator/filters/base_pin.h"
#include "simulator/filters/owner_window_face.h"
#include "simulator/filters/video_layer.h"

namespace filters {

class VideoRenderer final : public BaseFilter,
                            public IAMFilterMiscFlags,
                            public vendor::VideoRenderSwitch,
                            public vendor::ChromaKey,
                            public OwnerWindowFace,
                            public vendor::FilterStatus,
                            public vendor::StartOption {
public:
    // `available` false: a renderer that accepts nothing, so that the graph looks for another.
    VideoRenderer(const CLSID& classId, bool available);

    FILTERS_JOIN_UNKNOWN(BaseFilter)

    HRESULT STDMETHODCALLTYPE Stop() override;
    HRESULT STDMETHODCALLTYPE Pause() override;
    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME start) override;
    HRESULT STDMETHODCALLTYPE GetState(DWORD milliseconds, FILTER_STATE* state) override;
    HRESULT STDMETHODCALLTYPE SetSyncSource(IReferenceClock* clock) override;

    ULONG STDMETHODCALLTYPE GetMiscFlags() override { return AM_FILTER_MISC_FLAGS_IS_RENDERER; }

    HRESULT STDMETHODCALLTYPE setRender(DWORD value) override;
    HRESULT STDMETHODCALLTYPE setOutput(const vendor::VideoOutput* output) override;
    HRESULT STDMETHODCALLTYPE setModeFlags(DWORD flags, DWORD aspectX, DWORD aspectY) override;
    HRESULT STDMETHODCALLTYPE redrawFrame() override {
        place();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE setKey(DWORD red, DWORD green, DWORD blue) override;
    HRESULT STDMETHODCALLTYPE enableKey(DWORD enable) override;

    HRESULT STDMETHODCALLTYPE setOwnerWindow(HWND window) override;

    // 0 nothing connected, 1 connected.
    HRESULT STDMETHODCALLTYPE status(DWORD* value) override {
        *value = input_.peer() ? 1 : 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE setValue(DWORD) override { return S_OK; }

protected:
    void* findInterface(REFIID iid) override;
    PinList pins() override { return {ComPtr<IPin>(&input_)}; }

private:
    using Lock = std::unique_lock<std::mutex>;

    ~VideoRenderer() override;

    class Input final : public SamplePin {
    public:
        explicit Input(VideoRenderer* renderer)
            : SamplePin(renderer, L"Input"), renderer_(renderer) {}

        HRESULT STDMETHODCALLTYPE EndOfStream() override { return renderer_->endOfStream(); }
        HRESULT STDMETHODCALLTYPE BeginFlush() override { return renderer_->beginFlush(); }
        HRESULT STDMETHODCALLTYPE EndFlush() override { return renderer_->endFlush(); }
        HRESULT STDMETHODCALLTYPE Receive(IMediaSample* sample) override {
            return renderer_->receive(sample);
        }
        HRESULT STDMETHODCALLTYPE GetAllocator(IMemAllocator** allocator) override {
            *allocator = nullptr;
            return VFW_E_NO_ALLOCATOR;
        }
        HRESULT STDMETHODCALLTYPE NotifyAllocator(IMemAllocator* allocator, BOOL readOnly) override;
        HRESULT STDMETHODCALLTYPE GetAllocatorRequirements(ALLOCATOR_PROPERTIES* wanted) override {
            *wanted = {3, 0, 0, 0};  // one on the screen, one that waits, one that is decoded into
            return S_OK;
        }

        const PictureFormat& format() const { return format_; }
        // Whether the decoder can go on while one of its buffers is held.
        bool mayKeep() const { return buffers_ > 1; }

        // The samples' own, which one of them may bring with it.
        HRESULT connected(IPin*, const AM_MEDIA_TYPE& type) override;

    protected:
        HRESULT checkType(const AM_MEDIA_TYPE& type) override;
        void disconnected() override { allocator_.Reset(); }

    private:
        VideoRenderer* const renderer_;
        ComPtr<IMemAllocator> allocator_;
        long buffers_ = 0;
        PictureFormat format_;
    };

    // What comes to the input pin.
    HRESULT receive(IMediaSample* sample);
    HRESULT endOfStream();
    HRESULT beginFlush();
    HRESULT endFlush();
    void draw(IMediaSample* sample);
    void setCued(bool cued);
    // Waits, with the lock held, until the picture of this stream time is due; false when the
    // wait was broken off by a flush, a stop or a pause.
    bool waitUntilDue(Lock& lock, REFERENCE_TIME time);
    // How long the picture still has, in 100 ns; negative when it is late.
    REFERENCE_TIME untilDue(REFERENCE_TIME time);
    void place() { VideoLayer::instance().place(this, placement_); }
    void complete();

    const bool available_;
    std::mutex lock_;
    std::condition_variable changed_;
    bool hasPicture_ = false;  // a picture (or the end) has arrived since the last stop or flush
    bool flushing_ = false;
    bool ended_ = false;
    DWORD shown_ = 0;
    DWORD dropped_ = 0;
    DWORD lastShownTick_ = 0;
    DWORD longestGap_ = 0;  // milliseconds between two pictures while running
    COLORREF key_ = RGB(0xF8, 0, 0xF8);
    bool keyEnabled_ = true;
    VideoLayer::Placement placement_;
    Input input_{this};
    ComPtr<IUnknown> seeking_;  // aggregated: IMediaSeeking and IMediaPosition upstream
};

}  // namespace filters
