#include "simulator/filters/media_type.h"

#include <cstring>

namespace filters {

// {XXXXXXXX-0000-0010-8000-00AA00389B71}
GUID subtypeOfFourcc(DWORD fourcc) {
    return {fourcc, 0, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};
}

MediaType videoType(DWORD fourcc, LONG width, LONG height) {
    VIDEOINFOHEADER header{};
    header.bmiHeader.biSize = sizeof header.bmiHeader;
    header.bmiHeader.biWidth = width;
    header.bmiHeader.biHeight = height;
    header.bmiHeader.biCompression = fourcc;
    header.bmiHeader.biPlanes = 1;
    MediaType type(MEDIATYPE_Video, subtypeOfFourcc(fourcc));
    type.edit().bFixedSizeSamples = FALSE;
    type.edit().bTemporalCompression = TRUE;
    type.setFormat(FORMAT_VideoInfo, &header, sizeof header);
    return type;
}

MediaType::MediaType(const GUID& majorType, const GUID& subtype) {
    type_.majortype = majorType;
    type_.subtype = subtype;
    type_.bFixedSizeSamples = TRUE;
}

MediaType& MediaType::operator=(const MediaType& other) {
    if (this != &other) {
        assign(other.type_);
    }
    return *this;
}

void MediaType::clear() {
    CoTaskMemFree(type_.pbFormat);
    if (type_.pUnk) {
        type_.pUnk->Release();
    }
    type_ = {};
}

void MediaType::assign(const AM_MEDIA_TYPE& other) {
    clear();
    MediaType source;
    source.type_ = other;
    source.copyTo(&type_);
    source.type_ = {};
}

void MediaType::setFormat(const GUID& formatType, const void* format, ULONG size) {
    CoTaskMemFree(type_.pbFormat);
    type_.formattype = formatType;
    type_.pbFormat = static_cast<BYTE*>(CoTaskMemAlloc(size));
    type_.cbFormat = type_.pbFormat ? size : 0;
    if (type_.pbFormat) {
        std::memcpy(type_.pbFormat, format, size);
    }
}

HRESULT MediaType::copyTo(AM_MEDIA_TYPE* out) const {
    *out = type_;
    if (type_.cbFormat) {
        out->pbFormat = static_cast<BYTE*>(CoTaskMemAlloc(type_.cbFormat));
        if (!out->pbFormat) {
            out->cbFormat = 0;
            out->pUnk = nullptr;
            return E_OUTOFMEMORY;
        }
        std::memcpy(out->pbFormat, type_.pbFormat, type_.cbFormat);
    } else {
        out->pbFormat = nullptr;
    }
    if (out->pUnk) {
        out->pUnk->AddRef();
    }
    return S_OK;
}

AM_MEDIA_TYPE* MediaType::clone() const {
    auto* out = static_cast<AM_MEDIA_TYPE*>(CoTaskMemAlloc(sizeof(AM_MEDIA_TYPE)));
    if (out && FAILED(copyTo(out))) {
        CoTaskMemFree(out);
        out = nullptr;
    }
    return out;
}

bool MediaType::matches(const AM_MEDIA_TYPE* wanted) const {
    return !wanted || ((wanted->majortype == GUID_NULL || wanted->majortype == type_.majortype) &&
                       (wanted->subtype == GUID_NULL || wanted->subtype == type_.subtype));
}

}  // namespace filters
