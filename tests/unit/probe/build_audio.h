// Builds MPEG audio frames, FLAC and Monkey's Audio headers, and the tags around them.
#pragma once

#include <array>
#include <string_view>

#include "bytes_builder.h"

namespace probe_test::audio {

// A frame header's fields as they stand in it.
struct Frame {
    unsigned version = 3;  // 3 MPEG-1, 2 MPEG-2, 0 "MPEG 2.5"
    unsigned layer = 1;    // 3 layer I, 2 layer II, 1 layer III
    unsigned bitRate = 9;  // index; 9 is 128 kbit/s in MPEG-1 layer III
    unsigned sampleRate = 0;
    unsigned padding = 0;
    unsigned mode = 0;        // 3 mono
    std::size_t bytes = 417;  // the frame's whole length
};

inline Bytes frame(const Frame& f) {
    return Builder()
        .u8(0xFF)
        .u8(0xE1 | f.version << 3 | f.layer << 1)
        .u8(f.bitRate << 4 | f.sampleRate << 2 | f.padding << 1)
        .u8(f.mode << 6)
        .padTo(f.bytes, 0x55)
        .take();
}

inline Bytes frames(std::size_t count, const Frame& f = {}) {
    Builder builder;
    for (std::size_t i = 0; i < count; ++i) {
        builder.bytes(frame(f));
    }
    return builder.take();
}

// An ID3 version 2 tag of `bytes` bytes behind its header.
inline Bytes id3v2(std::size_t bytes, unsigned version = 3, unsigned flags = 0,
                   unsigned revision = 0) {
    return Builder()
        .text("ID3")
        .u8(version)
        .u8(revision)
        .u8(flags)
        .u8(bytes >> 21 & 0x7F)
        .u8(bytes >> 14 & 0x7F)
        .u8(bytes >> 7 & 0x7F)
        .u8(bytes & 0x7F)
        .fill(bytes)
        .take();
}

inline Bytes field(std::string_view text, std::size_t bytes) {
    Bytes out(text.begin(), text.end());
    out.resize(bytes);
    return out;
}

inline Bytes id3v1(std::string_view title, std::string_view artist, std::string_view album,
                   std::string_view year, unsigned genre) {
    return Builder()
        .text("TAG")
        .bytes(field(title, 30))
        .bytes(field(artist, 30))
        .bytes(field(album, 30))
        .bytes(field(year, 4))
        .fill(30)
        .u8(genre)
        .take();
}

// The first frame of a stream whose encoder left a "Xing" or "Info" header in it: MPEG-1, stereo.
inline Bytes xingFrame(std::string_view name, std::uint32_t frameCount, std::uint32_t bytes,
                       std::uint32_t flags = 3) {
    Bytes all = frame({});
    Builder header;
    header.text(name).be32(flags);
    if ((flags & 1) != 0) {
        header.be32(frameCount);
    }
    if ((flags & 2) != 0) {
        header.be32(bytes);
    }
    std::copy(header.view().begin(), header.view().end(), all.begin() + 36);
    return all;
}
inline Bytes vbriFrame(std::uint32_t frameCount, std::uint32_t bytes) {
    Bytes all = frame({});
    const Bytes header =
        Builder().text("VBRI").be16(1).be16(0).be16(75).be32(bytes).be32(frameCount).take();
    std::copy(header.begin(), header.end(), all.begin() + 36);
    return all;
}

struct ApeItem {
    std::string_view key;
    std::string_view value;
};

// An APE tag with its footer; `size` replaces the real size when it is not 0.
inline Bytes apeTag(std::initializer_list<ApeItem> items, unsigned version = 2000,
                    std::uint32_t size = 0) {
    Builder builder;
    for (const ApeItem& item : items) {
        builder.le32(item.value.size()).le32(0).text(item.key).u8(0).text(item.value);
    }
    const std::size_t real = builder.size() + 32;
    return builder.text("APETAGEX")
        .le32(version)
        .le32(size != 0 ? size : real)
        .le32(items.size())
        .le32(0)
        .fill(8)
        .take();
}

struct Ape {
    unsigned version = 3990;
    unsigned compression = 2000;
    unsigned channels = 2;
    std::uint32_t sampleRate = 44100;
    std::uint32_t blocksPerFrame = 73728;  // written by the newer layout alone
    std::uint32_t finalFrameBlocks = 1000;
    std::uint32_t totalFrames = 10;
};

// The header, padded to 500 bytes.
inline Bytes ape(const Ape& a) {
    Builder builder;
    builder.text("MAC ").le16(a.version);
    if (a.version < 3980) {
        builder.le16(a.compression).le16(0).le16(a.channels).le32(a.sampleRate).le32(44).le32(0);
        builder.le32(a.totalFrames).le32(a.finalFrameBlocks);
    } else {
        builder.le16(0).le32(52).le32(24).padTo(52).le16(a.compression).le16(0);
        builder.le32(a.blocksPerFrame).le32(a.finalFrameBlocks).le32(a.totalFrames);
        builder.le16(16).le16(a.channels).le32(a.sampleRate);
    }
    return builder.padTo(500, 0x11).take();
}

// The same with a tag behind it.
inline Bytes apeWith(const Bytes& tag) {
    return Builder().bytes(ape({})).bytes(tag).take();
}

// "fLaC" with its stream information as the last block.
inline Bytes flac(std::uint64_t samples, std::uint64_t sampleRate = 44100, unsigned channels = 2,
                  bool isLast = true) {
    return Builder()
        .text("fLaC")
        .u8(isLast ? 0x80 : 0)
        .be24(34)
        .be16(4096)
        .be16(4096)
        .fill(6)
        .be64(sampleRate << 44 | std::uint64_t{channels - 1} << 41 | std::uint64_t{15} << 36 |
              samples)
        .fill(16)
        .take();
}

}  // namespace probe_test::audio
