// Builds the pages and packets of Ogg Vorbis.
#pragma once

#include <string_view>

#include "bytes_builder.h"

namespace probe_test::ogg {

// A page with its packets as one run of bytes; `segments` entries in the segment table.
inline Bytes page(const Bytes& content, std::uint64_t granule = 0, unsigned segments = 1) {
    return Builder()
        .text("OggS")
        .u8(0)
        .u8(2)
        .le64(granule)
        .le32(0x1234)
        .le32(0)
        .le32(0)
        .u8(segments)
        .fill(segments, 30)
        .bytes(content)
        .take();
}

inline Bytes identification(std::uint32_t sampleRate = 44100, unsigned channels = 2) {
    return Builder()
        .u8(1)
        .text("vorbis")
        .le32(0)
        .u8(channels)
        .le32(sampleRate)
        .le32(0)
        .le32(112'000)
        .le32(0)
        .u8(0xB8)
        .u8(1)
        .take();
}

inline Bytes comments(std::initializer_list<std::string_view> texts, std::string_view vendor = "v",
                      std::uint32_t count = 0) {
    Builder builder;
    builder.u8(3).text("vorbis").le32(vendor.size()).text(vendor);
    builder.le32(count != 0 ? count : texts.size());
    for (const std::string_view text : texts) {
        builder.le32(text.size()).text(text);
    }
    return builder.u8(1).take();
}

// Both header packets in front of `bytes` bytes of sound, then a last page.
inline Bytes file(const Bytes& first, const Bytes& second, std::uint64_t granule,
                  std::size_t bytes = 3000) {
    return Builder()
        .bytes(page(first))
        .bytes(page(second))
        .fill(bytes, 0x55)
        .bytes(page(Bytes(40, 0x66), granule))
        .take();
}

}  // namespace probe_test::ogg
