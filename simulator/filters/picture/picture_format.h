// What a decoded picture looks like in memory. Planar layouts are those of Windows: rows padded to
// four bytes, chroma planes of half width and height.
#pragma once

namespace filters {

enum class PixelLayout { I420, Yv12, Nv12, Rgb32 };

struct PictureFormat {
    PixelLayout layout = PixelLayout::I420;
    int width = 0;          // pixels
    int height = 0;         // pixels
    bool bottomUp = false;  // RGB only: the last row comes first
    bool fullHd = false;    // colours after ITU-R BT.709 instead of BT.601

    int bytes() const;         // of one picture
    int lumaStride() const;    // bytes a row of luma, or of the RGB picture
    int chromaStride() const;  // bytes a row of one chroma plane (of both for Nv12)
    int lumaRows() const { return (height + 1) & ~1; }
};

}  // namespace filters
