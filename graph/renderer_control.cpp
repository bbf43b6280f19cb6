// The vendor's settings: video renderer, owner window, options, audio streams, captions.
#include "graph/filter_control.h"
#include "graph/graph_walk.h"
#include "platform/print.h"

using graph::Walk;

platform::ComPtr<IBaseFilter> CFilterControl::findVideoRenderer() {
    ComPtr<IBaseFilter> renderer = findFilter(vendor::kVideoRendererName);
    return renderer ? renderer : findFilter(vendor::kVideoRendererSecondName);
}

void CFilterControl::SetRender(DWORD value) {
    if (!graph_) {
        return;
    }
    const ComPtr<IBaseFilter> renderer = findVideoRenderer();
    if (!renderer) {
        platform::print("Fail SetRender");
        return;
    }
    const auto renderSwitch = renderer.query<vendor::VideoRenderSwitch>(vendor::kVideoRenderSwitch);
    if (!renderSwitch) {
        platform::print("Fail Call IID_ITCCVideoRenderSwitch_SetRender Interface");
        return;
    }
    renderSwitch->setRender(value);
}

void CFilterControl::SetRendererChromakeyValue(DWORD a, DWORD b, DWORD c) {
    chromaKey_[0] = a;
    chromaKey_[1] = b;
    chromaKey_[2] = c;
    if (!graph_) {
        return;
    }
    const ComPtr<IBaseFilter> renderer = findVideoRenderer();
    if (!renderer) {
        platform::print("[%s]Fail to find Video Render\n",
                        "CFilterControl::SetRendererChromakeyValue");
        return;
    }
    if (const auto key = renderer.query<vendor::ChromaKey>(vendor::kChromaKey)) {
        key->setKey(a, b, a);
    }
}

void CFilterControl::SetColourKey(std::uint32_t colour) {
    constexpr std::uint32_t kChannel = 0xFF;
    SetRendererChromakeyValue((colour >> 16) & kChannel, (colour >> 8) & kChannel,
                              colour & kChannel);
}

void CFilterControl::SetChromakeySwitch(DWORD value) {
    const ComPtr<IBaseFilter> renderer = findVideoRenderer();
    if (const auto key = renderer.query<vendor::ChromaKey>(vendor::kChromaKey)) {
        key->enableKey(value);
    }
}

void CFilterControl::setAspect(std::uint32_t aspectX, std::uint32_t aspectY) {
    aspectX_ = aspectX;
    aspectY_ = aspectY;
}

int CFilterControl::SetModeFlag(int x, int y, int width, int height) {
    if (!graph_) {
        return 0;
    }
    const ComPtr<IBaseFilter> renderer = findVideoRenderer();
    if (!renderer) {
        platform::print("[TCMovieManager]Fail to find Video Render for SetModeFlag\n");
        return 0;
    }
    if (const auto output = renderer.query<vendor::VideoRenderSwitch>(vendor::kVideoRenderSwitch)) {
        output->setModeFlags(vendor::kKeepAspectRatio, aspectX_, aspectY_);
        const vendor::VideoOutput placement = {
            {x, y, x + width, y + height}, vendor::kWholeColour, 1, vendor::kPlayerLayer, 0};
        output->setOutput(&placement);
    }
    return 1;
}

int CFilterControl::PlaceOutput(const vendor::VideoOutput& placement) {
    const ComPtr<IBaseFilter> renderer = findVideoRenderer();
    const auto output = renderer.query<vendor::VideoRenderSwitch>(vendor::kVideoRenderSwitch);
    return output && SUCCEEDED(output->setOutput(&placement)) ? 1 : 0;
}

void CFilterControl::CurrentFrameResize() {
    if (!graph_) {
        return;
    }
    const ComPtr<IBaseFilter> renderer = findVideoRenderer();
    if (!renderer) {
        platform::print("[%s]Fail to find Video Render\n", "CFilterControl::CurrentFrameResize");
        return;
    }
    if (const auto output = renderer.query<vendor::VideoRenderSwitch>(vendor::kVideoRenderSwitch)) {
        output->redrawFrame();
    }
}

int CFilterControl::SetOwnerWindow(HWND window) {
    int taken = 0;
    graph::forEachInterface<vendor::OwnerWindow>(graph_.get(), vendor::kOwnerWindow,
                                                 [&](vendor::OwnerWindow& owner) {
                                                     owner.setOwnerWindow(window);
                                                     taken = 1;
                                                     return Walk::Continue;
                                                 });
    return taken;
}

int CFilterControl::SetFilterOption(DWORD value) {
    graph::forEachInterface<vendor::OwnerWindow>(graph_.get(), vendor::kOwnerWindow,
                                                 [&](vendor::OwnerWindow& owner) {
                                                     owner.setOption(value);
                                                     return Walk::Continue;
                                                 });
    return 0;
}

void CFilterControl::ClearStartOptions() {
    for (const IID& iid : {vendor::kStartOption1, vendor::kStartOption2}) {
        graph::forEachInterface<vendor::StartOption>(graph_.get(), iid,
                                                     [](vendor::StartOption& option) {
                                                         option.setValue(0);
                                                         return Walk::Continue;
                                                     });
    }
}

HRESULT CFilterControl::SetDemuxOption(DWORD value) {
    const auto options = demuxSecond_.query<vendor::DemuxOptions>(vendor::kDemuxOptions);
    return options ? options->setOption(value) : E_FAIL;
}

DWORD CFilterControl::FilterStatus() {
    DWORD value = 1;
    graph::forEachInterface<vendor::FilterStatus>(graph_.get(), vendor::kFilterStatus,
                                                  [&](vendor::FilterStatus& filter) {
                                                      filter.status(&value);
                                                      return Walk::Stop;
                                                  });
    return value;
}

void CFilterControl::SelectAudioStream(DWORD index) {
    graph::forEachInterface<vendor::AudioStreamSelection>(
        graph_.get(), vendor::kAudioStreamSelection, [&](vendor::AudioStreamSelection& streams) {
            streams.selectStream(index);
            return Walk::Continue;
        });
}

int CFilterControl::SetCaptionPosition(DWORD a, DWORD b) {
    if (!captionParser_) {
        return 0;
    }
    const auto control =
        captionParser_.query<vendor::CaptionParserControl>(vendor::kCaptionParserControl);
    if (!control) {
        return 0;
    }
    control->setPosition(a, b);
    return 1;
}

void CFilterControl::SetCaptionStyle(const vendor::CaptionStyle& style, DWORD visible) {
    if (const auto captions =
            captionRenderer_.query<vendor::CaptionRendererStyle>(vendor::kCaptionRendererStyle)) {
        captions->setStyle(L"arial", &style, visible);
    }
}

int CFilterControl::HasNullVideoDecoder() {
    return findFilter(vendor::kNullVideoDecoderName) ? 1 : 0;
}

int CFilterControl::HasAudioRenderer() {
    return findFilter(vendor::kAudioRendererName) ? 1 : 0;
}
