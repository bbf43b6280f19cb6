#include "simulator/filters/codec_sniffer.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "simulator/filters/chip_codecs.h"

namespace filters {

namespace {

// Bounds of a walk through a file that may be damaged.
constexpr int kMostElements = 4096;
constexpr int kDeepest = 8;

std::uint32_t le32(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

std::uint32_t be32(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) << 24 | static_cast<std::uint32_t>(p[1]) << 16 |
           static_cast<std::uint32_t>(p[2]) << 8 | static_cast<std::uint32_t>(p[3]);
}

struct Range {
    std::uint64_t begin;
    std::uint64_t end;
};

// --- MP4 and MOV: moov/trak/mdia/minf/stbl/stsd, video tracks told by minf/vmhd.

struct Mp4Walk {
    ByteSource& source;
    int elements = 0;
    std::uint32_t entry = 0;  // first sample entry of the current track
    bool video = false;
    std::uint32_t codec = 0;

    bool enters(std::uint32_t type) const {
        constexpr std::uint32_t kParents[] = {
            packFourcc('m', 'o', 'o', 'v'), packFourcc('t', 'r', 'a', 'k'),
            packFourcc('m', 'd', 'i', 'a'), packFourcc('m', 'i', 'n', 'f'),
            packFourcc('s', 't', 'b', 'l')};
        return std::find(std::begin(kParents), std::end(kParents), type) != std::end(kParents);
    }

    void box(std::uint32_t type, Range body, int depth) {
        if (type == packFourcc('v', 'm', 'h', 'd')) {
            video = true;
        } else if (type == packFourcc('s', 't', 's', 'd')) {
            // version and flags 4, count 4, size of the first entry 4, its type 4
            std::uint8_t head[16];
            if (body.end - body.begin >= 16 && source.read(body.begin, head, 16)) {
                entry = le32(head + 12);
            }
        } else if (enters(type) && depth < kDeepest) {
            walk(body, depth + 1);
        }
        if (type == packFourcc('t', 'r', 'a', 'k')) {
            if (video && entry && !codec) {
                codec = entry;
            }
            video = false;
            entry = 0;
        }
    }

    void walk(Range range, int depth) {
        while (range.end - range.begin >= 8 && ++elements < kMostElements && !codec) {
            std::uint8_t head[16];
            if (!source.read(range.begin, head, 8)) {
                return;
            }
            std::uint64_t size = be32(head);
            std::uint64_t header = 8;
            if (size == 1) {  // a 64-bit size follows the type
                if (!source.read(range.begin + 8, head + 8, 8)) {
                    return;
                }
                size = static_cast<std::uint64_t>(be32(head + 8)) << 32 | be32(head + 12);
                header = 16;
            } else if (size == 0) {  // up to the end
                size = range.end - range.begin;
            }
            if (size < header || size > range.end - range.begin) {
                return;
            }
            box(le32(head + 4), {range.begin + header, range.begin + size}, depth);
            range.begin += size;
        }
    }
};

// --- AVI: RIFF('AVI ') LIST('hdrl') LIST('strl') strh, strf.

struct AviWalk {
    ByteSource& source;
    int elements = 0;
    bool video = false;
    std::uint32_t codec = 0;

    void chunk(std::uint32_t id, Range body, int depth) {
        std::uint8_t head[24];
        if (id == packFourcc('L', 'I', 'S', 'T') && body.end - body.begin >= 4 &&
            source.read(body.begin, head, 4)) {
            const std::uint32_t kind = le32(head);
            const bool headers =
                kind == packFourcc('h', 'd', 'r', 'l') || kind == packFourcc('s', 't', 'r', 'l');
            if (headers && depth < kDeepest) {
                walk({body.begin + 4, body.end}, depth + 1);
            }
        } else if (id == packFourcc('s', 't', 'r', 'h') && source.read(body.begin, head, 8)) {
            video = le32(head) == packFourcc('v', 'i', 'd', 's');
        } else if (id == packFourcc('s', 't', 'r', 'f') && video &&
                   source.read(body.begin, head, 20)) {
            codec = le32(head + 16);  // BITMAPINFOHEADER.biCompression
        }
    }

    void walk(Range range, int depth) {
        while (range.end - range.begin >= 8 && ++elements < kMostElements && !codec) {
            std::uint8_t head[8];
            if (!source.read(range.begin, head, 8)) {
                return;
            }
            const std::uint64_t left = range.end - range.begin - 8;
            const std::uint64_t size = std::min<std::uint64_t>(le32(head + 4), left);
            chunk(le32(head), {range.begin + 8, range.begin + 8 + size}, depth);
            range.begin += std::min(8 + size + (size & 1), left + 8);
        }
    }
};

// --- ASF: header object, in it stream properties objects of type video.

constexpr std::uint8_t kAsfHeader[16] = {0x30, 0x26, 0xB2, 0x75, 0x8E, 0x66, 0xCF, 0x11,
                                         0xA6, 0xD9, 0x00, 0xAA, 0x00, 0x62, 0xCE, 0x6C};
constexpr std::uint8_t kAsfStream[16] = {0x91, 0x07, 0xDC, 0xB7, 0xB7, 0xA9, 0xCF, 0x11,
                                         0x8E, 0xE6, 0x00, 0xC0, 0x0C, 0x20, 0x53, 0x65};
constexpr std::uint8_t kAsfVideo[16] = {0xC0, 0xEF, 0x19, 0xBC, 0x4D, 0x5B, 0xCF, 0x11,
                                        0xA8, 0xFD, 0x00, 0x80, 0x5F, 0x5C, 0x44, 0x2B};

std::uint32_t sniffAsf(ByteSource& source) {
    std::uint8_t head[24];
    std::uint64_t offset = 30;  // the header object's own fields
    for (int i = 0; i < kMostElements && source.read(offset, head, 24); ++i) {
        const std::uint64_t size =
            static_cast<std::uint64_t>(le32(head + 20)) << 32 | le32(head + 16);
        if (size < 24 || size > (1u << 24)) {
            return 0;
        }
        // stream type 16 at 24, type-specific data at 78: width 4, height 4, flags 1, size 2, then
        // a BITMAPINFOHEADER with the codec at 16
        std::uint8_t body[78 - 24 + 11 + 20];
        if (std::memcmp(head, kAsfStream, 16) == 0 && size >= 24 + sizeof body &&
            source.read(offset + 24, body, sizeof body) && std::memcmp(body, kAsfVideo, 16) == 0) {
            return le32(body + (78 - 24) + 11 + 16);
        }
        offset += size;
    }
    return 0;
}

// --- Matroska: Segment / Tracks / TrackEntry / CodecID.

struct MatroskaName {
    const char* prefix;
    std::uint32_t fourcc;
};
constexpr MatroskaName kMatroskaNames[] = {
    {"V_MPEG4/ISO/AVC", packFourcc('H', '2', '6', '4')},
    {"V_MPEGH/ISO/HEVC", packFourcc('h', 'v', 'c', '1')},
    {"V_MPEG4/MS/V3", packFourcc('D', 'I', 'V', '3')},
    {"V_MPEG4/", packFourcc('m', 'p', '4', 'v')},
    {"V_MPEG1", packFourcc('m', 'p', '1', 'v')},
    {"V_MPEG2", packFourcc('m', 'p', '2', 'v')},
    {"V_MJPEG", packFourcc('M', 'J', 'P', 'G')},
    {"V_VP8", packFourcc('V', 'P', '8', '0')},
    {"V_VP9", packFourcc('V', 'P', '9', '0')},
    {"V_AV1", packFourcc('a', 'v', '0', '1')},
    {"V_THEORA", packFourcc('t', 'h', 'e', 'o')},
    {"V_REAL/RV40", packFourcc('R', 'V', '4', '0')},
    {"V_REAL/RV30", packFourcc('R', 'V', '3', '0')},
};

struct MatroskaWalk {
    ByteSource& source;
    int elements = 0;
    bool vfw = false;  // the codec stands in CodecPrivate, a BITMAPINFOHEADER
    std::uint32_t codec = 0;

    // A variable-length number (RFC 8794, 4); `marked` keeps the length marker, as for identifiers.
    bool number(std::uint64_t* offset, bool marked, std::uint64_t* value) {
        std::uint8_t first;
        if (!source.read(*offset, &first, 1) || !first) {
            return false;
        }
        unsigned length = 1;
        while (!(first & (0x100 >> length))) {
            ++length;
        }
        std::uint64_t result = marked ? first : first & ((0x100u >> length) - 1u);
        bool unknown = !marked && result == ((0x100u >> length) - 1u);
        std::uint8_t rest[8] = {};
        if (length > 1 && !source.read(*offset + 1, rest, length - 1)) {
            return false;
        }
        for (unsigned i = 0; i + 1 < length; ++i) {
            result = result << 8 | rest[i];
            unknown = unknown && rest[i] == 0xFF;
        }
        *offset += length;
        *value = unknown ? ~std::uint64_t{0} : result;
        return true;
    }

    void codecName(Range body) {
        char text[32] = {};
        const std::size_t length =
            std::min<std::size_t>(static_cast<std::size_t>(body.end - body.begin), sizeof text - 1);
        if (!source.read(body.begin, text, length)) {
            return;
        }
        vfw = std::strcmp(text, "V_MS/VFW/FOURCC") == 0;
        for (const MatroskaName& name : kMatroskaNames) {
            if (std::strncmp(text, name.prefix, std::strlen(name.prefix)) == 0) {
                codec = name.fourcc;
                return;
            }
        }
    }

    void walk(Range range, int depth) {
        while (range.begin < range.end && ++elements < kMostElements && !codec) {
            std::uint64_t id = 0;
            std::uint64_t size = 0;
            if (!number(&range.begin, true, &id) || !number(&range.begin, false, &size)) {
                return;
            }
            size = std::min(size, range.end - range.begin);
            const Range body = {range.begin, range.begin + size};
            std::uint8_t bitmap[20];
            if (id == 0x1F43B675) {  // Cluster: the tracks stand before it
                return;
            } else if (id == 0x18538067 || id == 0x1654AE6B) {  // Segment, Tracks
                walk(body, depth + 1);
            } else if (id == 0xAE && depth < kDeepest) {  // TrackEntry
                const bool before = vfw;
                vfw = false;
                walk(body, depth + 1);
                vfw = before;
            } else if (id == 0x86) {  // CodecID
                codecName(body);
            } else if (id == 0x63A2 && vfw && source.read(body.begin, bitmap, sizeof bitmap)) {
                codec = le32(bitmap + 16);  // CodecPrivate
            }
            range.begin = body.end;
        }
    }
};

constexpr std::uint64_t kNoEnd = std::uint64_t{1} << 48;

}  // namespace

std::uint32_t sniffVideoCodec(ByteSource& source) {
    std::uint8_t head[16];
    if (!source.read(0, head, sizeof head)) {
        return 0;
    }
    if (le32(head) == packFourcc('R', 'I', 'F', 'F') &&
        le32(head + 8) == packFourcc('A', 'V', 'I', ' ')) {
        AviWalk walk{source};
        walk.walk({12, kNoEnd}, 0);
        return walk.codec;
    }
    if (std::memcmp(head, kAsfHeader, sizeof kAsfHeader) == 0) {
        return sniffAsf(source);
    }
    if (be32(head) == 0x1A45DFA3) {  // EBML
        MatroskaWalk walk{source};
        walk.walk({0, kNoEnd}, 0);
        return walk.codec;
    }
    const std::uint32_t type = le32(head + 4);
    for (const std::uint32_t known :
         {packFourcc('f', 't', 'y', 'p'), packFourcc('m', 'o', 'o', 'v'),
          packFourcc('m', 'd', 'a', 't'), packFourcc('w', 'i', 'd', 'e'),
          packFourcc('f', 'r', 'e', 'e'), packFourcc('s', 'k', 'i', 'p')}) {
        if (type == known) {
            Mp4Walk walk{source};
            walk.walk({0, kNoEnd}, 0);
            return walk.codec;
        }
    }
    return 0;
}

}  // namespace filters
