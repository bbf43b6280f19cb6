// "TCC Caption Parser": reads a subtitle file whole when it is connected to its source and hands
// the captions on to the caption renderer. Used on the application's thread only.
#pragma once

#include "graph/vendor_interfaces.h"
#include "simulator/filters/base_filter.h"
#include "simulator/filters/base_pin.h"
#include "simulator/filters/captions/caption_text.h"

namespace filters {

// Between parser and renderer, on the parser's output pin.
inline constexpr IID kCaptionTrack = {
    0x2F3B1C60, 0x8D0E, 0x4C7A, {0x9A, 0x51, 0x6E, 0x1D, 0x0B, 0x7C, 0x42, 0x11}};
struct CaptionTrack : IUnknown {
    // The caption that stands at this play time; null when there is none. Valid while connected.
    virtual const Caption* STDMETHODCALLTYPE at(DWORD milliseconds) = 0;
};

class CaptionParser final : public BaseFilter, public vendor::CaptionParserControl {
public:
    CaptionParser();

    FILTERS_JOIN_UNKNOWN(BaseFilter)

    HRESULT STDMETHODCALLTYPE method1() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE setSubtitleType(DWORD type) override;
    HRESULT STDMETHODCALLTYPE setDuration(double seconds) override {
        return seconds >= 0 ? S_OK
                            : E_INVALIDARG;  // captions without an end stay until the movie's
    }
    HRESULT STDMETHODCALLTYPE setPosition(DWORD a, DWORD b) override;

    const std::vector<Caption>& captions() const { return captions_; }

protected:
    void* findInterface(REFIID iid) override;
    PinList pins() override;

private:
    ~CaptionParser() override = default;

    class Input final : public BasePin {
    public:
        explicit Input(CaptionParser* parser)
            : BasePin(parser, PINDIR_INPUT, L"Input"), parser_(parser) {}

    protected:
        HRESULT checkType(const AM_MEDIA_TYPE& type) override;
        HRESULT connected(IPin* peer, const AM_MEDIA_TYPE& type) override;
        void disconnected() override { parser_->captions_.clear(); }

    private:
        CaptionParser* const parser_;
    };

    class Output final : public BasePin, public CaptionTrack {
    public:
        explicit Output(CaptionParser* parser)
            : BasePin(parser, PINDIR_OUTPUT, L"Output"), parser_(parser) {}

        FILTERS_JOIN_UNKNOWN(BasePin)

        const Caption* STDMETHODCALLTYPE at(DWORD milliseconds) override;

    protected:
        void* findInterface(REFIID iid) override;
        HRESULT checkType(const AM_MEDIA_TYPE& type) override;
        // None for a file without captions: then nothing can be rendered.
        TypeList offeredTypes() override;

    private:
        CaptionParser* const parser_;
    };

    HRESULT readFile(IAsyncReader* reader);

    SubtitleType subtitleType_ = SubtitleType::Smi;
    std::vector<Caption> captions_;
    Input input_{this};
    Output output_{this};
};

}  // namespace filters
