#include "simulator/filters/caption_renderer.h"

#include "platform/wide.h"
#include "simulator/filters/video_layer.h"
#include "simulator/tape/tape.h"

namespace filters {

namespace {

constexpr LONG kCaptionEvent = 0x8FFF;
constexpr UINT kTickMilliseconds = 50;
constexpr LONGLONG kMillisecond = 10000;  // in the 100 ns of stream times

}  // namespace

CaptionRenderer::CaptionRenderer()
    : BaseFilter(vendor::kCaptionRendererClass),
      input_(this, PINDIR_INPUT, L"Input",
             {.takes = ofMajorType(MEDIATYPE_Text),
              .connected =
                  [this](IPin* peer, const AM_MEDIA_TYPE&) {
                      return peer->QueryInterface(kCaptionTrack,
                                                  reinterpret_cast<void**>(track_.GetAddressOf()));
                  },
              .disconnected =
                  [this] {
                      show(nullptr);
                      track_.Reset();
                  }}) {
}

CaptionRenderer::~CaptionRenderer() {
    AppWindow::instance().stopTicks(this);
    show(nullptr);
}

void* CaptionRenderer::findInterface(REFIID iid) {
    return iid == vendor::kCaptionRendererStyle ? static_cast<vendor::CaptionRendererStyle*>(this)
                                                : nullptr;
}

HRESULT CaptionRenderer::JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) {
    AppWindow::instance().ensure();
    if (!graph) {
        AppWindow::instance().stopTicks(this);
        show(nullptr);
    }
    return BaseFilter::JoinFilterGraph(graph, name);
}

HRESULT CaptionRenderer::Stop() {
    AppWindow::instance().stopTicks(this);
    show(nullptr);
    return BaseFilter::Stop();
}

HRESULT CaptionRenderer::Pause() {
    AppWindow::instance().startTicks(this, kTickMilliseconds);
    return BaseFilter::Pause();
}

HRESULT CaptionRenderer::Run(REFERENCE_TIME start) {
    AppWindow::instance().startTicks(this, kTickMilliseconds);
    return BaseFilter::Run(start);
}

HRESULT CaptionRenderer::setStyle(const wchar_t* face, const vendor::CaptionStyle* style,
                                  DWORD visible) {
    if (face && *face) {
        look_.face = face;
    }
    if (style) {
        look_.style = *style;
    }
    look_.visible = visible != 0;
    shownStart_ = kOpenEnd;  // redrawn at the next tick
    return S_OK;
}

void CaptionRenderer::tick() {
    ComPtr<IMediaSeeking> seeking;
    LONGLONG position = 0;
    if (!track_ || !graph_ || FAILED(graph_->QueryInterface(IID_PPV_ARGS(&seeking))) ||
        FAILED(seeking->GetCurrentPosition(&position)) || position < 0) {
        return;
    }
    show(track_->at(static_cast<DWORD>(position / kMillisecond)));
}

void CaptionRenderer::show(const Caption* caption) {
    const DWORD start = caption ? caption->start : kOpenEnd;
    if (start == shownStart_) {
        return;
    }
    shownStart_ = start;
    const std::wstring text = caption ? platform::wide(caption->text.c_str()) : L"";
    VideoLayer::instance().setCaption(text, look_);
    if (!caption) {
        return;
    }
    tape::Line("caption")
        .text("text", text.c_str())
        .number("start", caption->start)
        .number("end", caption->end);
    sendGraphEvent(graph_, kCaptionEvent, static_cast<LONG_PTR>(caption->start),
                   static_cast<LONG_PTR>(caption->end));
}

}  // namespace filters
