#include "simulator/filters/picture_type.h"

#include <cstdlib>
// The GUIDs of the newer subtypes and of VIDEOINFOHEADER2.
#include <dvdmedia.h>
#include <uuids.h>

#include "simulator/filters/codecs/chip_codecs.h"
#include "simulator/filters/media_type.h"

namespace filters {

namespace {

constexpr int kLargestSide = 8192;
// Pictures of at least this height carry the colours of high definition television.
constexpr int kFullHdHeight = 720;

const BITMAPINFOHEADER* headerOf(const AM_MEDIA_TYPE& type) {
    if (type.formattype == FORMAT_VideoInfo && type.cbFormat >= sizeof(VIDEOINFOHEADER)) {
        return &reinterpret_cast<const VIDEOINFOHEADER*>(type.pbFormat)->bmiHeader;
    }
    if (type.formattype == FORMAT_VideoInfo2 && type.cbFormat >= sizeof(VIDEOINFOHEADER2)) {
        return &reinterpret_cast<const VIDEOINFOHEADER2*>(type.pbFormat)->bmiHeader;
    }
    return nullptr;
}

bool readLayout(const GUID& subtype, PixelLayout* layout) {
    if (subtype == MEDIASUBTYPE_RGB32) {
        *layout = PixelLayout::Rgb32;
    } else if (subtype == subtypeOfFourcc(packFourcc('I', '4', '2', '0'))) {
        *layout = PixelLayout::I420;
    } else if (subtype == subtypeOfFourcc(packFourcc('Y', 'V', '1', '2'))) {
        *layout = PixelLayout::Yv12;
    } else if (subtype == subtypeOfFourcc(packFourcc('N', 'V', '1', '2'))) {
        *layout = PixelLayout::Nv12;
    } else {
        return false;
    }
    return true;
}

}  // namespace

bool readPictureFormat(const AM_MEDIA_TYPE& type, PictureFormat* format) {
    PictureFormat found;
    const BITMAPINFOHEADER* header = headerOf(type);
    if (type.majortype != MEDIATYPE_Video || !header || !readLayout(type.subtype, &found.layout)) {
        return false;
    }
    if (header->biWidth <= 0 || header->biWidth > kLargestSide || header->biHeight == 0 ||
        header->biHeight > kLargestSide || header->biHeight < -kLargestSide) {
        return false;
    }
    found.width = header->biWidth;
    found.height = std::abs(header->biHeight);
    found.bottomUp = found.layout == PixelLayout::Rgb32 && header->biHeight > 0;
    found.fullHd = found.height >= kFullHdHeight;
    if (format) {
        *format = found;
    }
    return true;
}

}  // namespace filters
