#include "simulator/filters/video_renderer.h"

#include <algorithm>
#include <chrono>
#include <cstring>

#include "simulator/tape/tape.h"

namespace filters {

namespace {

constexpr DWORD kRenderShow = 10;
constexpr DWORD kRenderHide = 12;

}  // namespace

VideoRenderer::VideoRenderer(const CLSID& classId, bool available)
    : BaseFilter(classId), available_(available) {
    placement_.output.enabled = 1;
    auto* outer = static_cast<IBaseFilter*>(this);
    ComPtr<ISeekingPassThru> passThru;
    if (SUCCEEDED(CoCreateInstance(CLSID_SeekingPassThru, outer, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                   reinterpret_cast<void**>(seeking_.GetAddressOf()))) &&
        SUCCEEDED(seeking_.As(&passThru))) {
        passThru->Init(TRUE, &input_);
    }
}

VideoRenderer::~VideoRenderer() {
    VideoLayer::instance().leave(this);
    seeking_.Reset();
}

void* VideoRenderer::findInterface(REFIID iid) {
    if (iid == IID_IAMFilterMiscFlags) {
        return static_cast<IAMFilterMiscFlags*>(this);
    }
    if (iid == vendor::kVideoRenderSwitch) {
        return static_cast<vendor::VideoRenderSwitch*>(this);
    }
    if (iid == vendor::kChromaKey) {
        return static_cast<vendor::ChromaKey*>(this);
    }
    if (iid == vendor::kOwnerWindow) {
        return static_cast<vendor::OwnerWindow*>(this);
    }
    if (iid == vendor::kFilterStatus) {
        return static_cast<vendor::FilterStatus*>(this);
    }
    if (iid == vendor::kStartOption1 || iid == vendor::kStartOption2) {
        return static_cast<vendor::StartOption*>(this);
    }
    if (seeking_ && (iid == IID_IMediaSeeking || iid == IID_IMediaPosition)) {
        void* found = nullptr;
        if (SUCCEEDED(seeking_.Get()->QueryInterface(iid, &found))) {
            Release();  // the caller counts
            return found;
        }
    }
    return nullptr;
}

PinList VideoRenderer::pins() {
    return {ComPtr<IPin>(&input_)};
}

HRESULT VideoRenderer::Stop() {
    const std::lock_guard guard(lock_);
    if (state_ != State_Stopped) {
        tape::Line("filter")
            .text("filter", vendor::kVideoRendererName)
            .text("what", L"stopped")
            .number("shown", shown_)
            .number("dropped", dropped_)
            .number("longestGapMs", longestGap_);
    }
    state_ = State_Stopped;
    ended_ = false;
    setCued(false);
    changed_.notify_all();
    return S_OK;
}

HRESULT VideoRenderer::Pause() {
    const std::lock_guard guard(lock_);
    if (state_ == State_Stopped) {
        shown_ = dropped_ = longestGap_ = 0;
        setCued(false);
    }
    state_ = State_Paused;
    changed_.notify_all();
    const bool waiting = input_.peer() && !hasPicture_;
    return waiting ? S_FALSE : S_OK;
}

HRESULT VideoRenderer::Run(REFERENCE_TIME start) {
    bool finished = false;
    {
        const std::lock_guard guard(lock_);
        finished = ended_ && state_ != State_Running;
        start_ = start;
        state_ = State_Running;
        lastShownTick_ = 0;
        changed_.notify_all();
    }
    if (finished || !input_.peer()) {
        complete();
    }
    return S_OK;
}

HRESULT VideoRenderer::GetState(DWORD milliseconds, FILTER_STATE* state) {
    Lock lock(lock_);
    const auto cued = [this] { return state_ != State_Paused || !input_.peer() || hasPicture_; };
    // Without an end (INFINITE) is a week, which clocks can add.
    const std::chrono::milliseconds longest = std::chrono::hours(24 * 7);
    const bool done =
        changed_.wait_for(lock, std::min(longest, std::chrono::milliseconds(milliseconds)), cued);
    *state = state_;
    return done ? S_OK : VFW_S_STATE_INTERMEDIATE;
}

HRESULT VideoRenderer::SetSyncSource(IReferenceClock* clock) {
    const std::lock_guard guard(lock_);
    return BaseFilter::SetSyncSource(clock);
}

ULONG VideoRenderer::GetMiscFlags() {
    return AM_FILTER_MISC_FLAGS_IS_RENDERER;
}

void VideoRenderer::place() {
    VideoLayer::instance().place(this, placement_);
}

HRESULT VideoRenderer::setRender(DWORD value) {
    if (value == kRenderShow || value == kRenderHide) {
        tape::Line("filter")
            .text("filter", vendor::kVideoRendererName)
            .text("what", value == kRenderShow ? L"layer on" : L"layer off");
        placement_.shown = value == kRenderShow;
        place();
    }
    return S_OK;
}

HRESULT VideoRenderer::setOutput(const vendor::VideoOutput* output) {
    if (std::memcmp(&placement_.output, output, sizeof *output) != 0) {
        const RECT& place = output->rectangle;
        const std::int64_t edges[] = {place.left, place.top, place.right, place.bottom};
        tape::Line("filter")
            .text("filter", vendor::kVideoRendererName)
            .text("what", L"output")
            .numbers("rect", edges)
            .number("enabled", output->enabled)
            .number("layer", output->layer);
    }
    placement_.output = *output;
    place();
    return S_OK;
}

HRESULT VideoRenderer::setModeFlags(DWORD flags, DWORD aspectX, DWORD aspectY) {
    placement_.modeFlags = flags;
    placement_.aspectX = aspectX;
    placement_.aspectY = aspectY;
    place();
    return S_OK;
}

HRESULT VideoRenderer::redrawFrame() {
    place();
    return S_OK;
}

HRESULT VideoRenderer::setKey(DWORD red, DWORD green, DWORD blue) {
    const bool own = !red && !green && !blue;
    key_ = own ? RGB(0xF8, 0, 0xF8) : RGB(red & 0xFF, green & 0xFF, blue & 0xFF);
    tape::Line("filter")
        .text("filter", vendor::kVideoRendererName)
        .text("what", L"key")
        .number("red", red)
        .number("green", green)
        .number("blue", blue);
    VideoLayer::instance().setKey(key_, keyEnabled_);
    return S_OK;
}

HRESULT VideoRenderer::enableKey(DWORD enable) {
    keyEnabled_ = enable != 0;
    VideoLayer::instance().setKey(key_, keyEnabled_);
    return S_OK;
}

HRESULT VideoRenderer::setOwnerWindow(HWND window) {
    if (VideoLayer::instance().owner() != window) {
        tape::Line("filter")
            .text("filter", vendor::kVideoRendererName)
            .text("what", L"owner")
            .number("window", reinterpret_cast<LONG_PTR>(window));
    }
    VideoLayer::instance().setOwner(window);
    place();
    return S_OK;
}

HRESULT VideoRenderer::status(DWORD* value) {
    *value = input_.peer() ? 1 : 0;
    return S_OK;
}

HRESULT VideoRenderer::setValue(DWORD) {
    return S_OK;
}

}  // namespace filters
