// Builds MPEG-1 system streams and MPEG-2 program streams out of packs and packets.
#pragma once

#include "bytes_builder.h"

namespace probe_test::ps {

constexpr std::size_t kSmallest = 0x40000;  // of a file that is looked at

// Pack headers; `ticks` are those of a 90 kHz clock, 33 bits.
inline Bytes pack1(std::uint64_t ticks) {
    return Builder()
        .be32(0x1BA)
        .u8(0x21 | (ticks >> 30 & 7) << 1)
        .be16((ticks >> 15 & 0x7FFF) << 1 | 1)
        .be16((ticks & 0x7FFF) << 1 | 1)
        .be24(0x800001 | 5000 << 1)
        .take();
}
inline Bytes pack2(std::uint64_t ticks, unsigned extension = 0, unsigned stuffing = 0) {
    const std::uint64_t clock = std::uint64_t{1} << 46 | (ticks >> 30 & 7) << 43 |
                                std::uint64_t{1} << 42 | (ticks >> 15 & 0x7FFF) << 27 |
                                std::uint64_t{1} << 26 | (ticks & 0x7FFF) << 11 | 1u << 10 |
                                extension << 1 | 1;
    return Builder()
        .be32(0x1BA)
        .be16(clock >> 32)
        .be32(clock)
        .be24(5000 << 2 | 3)
        .u8(0xF8 | stuffing)
        .fill(stuffing, 0xFF)
        .take();
}

// The same pack without the marker bit behind its clock: 0010 begins an MPEG-1 clock.
inline Bytes withoutMarker(Bytes pack) {
    pack[pack[4] >> 4 == 2 ? 8 : 9] &= 0xFE;
    return pack;
}

// A system header that lists these streams.
inline Bytes systemHeader(std::initializer_list<unsigned> streams) {
    Builder builder;
    builder.be32(0x1BB).be16(6 + 3 * streams.size()).be24(0x800001).be24(0x0421FF);
    for (const unsigned stream : streams) {
        builder.u8(stream).be16(0xC020);
    }
    return builder.take();
}

// Packets: MPEG-1 without time stamps, MPEG-2 with the two flag bits and as many header bytes.
inline Bytes packet1(unsigned stream, const Bytes& payload) {
    return Builder()
        .be24(1)
        .u8(stream)
        .be16(payload.size() + 4)
        .be24(0xFF'40'20)  // stuffing, buffer size
        .u8(0x0F)
        .bytes(payload)
        .take();
}
inline Bytes packet2(unsigned stream, const Bytes& payload, unsigned stampFlags = 0) {
    const std::size_t header = stampFlags == 3 ? 10 : stampFlags == 2 ? 5 : 0;
    return Builder()
        .be24(1)
        .u8(stream)
        .be16(payload.size() + 3 + header)
        .u8(0x80)
        .u8(stampFlags << 6)
        .u8(header)
        .fill(header, 0x21)
        .bytes(payload)
        .take();
}

struct Sequence {
    unsigned width = 352, height = 288;
    unsigned aspect = 1;
    unsigned rate = 3;  // 25 frames a second
    unsigned bitRate = 2500;
};

inline Bytes sequence(const Sequence& s) {
    return Builder()
        .be32(0x1B3)
        .be24(s.width << 12 | s.height)
        .u8(s.aspect << 4 | s.rate)
        .be32(s.bitRate << 14 | 1u << 13 | 20 << 3)
        .take();
}
// What MPEG-2 puts behind it: the upper bits of width, height and bit rate, the rate's fraction.
inline Bytes extension(unsigned width = 0, unsigned height = 0, unsigned bitRate = 0,
                       unsigned numerator = 0, unsigned denominator = 0) {
    const std::uint64_t bits =
        std::uint64_t{1} << 44 | std::uint64_t{0x48} << 36 | std::uint64_t{1} << 35 |
        std::uint64_t{1} << 33 | std::uint64_t{width} << 31 | std::uint64_t{height} << 29 |
        std::uint64_t{bitRate} << 17 | std::uint64_t{1} << 16 | numerator << 5 | denominator;
    return Builder().be32(0x1B5).be16(bits >> 32).be32(bits).take();
}
// Coded pictures: enough that the search for a sequence header ends.
inline Bytes pictures(std::size_t bytes = 300) {
    return Builder().be32(0x100).fill(bytes, 0x77).take();
}

inline Bytes ac3Frame(unsigned sizeCode = 20, unsigned rateCode = 0, unsigned mode = 2) {
    return Builder()
        .be16(0x0B77)
        .be16(0)
        .u8(rateCode << 6 | sizeCode)
        .u8(8 << 3)
        .u8(mode << 5)
        .fill(40)
        .take();
}
inline Bytes subStream(unsigned number, const Bytes& content) {
    return Builder().u8(number).u8(1).be16(1).bytes(content).take();
}
inline Bytes pcm(unsigned rateCode, unsigned channels) {
    return Builder().u8(0).u8(rateCode << 4 | (channels - 1)).u8(0x80).fill(64).take();
}

// `start`, then bytes of no meaning, then `end` as the last bytes of a file of the smallest size.
inline Bytes file(const Bytes& start, const Bytes& end = {}) {
    return Builder().bytes(start).padTo(kSmallest - end.size(), 0x55).bytes(end).take();
}

}  // namespace probe_test::ps
