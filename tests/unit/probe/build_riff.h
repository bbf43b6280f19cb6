// Chunks and lists of RIFF files for the samples.
#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "bytes_builder.h"

namespace probe_test {

inline Bytes chunk(std::string_view id, const Bytes& body) {
    return Builder().text(id).le32(body.size()).bytes(body).take();
}
inline Bytes list(std::string_view type, const Bytes& body) {
    return Builder().text("LIST").le32(body.size() + 4).text(type).bytes(body).take();
}
inline Bytes riff(std::string_view form, const Bytes& body) {
    return Builder().text("RIFF").le32(body.size() + 4).text(form).bytes(body).take();
}

inline Bytes avih(std::uint32_t microSecPerFrame, std::uint32_t streams = 1) {
    Builder b;
    b.le32(microSecPerFrame).fill(20).le32(streams).fill(28);
    return chunk("avih", b.take());
}
inline Bytes strh(std::string_view type) {
    return chunk("strh", Builder().text(type).fill(52).take());
}
inline Bytes bitmapFormat(std::string_view codec, std::uint32_t width, std::uint32_t height,
                          std::uint32_t biSize = 40) {
    Builder b;
    b.le32(biSize).le32(width).le32(height).le16(1).le16(24).text(codec).fill(20);
    return b.take();
}
inline Bytes waveFormat(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate,
                        std::uint32_t bytesPerSecond) {
    Builder b;
    b.le16(tag).le16(channels).le32(rate).le32(bytesPerSecond).le16(4).le16(16).le16(0);
    return b.take();
}
inline Bytes videoList(std::string_view codec, std::uint32_t width, std::uint32_t height,
                       const Bytes& children = {}) {
    return list("strl",
                join({strh("vids"), chunk("strf", bitmapFormat(codec, width, height)), children}));
}
inline Bytes audioList(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate,
                       std::uint32_t bytesPerSecond, const Bytes& children = {}) {
    return list("strl",
                join({strh("auds"), chunk("strf", waveFormat(tag, channels, rate, bytesPerSecond)),
                      children}));
}

inline Bytes idx1Entry(std::string_view id, std::uint32_t offset, std::uint32_t size,
                       std::uint32_t flags = 0x10) {
    return Builder().text(id).le32(flags).le32(offset).le32(size).take();
}

// Of an OpenDML super index: where a standard index lies, and its size.
struct SuperEntry {
    std::uint64_t offset;
    std::uint32_t size;
};
inline Bytes superIndex(std::string_view chunkId, const std::vector<SuperEntry>& entries,
                        unsigned longsPerEntry = 4, std::uint32_t count = 0xFFFFFFFF) {
    Builder b;
    b.le16(longsPerEntry).u8(0).u8(0);
    b.le32(count == 0xFFFFFFFF ? entries.size() : count).text(chunkId).fill(12);
    for (const SuperEntry& entry : entries) {
        b.le64(entry.offset).le32(entry.size).le32(0);
    }
    return chunk("indx", b.padTo(40).take());
}
inline Bytes standardIndex(std::string_view chunkId, std::uint64_t base,
                           const std::vector<std::pair<std::uint32_t, std::uint32_t>>& entries,
                           std::uint32_t count = 0xFFFFFFFF) {
    Builder b;
    b.le16(2).u8(0).u8(1);
    b.le32(count == 0xFFFFFFFF ? entries.size() : count).text(chunkId).le64(base).le32(0);
    for (const auto& [offset, size] : entries) {
        b.le32(offset).le32(size);
    }
    return chunk("ix00", b.take());
}

// An AVI with a movi list that begins at a known place, and an index given by the caller.
inline Bytes aviWithIndex(const Bytes& headers, const Bytes& movi, const Bytes& behind) {
    return riff("AVI ", join({list("hdrl", headers), list("movi", movi), behind}));
}

// File position of the movi list's type word in a file built by aviWithIndex.
inline std::uint32_t moviTypeAt(const Bytes& headers) {
    return static_cast<std::uint32_t>(12 + 12 + headers.size() + 8);
}

// An MPEG-4 Part 2 video object layer header with aspect_ratio_info `info` (and its two terms
// for 15), as a payload of at least `size` bytes.
Bytes volPayload(unsigned info, unsigned horizontal = 0, unsigned vertical = 0,
                 std::size_t size = 64, bool layerIdentifier = false);

struct SpsOptions {
    unsigned profile = 66;
    unsigned chromaFormat = 1;
    bool scalingMatrix = false;
    unsigned pictureOrderType = 2;
    bool interlaced = false;
    bool cropping = false;
    bool vui = true;
    int aspectIdc = 2;  // -1: no aspect information
    unsigned sarWidth = 0, sarHeight = 0;
};
// A sequence parameter set with its NAL unit header, emulation prevention applied.
Bytes sps(const SpsOptions& options);
// The same behind a start code, as the payload of a picture.
Bytes h264Payload(const Bytes& set, std::size_t size = 96);

// A whole AVI: header list, `movi` list of one picture with that payload repeated `frames` times,
// idx1. `headers` are the children of hdrl.
Bytes avi(const Bytes& headers, const Bytes& payload, unsigned frames);

}  // namespace probe_test
