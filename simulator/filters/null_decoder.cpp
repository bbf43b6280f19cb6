#include "simulator/filters/null_decoder.h"

#include "simulator/filters/class_ids.h"
#include "simulator/filters/picture_type.h"

namespace filters {

NullDecoder::NullDecoder() : BaseFilter(kNullVideoDecoderClass) {
}

PinList NullDecoder::pins() {
    return {ComPtr<IPin>(&input_), ComPtr<IPin>(&output_)};
}

HRESULT NullDecoder::Input::checkType(const AM_MEDIA_TYPE& type) {
    // What is decoded already needs no decoder.
    for (const GUID* decoded : {&MEDIASUBTYPE_RGB32, &MEDIASUBTYPE_RGB24, &MEDIASUBTYPE_RGB565,
                                &MEDIASUBTYPE_RGB555, &MEDIASUBTYPE_ARGB32}) {
        if (type.subtype == *decoded) {
            return S_FALSE;
        }
    }
    const bool compressed = type.majortype == MEDIATYPE_Video && !readPictureFormat(type, nullptr);
    return compressed && type.subtype != GUID_NULL ? S_OK : S_FALSE;
}

HRESULT NullDecoder::Output::checkType(const AM_MEDIA_TYPE& type) {
    return type.majortype == MEDIATYPE_Video && type.subtype == MEDIASUBTYPE_RGB32 ? S_OK : S_FALSE;
}

TypeList NullDecoder::Output::offeredTypes() {
    const AM_MEDIA_TYPE& input = decoder_->inputType().get();
    VIDEOINFOHEADER header{};
    header.bmiHeader.biSize = sizeof header.bmiHeader;
    header.bmiHeader.biWidth = 320;
    header.bmiHeader.biHeight = 240;
    if (input.formattype == FORMAT_VideoInfo && input.cbFormat >= sizeof header) {
        const auto* given = reinterpret_cast<const VIDEOINFOHEADER*>(input.pbFormat);
        if (given->bmiHeader.biWidth > 0 && given->bmiHeader.biHeight > 0) {
            header.bmiHeader.biWidth = given->bmiHeader.biWidth;
            header.bmiHeader.biHeight = given->bmiHeader.biHeight;
        }
    }
    header.bmiHeader.biPlanes = 1;
    header.bmiHeader.biBitCount = 32;
    header.bmiHeader.biSizeImage =
        static_cast<DWORD>(header.bmiHeader.biWidth * header.bmiHeader.biHeight * 4);
    MediaType type(MEDIATYPE_Video, MEDIASUBTYPE_RGB32);
    type.edit().lSampleSize = header.bmiHeader.biSizeImage;
    type.setFormat(FORMAT_VideoInfo, &header, sizeof header);
    return {type};
}

}  // namespace filters
