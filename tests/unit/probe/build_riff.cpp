// Builders of the bit streams that AVI and MP4 samples carry.
#include <algorithm>
#include <array>

#include "bit_writer.h"
#include "build_riff.h"

namespace probe_test {
namespace {

void writeChroma(BitWriter& w, const SpsOptions& o) {
    w.golomb(o.chromaFormat);
    if (o.chromaFormat == 3) {
        w.bits(0, 1);
    }
    w.golomb(0);
    w.golomb(0);
    w.bits(0, 1);
    w.bits(o.scalingMatrix ? 1 : 0, 1);
    if (!o.scalingMatrix) {
        return;
    }
    const unsigned lists = o.chromaFormat == 3 ? 12 : 8;
    for (unsigned list = 0; list < lists; ++list) {
        w.bits(list % 2, 1);  // every other list is there
        if (list % 2 != 0) {
            for (unsigned i = 0; i < (list < 6 ? 16u : 64u); ++i) {
                w.golomb(i % 3);  // deltas 0, 1, -1
            }
        }
    }
}

void writePictureOrder(BitWriter& w, unsigned type) {
    w.golomb(type);
    if (type == 0) {
        w.golomb(4);
    } else if (type == 1) {
        w.bits(0, 1);
        w.golomb(3);
        w.golomb(4);
        w.golomb(3);
        for (unsigned i = 0; i < 3; ++i) {
            w.golomb(5 + i);
        }
    }
}

Bytes escape(const Bytes& plain) {
    Bytes out;
    unsigned zeros = 0;
    for (const std::uint8_t byte : plain) {
        if (zeros >= 2 && byte <= 3) {
            out.push_back(3);
            zeros = 0;
        }
        zeros = byte == 0 ? zeros + 1 : 0;
        out.push_back(byte);
    }
    return out;
}

}  // namespace

Bytes volPayload(unsigned info, unsigned horizontal, unsigned vertical, std::size_t size,
                 bool layerIdentifier) {
    BitWriter w;
    w.bits(0, 1);
    w.bits(1, 8);
    w.bits(layerIdentifier ? 1 : 0, 1);
    if (layerIdentifier) {
        w.bits(2, 4);
        w.bits(1, 3);
    }
    w.bits(info, 4);
    if (info == 15) {
        w.bits(horizontal, 8);
        w.bits(vertical, 8);
    }
    w.bits(0x5A5A, 16);
    return Builder().u8(0).u8(0).u8(1).u8(0x20).bytes(w.take()).padTo(size, 0x55).take();
}

Bytes sps(const SpsOptions& o) {
    BitWriter w;
    w.bits(o.profile, 8);
    w.bits(0, 8);
    w.bits(30, 8);
    w.golomb(0);
    // The profiles of ITU-T H.264 7.3.2.1.1 whose sets carry the chroma format.
    constexpr auto kWithChroma =
        std::to_array<unsigned>({100, 110, 122, 244, 44, 83, 86, 118, 128, 138, 139, 134, 135});
    if (std::ranges::find(kWithChroma, o.profile) != kWithChroma.end()) {
        writeChroma(w, o);
    }
    w.golomb(4);
    writePictureOrder(w, o.pictureOrderType);
    w.golomb(3);
    w.bits(0, 1);
    w.golomb(19);
    w.golomb(14);
    w.bits(o.interlaced ? 0 : 1, 1);
    if (o.interlaced) {
        w.bits(1, 1);
    }
    w.bits(1, 1);
    w.bits(o.cropping ? 1 : 0, 1);
    for (unsigned edge = 0; o.cropping && edge < 4; ++edge) {
        w.golomb(edge * 7);
    }
    w.bits(o.vui ? 1 : 0, 1);
    if (o.vui) {
        w.bits(o.aspectIdc >= 0 ? 1 : 0, 1);
        if (o.aspectIdc >= 0) {
            w.bits(static_cast<std::uint32_t>(o.aspectIdc), 8);
        }
        if (o.aspectIdc == 255) {
            w.bits(o.sarWidth, 16);
            w.bits(o.sarHeight, 16);
        }
        w.bits(0, 10);
    }
    return Builder().u8(0x67).bytes(escape(w.take())).take();
}

Bytes h264Payload(const Bytes& set, std::size_t size) {
    return Builder()
        .u8(0)
        .u8(0)
        .u8(0)
        .u8(1)
        .bytes(set)
        .u8(0)
        .u8(0)
        .u8(1)
        .u8(0x68)
        .padTo(size, 0x33)
        .take();
}

Bytes avi(const Bytes& headers, const Bytes& payload, unsigned frames) {
    Builder movi;
    Builder index;
    for (unsigned i = 0; i < frames; ++i) {
        index.bytes(idx1Entry("00dc", static_cast<std::uint32_t>(4 + movi.size()),
                              static_cast<std::uint32_t>(payload.size()), i == 0 ? 0x10 : 0));
        movi.bytes(chunk("00dc", payload));
    }
    return riff("AVI ", join({list("hdrl", headers), list("movi", movi.take()),
                              frames != 0 ? chunk("idx1", index.take()) : Bytes()}));
}

}  // namespace probe_test
