#include "simulator/filters/picture/picture_format.h"

namespace filters {

namespace {

int padded(int bytes) {
    return (bytes + 3) & ~3;
}

}  // namespace

int PictureFormat::lumaStride() const {
    return layout == PixelLayout::Rgb32 ? width * 4 : padded(width);
}

int PictureFormat::chromaStride() const {
    if (layout == PixelLayout::Rgb32) {
        return 0;
    }
    return layout == PixelLayout::Nv12 ? padded(width) : padded((width + 1) / 2);
}

int PictureFormat::bytes() const {
    if (layout == PixelLayout::Rgb32) {
        return lumaStride() * height;
    }
    const int planes = layout == PixelLayout::Nv12 ? 1 : 2;
    return lumaStride() * lumaRows() + planes * chromaStride() * (lumaRows() / 2);
}

}  // namespace filters
