// Owning wrapper of AM_MEDIA_TYPE: copies the format block, frees it, compares with the wildcards
// of partial media types (GUID_NULL stands for "any").
#pragma once

#include <dshow.h>

namespace filters {

class MediaType {
public:
    MediaType() = default;
    // Major type and subtype only, no format block.
    MediaType(const GUID& majorType, const GUID& subtype);
    explicit MediaType(const AM_MEDIA_TYPE& other) { assign(other); }
    MediaType(const MediaType& other) { assign(other.type_); }
    MediaType& operator=(const MediaType& other);
    ~MediaType() { clear(); }

    void clear();
    void assign(const AM_MEDIA_TYPE& other);
    // Copies `size` bytes as the format block of kind `formatType`.
    void setFormat(const GUID& formatType, const void* format, ULONG size);
    const AM_MEDIA_TYPE& get() const { return type_; }
    AM_MEDIA_TYPE& edit() { return type_; }
    // Copies into a structure that the caller frees (format block from the task allocator).
    HRESULT copyTo(AM_MEDIA_TYPE* out) const;
    // The same, the structure itself allocated too; null when memory is out.
    AM_MEDIA_TYPE* clone() const;
    // Whether a partial type `wanted` (may be null) does not contradict this one.
    bool matches(const AM_MEDIA_TYPE* wanted) const;

private:
    AM_MEDIA_TYPE type_{};
};

// The subtype of a four-character code, as AVI and ASF name codecs.
GUID subtypeOfFourcc(DWORD fourcc);
// Video of that subtype, of variable size, with a VIDEOINFOHEADER; 0 pixels where the size is
// unknown.
MediaType videoType(DWORD fourcc, LONG width, LONG height);

}  // namespace filters
