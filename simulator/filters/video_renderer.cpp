#include "simulator/filters/video_renderer.h"

#include <cstring>

#include "simulator/filters/lock.h"
#include "simulator/tape/tape.h"

namespace filters {

namespace {

constexpr REFERENCE_TIME kMillisecond = 10000;
constexpr REFERENCE_TIME kTooLate = 80 * kMillisecond;
// However late the pictures come, one is shown at least this often.
constexpr DWORD kShowAnywayMilliseconds = 250;
constexpr DWORD kLongestWaitMilliseconds = 1000;

constexpr DWORD kRenderShow = 10;
constexpr DWORD kRenderHide = 12;

}  // namespace

VideoRenderer::VideoRenderer(const CLSID& classId, bool available)
    : BaseFilter(classId), available_(available) {
    InitializeCriticalSection(&lock_);
    InitializeConditionVariable(&changed_);
    cued_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
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
    CloseHandle(cued_);
    DeleteCriticalSection(&lock_);
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
    Guard guard(lock_);
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
    WakeAllConditionVariable(&changed_);
    return S_OK;
}

HRESULT VideoRenderer::Pause() {
    Guard guard(lock_);
    if (state_ == State_Stopped) {
        shown_ = dropped_ = longestGap_ = 0;
        setCued(false);
    }
    state_ = State_Paused;
    WakeAllConditionVariable(&changed_);
    const bool waiting = input_.peer() && !hasPicture_;
    return waiting ? S_FALSE : S_OK;
}

HRESULT VideoRenderer::Run(REFERENCE_TIME start) {
    bool finished = false;
    {
        Guard guard(lock_);
        finished = ended_ && state_ != State_Running;
        start_ = start;
        state_ = State_Running;
        lastShownTick_ = 0;
        WakeAllConditionVariable(&changed_);
    }
    if (finished || !input_.peer()) {
        complete();
    }
    return S_OK;
}

HRESULT VideoRenderer::GetState(DWORD milliseconds, FILTER_STATE* state) {
    if (!state) {
        return E_POINTER;
    }
    bool waiting;
    {
        Guard guard(lock_);
        *state = state_;
        waiting = state_ == State_Paused && input_.peer();
    }
    if (waiting && WaitForSingleObject(cued_, milliseconds) != WAIT_OBJECT_0) {
        return VFW_S_STATE_INTERMEDIATE;
    }
    return S_OK;
}

HRESULT VideoRenderer::SetSyncSource(IReferenceClock* clock) {
    Guard guard(lock_);
    return BaseFilter::SetSyncSource(clock);
}

ULONG VideoRenderer::GetMiscFlags() {
    return AM_FILTER_MISC_FLAGS_IS_RENDERER;
}

REFERENCE_TIME VideoRenderer::untilDue(REFERENCE_TIME time) {
    REFERENCE_TIME now = 0;
    if (!clock_ || FAILED(clock_.Get()->GetTime(&now))) {
        return 0;
    }
    return start_ + time - now;
}

bool VideoRenderer::waitUntilDue(REFERENCE_TIME time) {
    for (;;) {
        if (flushing_ || state_ == State_Stopped) {
            return false;
        }
        DWORD milliseconds = INFINITE;
        if (state_ == State_Running) {
            const REFERENCE_TIME left = untilDue(time);
            if (left < kMillisecond) {
                return true;
            }
            milliseconds = static_cast<DWORD>(left / kMillisecond);
            milliseconds =
                milliseconds < kLongestWaitMilliseconds ? milliseconds : kLongestWaitMilliseconds;
        }
        SleepConditionVariableCS(&changed_, &lock_, milliseconds);
    }
}

HRESULT VideoRenderer::receive(IMediaSample* sample) {
    Guard guard(lock_);
    if (state_ == State_Stopped) {
        return VFW_E_WRONG_STATE;
    }
    if (flushing_ || ended_) {
        return S_FALSE;
    }
    AM_MEDIA_TYPE* changedType = nullptr;
    if (sample->GetMediaType(&changedType) == S_OK) {
        input_.changeFormat(*changedType);
        CoTaskMemFree(changedType->pbFormat);
        CoTaskMemFree(changedType);
    }
    REFERENCE_TIME begin = 0;
    REFERENCE_TIME end = 0;
    const bool timed = SUCCEEDED(sample->GetTime(&begin, &end));
    if (!hasPicture_) {
        // The first picture is shown at once and held until the graph runs.
        draw(sample);
        setCued(true);
        return waitUntilDue(timed ? begin : 0) ? S_OK : S_FALSE;
    }
    if (!waitUntilDue(timed ? begin : 0)) {
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
    if (cued) {
        SetEvent(cued_);
    } else {
        ResetEvent(cued_);
    }
}

void VideoRenderer::draw(IMediaSample* sample) {
    BYTE* bytes = nullptr;
    const PictureFormat& format = input_.format();
    if (FAILED(sample->GetPointer(&bytes)) || sample->GetActualDataLength() < format.bytes()) {
        return;
    }
    VideoLayer::instance().show(this, format, bytes);
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
        Guard guard(lock_);
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
    Guard guard(lock_);
    flushing_ = true;
    ended_ = false;
    setCued(false);
    WakeAllConditionVariable(&changed_);
    return S_OK;
}

HRESULT VideoRenderer::endFlush() {
    Guard guard(lock_);
    flushing_ = false;
    return S_OK;
}

void VideoRenderer::complete() {
    notify(EC_COMPLETE, S_OK, reinterpret_cast<LONG_PTR>(static_cast<IBaseFilter*>(this)));
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
    if (!output) {
        return E_POINTER;
    }
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

HRESULT VideoRenderer::method1() {
    return E_NOTIMPL;
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

HRESULT VideoRenderer::method3() {
    return E_NOTIMPL;
}

HRESULT VideoRenderer::method4() {
    return E_NOTIMPL;
}

HRESULT VideoRenderer::method5() {
    return E_NOTIMPL;
}

HRESULT VideoRenderer::setOption(DWORD) {
    return S_OK;
}

HRESULT VideoRenderer::status(DWORD* value) {
    if (!value) {
        return E_POINTER;
    }
    *value = input_.peer() ? 1 : 0;
    return S_OK;
}

HRESULT VideoRenderer::setValue(DWORD) {
    return S_OK;
}

}  // namespace filters
