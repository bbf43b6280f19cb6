// The vendor's settings: video renderer, owner window, options, audio streams, captions.
#include "graph/filter_control.h"
#include "graph/graph_walk.h"
#include "graph/interfaces.h"
#include "graph/vendor_interfaces.h"
#include "platform/print.h"

using graph::Walk;

using platform::ComPtr;

namespace {

constinit const graph::Interfaces kNothingHeld{};

}  // namespace

namespace graph {

ComPtr<IBaseFilter> Interfaces::findFilter(const wchar_t* name) const {
    ComPtr<IBaseFilter> filter;
    if (builder && FAILED(builder->FindFilterByName(name, filter.out()))) {
        filter.reset();
    }
    return filter;
}

ComPtr<IBaseFilter> Interfaces::findVideoRenderer() const {
    ComPtr<IBaseFilter> renderer = findFilter(vendor::kVideoRendererName);
    return renderer ? renderer : findFilter(vendor::kVideoRendererSecondName);
}

}  // namespace graph

const graph::Interfaces& CFilterControl::held() const {
    return held_ ? *held_ : kNothingHeld;
}

IGraphBuilder* CFilterControl::builder() const {
    return held().builder.get();
}

void CFilterControl::SetRender(std::uint32_t value) {
    if (!hasGraph()) {
        return;
    }
    const ComPtr<IBaseFilter> renderer = held().findVideoRenderer();
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

void CFilterControl::SetRendererChromakeyValue(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
    chromaKey_[0] = a;
    chromaKey_[1] = b;
    chromaKey_[2] = c;
    if (!hasGraph()) {
        return;
    }
    const ComPtr<IBaseFilter> renderer = held().findVideoRenderer();
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

void CFilterControl::SetChromakeySwitch(std::uint32_t value) {
    const ComPtr<IBaseFilter> renderer = held().findVideoRenderer();
    if (const auto key = renderer.query<vendor::ChromaKey>(vendor::kChromaKey)) {
        key->enableKey(value);
    }
}

void CFilterControl::setAspect(std::uint32_t aspectX, std::uint32_t aspectY) {
    aspectX_ = aspectX;
    aspectY_ = aspectY;
}

int CFilterControl::SetModeFlag(int x, int y, int width, int height) {
    if (!hasGraph()) {
        return 0;
    }
    const ComPtr<IBaseFilter> renderer = held().findVideoRenderer();
    if (!renderer) {
        platform::print("[TCMovieManager]Fail to find Video Render for SetModeFlag\n");
        return 0;
    }
    if (const auto output = renderer.query<vendor::VideoRenderSwitch>(vendor::kVideoRenderSwitch)) {
        output->setModeFlags(vendor::kKeepAspectRatio, aspectX_, aspectY_);
        PlaceOutput({x, y, width, height, true, kPlayerLayer, false});
    }
    return 1;
}

int CFilterControl::PlaceOutput(const VideoPlacement& placement) {
    const ComPtr<IBaseFilter> renderer = held().findVideoRenderer();
    const auto output = renderer.query<vendor::VideoRenderSwitch>(vendor::kVideoRenderSwitch);
    if (!output) {
        return 0;
    }
    const vendor::VideoOutput asked = {
        {placement.x, placement.y, placement.x + placement.width, placement.y + placement.height},
        vendor::kWholeColour,
        placement.enabled ? 1u : 0u,
        placement.layer,
        placement.repaint ? 1u : 0u};
    return SUCCEEDED(output->setOutput(&asked)) ? 1 : 0;
}

void CFilterControl::CurrentFrameResize() {
    if (!hasGraph()) {
        return;
    }
    const ComPtr<IBaseFilter> renderer = held().findVideoRenderer();
    if (!renderer) {
        platform::print("[%s]Fail to find Video Render\n", "CFilterControl::CurrentFrameResize");
        return;
    }
    if (const auto output = renderer.query<vendor::VideoRenderSwitch>(vendor::kVideoRenderSwitch)) {
        output->redrawFrame();
    }
}

int CFilterControl::SetOwnerWindow(platform::Window window) {
    int taken = 0;
    graph::forEachInterface<vendor::OwnerWindow>(builder(), vendor::kOwnerWindow,
                                                 [&](vendor::OwnerWindow& owner) {
                                                     owner.setOwnerWindow(window);
                                                     taken = 1;
                                                     return Walk::Continue;
                                                 });
    return taken;
}

int CFilterControl::SetFilterOption(std::uint32_t value) {
    graph::forEachInterface<vendor::OwnerWindow>(builder(), vendor::kOwnerWindow,
                                                 [&](vendor::OwnerWindow& owner) {
                                                     owner.setOption(value);
                                                     return Walk::Continue;
                                                 });
    return 0;
}

void CFilterControl::ClearStartOptions() {
    for (const IID& iid : {vendor::kStartOption1, vendor::kStartOption2}) {
        graph::forEachInterface<vendor::StartOption>(builder(), iid,
                                                     [](vendor::StartOption& option) {
                                                         option.setValue(0);
                                                         return Walk::Continue;
                                                     });
    }
}

std::int32_t CFilterControl::SetDemuxOption(std::uint32_t value) {
    const auto options = held().demuxSecond.query<vendor::DemuxOptions>(vendor::kDemuxOptions);
    return options ? options->setOption(value) : E_FAIL;
}

std::uint32_t CFilterControl::FilterStatus() {
    DWORD value = 1;
    graph::forEachInterface<vendor::FilterStatus>(builder(), vendor::kFilterStatus,
                                                  [&](vendor::FilterStatus& filter) {
                                                      filter.status(&value);
                                                      return Walk::Stop;
                                                  });
    return value;
}

void CFilterControl::SelectAudioStream(std::uint32_t index) {
    graph::forEachInterface<vendor::AudioStreamSelection>(
        builder(), vendor::kAudioStreamSelection, [&](vendor::AudioStreamSelection& streams) {
            streams.selectStream(index);
            return Walk::Continue;
        });
}

int CFilterControl::SetCaptionPosition(std::uint32_t a, std::uint32_t b) {
    if (!held().captionParser) {
        return 0;
    }
    const auto control =
        held().captionParser.query<vendor::CaptionParserControl>(vendor::kCaptionParserControl);
    if (!control) {
        return 0;
    }
    control->setPosition(a, b);
    return 1;
}

void CFilterControl::SetCaptionStyle(const vendor::CaptionStyle& style, std::uint32_t visible) {
    if (const auto captions = held().captionRenderer.query<vendor::CaptionRendererStyle>(
            vendor::kCaptionRendererStyle)) {
        captions->setStyle(L"arial", &style, visible);
    }
}

int CFilterControl::HasNullVideoDecoder() {
    return held().findFilter(vendor::kNullVideoDecoderName) ? 1 : 0;
}

int CFilterControl::HasAudioRenderer() {
    return held().findFilter(vendor::kAudioRendererName) ? 1 : 0;
}
