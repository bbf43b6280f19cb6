// "TCC Caption Parser": reads a subtitle file whole when it is connected to its source and hands
// the captions on to the caption renderer. Used on the application's thread only.
#pragma once

#include "graph/vendor_interfaces.h"
#include "simulator/filters/base_filter.h"
#include "simulator/filters/base_pin.h"
#include "simulator/filters/captions/caption_text.h"

namespace filters {

// Between parser and renderer, asked of the parser's output pin.
inline constexpr IID kCaptionTrack = {
    0x2F3B1C60, 0x8D0E, 0x4C7A, {0x9A, 0x51, 0x6E, 0x1D, 0x0B, 0x7C, 0x42, 0x11}};
struct CaptionTrack : IUnknown {
    // The caption that stands at this play time; null when there is none. Valid while connected.
    virtual const Caption* STDMETHODCALLTYPE at(DWORD milliseconds) = 0;
};

class CaptionParser final : public BaseFilter,
                            public vendor::CaptionParserControl,
                            public CaptionTrack {
public:
    CaptionParser();

    FILTERS_JOIN_UNKNOWN(BaseFilter)

    HRESULT STDMETHODCALLTYPE method1() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE setSubtitleType(DWORD type) override;
    // Captions without an end stay until the movie's.
    HRESULT STDMETHODCALLTYPE setDuration(double seconds) override {
        return seconds >= 0 ? S_OK : E_INVALIDARG;
    }
    HRESULT STDMETHODCALLTYPE setPosition(DWORD a, DWORD b) override;

    const Caption* STDMETHODCALLTYPE at(DWORD milliseconds) override;

protected:
    void* findInterface(REFIID iid) override;
    PinList pins() override { return {ComPtr<IPin>(&input_), ComPtr<IPin>(&output_)}; }

private:
    ~CaptionParser() override = default;

    // Of the file that the peer of the input pin reads.
    HRESULT readFile(IPin* peer);
    // None for a file without captions: then nothing can be rendered.
    TypeList offeredTypes() const;

    SubtitleType subtitleType_ = SubtitleType::Smi;
    std::vector<Caption> captions_;
    Pin input_;
    Pin output_;
};

}  // namespace filters
