// "TCC NullVideoDec Filter": stands in for a video decoder that the chip does not have. It takes
// any compressed video, offers pictures so that the chain to the renderer completes, and delivers
// nothing but the end of the stream.
#pragma once

#include "simulator/filters/base_filter.h"
#include "simulator/filters/base_pin.h"

namespace filters {

class NullDecoder final : public BaseFilter {
public:
    NullDecoder();

protected:
    void* findInterface(REFIID) override { return nullptr; }
    PinList pins() override { return {ComPtr<IPin>(&input_), ComPtr<IPin>(&output_)}; }

private:
    ~NullDecoder() override = default;

    Pin input_;
    Pin output_;
};

}  // namespace filters
