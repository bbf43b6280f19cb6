// "TCC Caption Renderer": shows the caption that belongs to the play time on the video layer, over
// the lower part of the picture and behind everything that the application paints there. Each
// caption is announced by graph event 0x8FFF with its start and end in milliseconds. Used on the
// application's thread only; it looks at the play time twenty times a second, so seeking and
// pausing need no care.
#pragma once

#include "graph/vendor_interfaces.h"
#include "simulator/filters/app_window.h"
#include "simulator/filters/base_filter.h"
#include "simulator/filters/base_pin.h"
#include "simulator/filters/caption_parser.h"
#include "simulator/filters/caption_picture.h"

namespace filters {

class CaptionRenderer final : public BaseFilter,
                              public vendor::CaptionRendererStyle,
                              public TickListener {
public:
    CaptionRenderer();

    FILTERS_JOIN_UNKNOWN(BaseFilter)

    HRESULT STDMETHODCALLTYPE Stop() override;
    HRESULT STDMETHODCALLTYPE Pause() override;
    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME start) override;
    HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) override;

    // A null or empty face keeps the face, a null style the rest.
    HRESULT STDMETHODCALLTYPE setStyle(const wchar_t* face, const vendor::CaptionStyle* style,
                                       DWORD visible) override;

    void tick() override;

protected:
    void* findInterface(REFIID iid) override;
    PinList pins() override { return {ComPtr<IPin>(&input_)}; }

private:
    ~CaptionRenderer() override;

    void show(const Caption* caption);

    ComPtr<CaptionTrack> track_;
    CaptionLook look_;
    DWORD shownStart_ = kOpenEnd;  // start of the caption on the screen; kOpenEnd: none
    Pin input_;
};

}  // namespace filters
