// The renderer's pictures, each at its time. Called on the decoder's thread, but for the flushes.
#include <algorithm>
#include <chrono>

#include "simulator/filters/video_renderer.h"
#include "simulator/tape/tape.h"

namespace filters {

namespace {

constexpr REFERENCE_TIME kMillisecond = 10000;
constexpr REFERENCE_TIME kTooLate = 80 * kMillisecond;
// However late the pictures come, one is shown at least this often.
constexpr DWORD kShowAnywayMilliseconds = 250;
constexpr std::chrono::milliseconds kLongestWait{1000};

}  // namespace

REFERENCE_TIME VideoRenderer::untilDue(REFERENCE_TIME time) {
    REFERENCE_TIME now = 0;
    if (!clock_ || FAILED(clock_.Get()->GetTime(&now))) {
        return 0;
    }
    return start_ + time - now;
}

bool VideoRenderer::waitUntilDue(Lock& lock, REFERENCE_TIME time) {
    for (;;) {
        if (flushing_ || state_ == State_Stopped) {
            return false;
        }
        if (state_ != State_Running) {
            changed_.wait(lock);
            continue;
        }
        const REFERENCE_TIME left = untilDue(time);
        if (left < kMillisecond) {
            return true;
        }
        changed_.wait_for(lock,
                          std::min(kLongestWait, std::chrono::milliseconds(left / kMillisecond)));
    }
}

HRESULT VideoRenderer::Input::NotifyAllocator(IMemAllocator* allocator, BOOL) {
    ALLOCATOR_PROPERTIES properties{};
    allocator_ = allocator;
    buffers_ =
        allocator && SUCCEEDED(allocator->GetProperties(&properties)) ? properties.cBuffers : 0;
    return S_OK;
}

HRESULT VideoRenderer::receive(IMediaSample* sample) {
    Lock lock(lock_);
    if (state_ == State_Stopped) {
        return VFW_E_WRONG_STATE;
    }
    if (flushing_ || ended_) {
        return S_FALSE;
    }
    AM_MEDIA_TYPE* changedType = nullptr;
    if (sample->GetMediaType(&changedType) == S_OK) {
        input_.connected(nullptr, *changedType);
        CoTaskMemFree(changedType->pbFormat);
        CoTaskMemFree(changedType);
    }
    REFERENCE_TIME begin = 0;
    REFERENCE_TIME end = 0;
    const bool timed = SUCCEEDED(sample->GetTime(&begin, &end));
    if (!hasPicture_) {
        // The first picture is shown at once and held until the graph runs.
        draw(sample);
        tape::FilterLine(vendor::kVideoRendererName, L"first picture");
        setCued(true);
        return waitUntilDue(lock, timed ? begin : 0) ? S_OK : S_FALSE;
    }
    if (!waitUntilDue(lock, timed ? begin : 0)) {
        return S_FALSE;
    }
    const bool late = timed && untilDue(begin) < -kTooLate;
    if (late && GetTickCount() - lastShownTick_ < kShowAnywayMilliseconds) {
        ++dropped_;
        return S_OK;
    }
    draw(sample);
    return S_OK;
}

void VideoRenderer::setCued(bool cued) {
    hasPicture_ = cued;
    changed_.notify_all();
}

void VideoRenderer::draw(IMediaSample* sample) {
    const PictureFormat& format = input_.format();
    if (sample->GetActualDataLength() < format.bytes()) {
        return;
    }
    VideoLayer::instance().show(this, format, sample, input_.mayKeep());
    const DWORD now = GetTickCount();
    if (state_ == State_Running && lastShownTick_ && now - lastShownTick_ > longestGap_) {
        longestGap_ = now - lastShownTick_;
    }
    lastShownTick_ = now;
    ++shown_;
}

HRESULT VideoRenderer::endOfStream() {
    bool running;
    {
        const std::lock_guard guard(lock_);
        if (flushing_ || ended_) {
            return S_OK;
        }
        ended_ = true;
        setCued(true);
        running = state_ == State_Running;
    }
    if (running) {
        complete();
    }
    return S_OK;
}

HRESULT VideoRenderer::beginFlush() {
    const std::lock_guard guard(lock_);
    flushing_ = true;
    ended_ = false;
    setCued(false);
    changed_.notify_all();
    return S_OK;
}

HRESULT VideoRenderer::endFlush() {
    const std::lock_guard guard(lock_);
    flushing_ = false;
    return S_OK;
}

void VideoRenderer::complete() {
    ComPtr<IMediaEventSink> sink;
    if (graph_ && SUCCEEDED(graph_->QueryInterface(IID_PPV_ARGS(&sink)))) {
        sink->Notify(EC_COMPLETE, S_OK,
                     reinterpret_cast<LONG_PTR>(static_cast<IBaseFilter*>(this)));
    }
}

}  // namespace filters
