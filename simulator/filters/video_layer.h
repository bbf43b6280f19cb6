// The chip's video layer: one for the unit, behind the graphics layer. On the PC it is a window of
// the size of the application's client area that always lies directly behind the application's
// window; that window gets the layered style with a colour key, so the picture shows exactly where
// the application paints the key. What no picture covers is black.
//
// The window is made on the application's thread when a renderer is first given its owner and
// stays until that owner is destroyed: renderers come and go without a flicker. Pictures are
// painted by the decoder's threads; one lock guards everything.
#pragma once

#include <dshow.h>
#include <wrl/client.h>

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "graph/vendor_interfaces.h"
#include "simulator/filters/canvas.h"
#include "simulator/filters/caption_picture.h"
#include "simulator/filters/picture/picture_scaler.h"

namespace filters {

class VideoLayer {
public:
    // How the renderer wants its picture placed.
    struct Placement {
        vendor::VideoOutput output{};
        DWORD modeFlags = 0;
        DWORD aspectX = 0;  // 0 : 0 when only the picture's own size is known
        DWORD aspectY = 0;
        bool shown = true;  // false: the layer is switched off
    };

    static VideoLayer& instance();

    // Called on the owner's thread. A null window is ignored.
    void setOwner(HWND owner);
    // Black is a key like any other here; `enabled` false makes the graphics layer opaque.
    void setKey(COLORREF key, bool enabled);
    // The renderer `user` takes the layer over.
    void place(const void* user, const Placement& placement);
    // A new picture of format.bytes() bytes; ignored unless `user` has the layer. Painted at once;
    // with `keep` the sample is held until the next picture, else its bytes are copied.
    void show(const void* user, const PictureFormat& format, IMediaSample* sample, bool keep);
    // The text that stands over the lower part of the picture from now on; empty for none.
    void setCaption(const std::wstring& text, const CaptionLook& look);
    // Paints the last picture again.
    void redraw();
    // `user` goes away: black from now on.
    void leave(const void* user);

    HWND owner() const { return owner_; }

private:
    VideoLayer() = default;
    VideoLayer(const VideoLayer&) = delete;

    static LRESULT CALLBACK layerProcedure(HWND window, UINT message, WPARAM w, LPARAM l);
    static LRESULT CALLBACK ownerProcedure(HWND window, UINT message, WPARAM w, LPARAM l);
    bool createWindow();
    void applyKey();
    void followOwner();
    void ownerGone();
    // All below with the lock held.
    RECT destination() const;
    void forget();
    void compose(bool everything);
    void paint(const RECT& area);
    void paintAll() { paint(canvas_.area()); }

    std::mutex lock_;
    HWND owner_ = nullptr;
    WNDPROC ownerBefore_ = nullptr;
    HWND window_ = nullptr;
    Canvas canvas_;
    COLORREF key_ = RGB(0xF8, 0, 0xF8);
    bool keyEnabled_ = true;
    const void* user_ = nullptr;
    Placement placement_;
    RECT drawn_{};  // where the picture stands in the bitmap
    PictureFormat format_;
    Microsoft::WRL::ComPtr<IMediaSample> sample_;  // that picture_ lies in; null: in copy_
    std::vector<std::uint8_t> copy_;
    const std::uint8_t* picture_ = nullptr;
    PictureScaler scaler_;
    std::wstring captionText_;
    CaptionLook captionLook_;
    CaptionPicture caption_;
    LONG captionWidth_ = 0;  // of the picture that caption_ was drawn for
};

}  // namespace filters
