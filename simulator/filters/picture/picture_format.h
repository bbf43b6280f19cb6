// What a decoded picture looks like in memory: I420 as Windows lays it out, rows padded to four
// bytes, a plane of luma, then two of chroma with half the width and height. Wine's splitter brings
// every other layout to this one.
#pragma once

namespace filters {

struct PictureFormat {
    int width = 0;        // pixels
    int height = 0;       // pixels
    bool fullHd = false;  // colours after ITU-R BT.709 instead of BT.601

    int lumaStride() const { return (width + 3) & ~3; }  // bytes a row
    int chromaStride() const { return ((width + 1) / 2 + 3) & ~3; }
    int lumaRows() const { return (height + 1) & ~1; }
    int bytes() const { return (lumaStride() + chromaStride()) * lumaRows(); }  // of one picture
};

}  // namespace filters
