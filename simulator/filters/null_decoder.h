// "TCC NullVideoDec Filter": stands in for a video decoder that the chip does not have. It takes
// any compressed video, offers 32-bit RGB so that the chain to the renderer completes, and delivers
// nothing but the end of the stream.
#pragma once

#include "simulator/filters/base_filter.h"
#include "simulator/filters/base_pin.h"

namespace filters {

class NullDecoder final : public BaseFilter {
public:
    NullDecoder();

    HRESULT endOfStream() { return output_.peer() ? output_.peer()->EndOfStream() : S_OK; }
    const MediaType& inputType() const { return input_.type(); }

protected:
    void* findInterface(REFIID) override { return nullptr; }
    PinList pins() override;

private:
    ~NullDecoder() override = default;

    class Input final : public BasePin {
    public:
        explicit Input(NullDecoder* decoder)
            : BasePin(decoder, PINDIR_INPUT, L"Input"), decoder_(decoder) {}
        HRESULT STDMETHODCALLTYPE EndOfStream() override { return decoder_->endOfStream(); }

    protected:
        HRESULT checkType(const AM_MEDIA_TYPE& type) override;

    private:
        NullDecoder* const decoder_;
    };

    class Output final : public BasePin {
    public:
        explicit Output(NullDecoder* decoder)
            : BasePin(decoder, PINDIR_OUTPUT, L"Output"), decoder_(decoder) {}

    protected:
        HRESULT checkType(const AM_MEDIA_TYPE& type) override;
        TypeList offeredTypes() override;

    private:
        NullDecoder* const decoder_;
    };

    Input input_{this};
    Output output_{this};
};

}  // namespace filters
