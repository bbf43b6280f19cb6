// Boxes of MP4 files for the samples.
#pragma once

#include <string_view>

#include "build_riff.h"
#include "bytes_builder.h"

namespace probe_test {

inline Bytes box(std::string_view type, const Bytes& body) {
    return Builder().be32(body.size() + 8).text(type).bytes(body).take();
}

inline Bytes ftyp(std::string_view major, std::string_view compatible) {
    return box("ftyp", Builder().text(major).be32(0x200).text(compatible).take());
}

inline Bytes hdlr(std::string_view handler) {
    return box("hdlr", Builder().be32(0).be32(0).text(handler).fill(13).take());
}
inline Bytes mdhd(std::uint32_t timescale, bool wide = false) {
    Builder b;
    b.be32(wide ? 0x01000000 : 0).fill(wide ? 16 : 8).be32(timescale).fill(wide ? 12 : 8);
    return box("mdhd", b.take());
}
inline Bytes tkhd() {
    return box("tkhd", Bytes(84));
}

// A table box: version and flags, the number of rows, the rows' 32-bit words.
inline Bytes table(std::string_view type, std::uint32_t rows,
                   std::initializer_list<std::uint32_t> words) {
    Builder b;
    b.be32(0).be32(rows);
    for (const std::uint32_t word : words) {
        b.be32(word);
    }
    return box(type, b.take());
}
inline Bytes stsz(std::uint32_t constant, std::uint32_t count,
                  std::initializer_list<std::uint32_t> sizes = {}) {
    Builder b;
    b.be32(0).be32(constant).be32(count);
    for (const std::uint32_t size : sizes) {
        b.be32(size);
    }
    return box("stsz", b.take());
}
inline Bytes stsd(std::uint32_t count, const Bytes& entries) {
    return box("stsd", Builder().be32(0).be32(count).bytes(entries).take());
}

inline Bytes visualEntry(std::string_view format, unsigned width, unsigned height,
                         const Bytes& boxes = {}) {
    Builder b;
    b.fill(6).be16(1).fill(16).be16(width).be16(height).fill(50);
    return box(format, b.bytes(boxes).take());
}
inline Bytes audioEntry(std::string_view format, unsigned channels, unsigned rate,
                        const Bytes& boxes = {}) {
    Builder b;
    b.fill(6).be16(1).fill(8).be16(channels).be16(16).fill(4).be16(rate).be16(0);
    return box(format, b.bytes(boxes).take());
}
inline Bytes avcC(const Bytes& set) {
    Builder b;
    b.u8(1).u8(66).u8(0).u8(30).u8(0xFF).u8(0xE1).be16(set.size()).bytes(set).u8(0);
    return box("avcC", b.take());
}
inline Bytes esds(unsigned objectType, std::uint32_t averageBitRate, const Bytes& info) {
    Builder config;
    config.u8(objectType).u8(0x15).be24(0).be32(averageBitRate + 1000).be32(averageBitRate);
    config.u8(5).u8(info.size()).bytes(info);
    Builder es;
    es.be16(1).u8(0).u8(4).u8(0x80).u8(0x80).u8(0x80).u8(config.size()).bytes(config.view());
    return box("esds", Builder().be32(0).u8(3).u8(es.size()).bytes(es.view()).take());
}

// A track of those parts; `stbl` are the children of the sample table box.
inline Bytes track(std::string_view handler, std::uint32_t timescale, const Bytes& stbl) {
    return box("trak", join({tkhd(), box("mdia", join({mdhd(timescale), hdlr(handler),
                                                       box("minf", join({box("vmhd", Bytes(12)),
                                                                         box("stbl", stbl)}))}))}));
}

}  // namespace probe_test
