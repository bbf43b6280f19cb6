// Reads the video codec of a file from its own headers, before anything decodes it: the sample
// entry of MP4/MOV (ISO/IEC 14496-12, 8.5.2), the stream format of AVI, the stream properties of
// ASF (1.2, 3.3) and the CodecID of Matroska (RFC 9559, 5.1.4.1.21).
#pragma once

#include <cstddef>
#include <cstdint>

namespace filters {

// Absolute reads; false when the range cannot be read whole.
class ByteSource {
public:
    virtual bool read(std::uint64_t offset, void* out, std::size_t bytes) = 0;

protected:
    ~ByteSource() = default;
};

// The codec of the first video stream as four packed letters, 0 when the container is another one
// or holds no video. Codecs of Matroska get the letters that MP4 and AVI use for them.
std::uint32_t sniffVideoCodec(ByteSource& source);

}  // namespace filters
