#include "simulator/filters/video_renderer.h"

// VIDEOINFOHEADER2
#include <dvdmedia.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "simulator/filters/codecs/chip_codecs.h"
#include "simulator/tape/tape.h"

namespace filters {

namespace {

constexpr DWORD kRenderShow = 10;
constexpr DWORD kRenderHide = 12;
constexpr LONG kLargestSide = 8192;
// Pictures of at least this height carry the colours of high definition television.
constexpr LONG kFullHdHeight = 720;

const BITMAPINFOHEADER* headerOf(const AM_MEDIA_TYPE& type) {
    if (type.formattype == FORMAT_VideoInfo && type.cbFormat >= sizeof(VIDEOINFOHEADER)) {
        return &reinterpret_cast<const VIDEOINFOHEADER*>(type.pbFormat)->bmiHeader;
    }
    if (type.formattype == FORMAT_VideoInfo2 && type.cbFormat >= sizeof(VIDEOINFOHEADER2)) {
        return &reinterpret_cast<const VIDEOINFOHEADER2*>(type.pbFormat)->bmiHeader;
    }
    return nullptr;
}

// Nothing for pictures that cannot be shown.
std::optional<PictureFormat> formatOf(const AM_MEDIA_TYPE& type) {
    const BITMAPINFOHEADER* const header = headerOf(type);
    if (type.majortype != MEDIATYPE_Video || !header ||
        type.subtype != subtypeOfFourcc(packFourcc('I', '4', '2', '0'))) {
        return std::nullopt;
    }
    const LONG height = std::abs(header->biHeight);
    if (header->biWidth <= 0 || header->biWidth > kLargestSide || height == 0 ||
        height > kLargestSide) {
        return std::nullopt;
    }
    return PictureFormat{header->biWidth, height, height >= kFullHdHeight};
}

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

HRESULT VideoRenderer::Input::checkType(const AM_MEDIA_TYPE& type) {
    return renderer_->available_ && formatOf(type) ? S_OK : S_FALSE;
}

HRESULT VideoRenderer::Input::connected(IPin*, const AM_MEDIA_TYPE& type) {
    const auto found = formatOf(type);
    format_ = found.value_or(format_);
    return found ? S_OK : VFW_E_TYPE_NOT_ACCEPTED;
}

void* VideoRenderer::findInterface(REFIID iid) {
    void* found = nullptr;
    if (seeking_ && (iid == IID_IMediaSeeking || iid == IID_IMediaPosition) &&
        SUCCEEDED(seeking_.Get()->QueryInterface(iid, &found))) {
        Release();  // the caller counts
        return found;
    }
    return findFace(iid,
                    {{IID_IAMFilterMiscFlags, static_cast<IAMFilterMiscFlags*>(this)},
                     {vendor::kVideoRenderSwitch, static_cast<vendor::VideoRenderSwitch*>(this)},
                     {vendor::kChromaKey, static_cast<vendor::ChromaKey*>(this)},
                     {vendor::kOwnerWindow, static_cast<vendor::OwnerWindow*>(this)},
                     {vendor::kFilterStatus, static_cast<vendor::FilterStatus*>(this)},
                     {vendor::kStartOption1, static_cast<vendor::StartOption*>(this)},
                     {vendor::kStartOption2, static_cast<vendor::StartOption*>(this)}});
}

HRESULT VideoRenderer::Stop() {
    const std::lock_guard guard(lock_);
    if (state_ != State_Stopped) {
        tape::FilterLine(vendor::kVideoRendererName, L"stopped")
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
    return input_.peer() && !hasPicture_ ? S_FALSE : S_OK;
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

HRESULT VideoRenderer::setRender(DWORD value) {
    if (value == kRenderShow || value == kRenderHide) {
        tape::FilterLine(vendor::kVideoRendererName,
                         value == kRenderShow ? L"layer on" : L"layer off");
        placement_.shown = value == kRenderShow;
        place();
    }
    return S_OK;
}

HRESULT VideoRenderer::setOutput(const vendor::VideoOutput* output) {
    if (std::memcmp(&placement_.output, output, sizeof *output) != 0) {
        const RECT& place = output->rectangle;
        const std::int64_t edges[] = {place.left, place.top, place.right, place.bottom};
        tape::FilterLine(vendor::kVideoRendererName, L"output")
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

HRESULT VideoRenderer::setKey(DWORD red, DWORD green, DWORD blue) {
    const bool own = !red && !green && !blue;
    key_ = own ? RGB(0xF8, 0, 0xF8) : RGB(red & 0xFF, green & 0xFF, blue & 0xFF);
    tape::FilterLine(vendor::kVideoRendererName, L"key")
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
        tape::FilterLine(vendor::kVideoRendererName, L"owner")
            .number("window", reinterpret_cast<LONG_PTR>(window));
    }
    VideoLayer::instance().setOwner(window);
    place();
    return S_OK;
}

}  // namespace filters
