// Segment / Tracks / TrackEntry / CodecID of Matroska: RFC 9559, 5.1.4.1.21, and RFC 8794.
#include <algorithm>
#include <array>
#include <string_view>

#include "simulator/filters/codecs/chip_codecs.h"
#include "simulator/filters/codecs/container_walk.h"

namespace filters {

namespace {

struct MatroskaName {
    std::string_view prefix;
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
    platform::ReadOnlyFile& file;
    int elements = 0;
    bool vfw = false;  // the codec stands in CodecPrivate, a BITMAPINFOHEADER
    std::uint32_t codec = 0;

    // A variable-length number (RFC 8794, 4); `marked` keeps the length marker, as for identifiers.
    bool number(std::uint64_t* offset, bool marked, std::uint64_t* value) {
        std::uint8_t first = 0;
        if (!readWhole(file, *offset, std::span(&first, 1)) || !first) {
            return false;
        }
        unsigned length = 1;
        while (!(first & (0x100 >> length))) {
            ++length;
        }
        std::uint64_t result = marked ? first : first & ((0x100u >> length) - 1u);
        bool unknown = !marked && result == ((0x100u >> length) - 1u);
        std::array<std::uint8_t, 8> rest{};
        if (!readWhole(file, *offset + 1, std::span(rest).first(length - 1))) {
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
        std::array<std::uint8_t, 31> bytes{};
        const auto length =
            static_cast<std::size_t>(std::min<std::uint64_t>(body.size(), bytes.size()));
        if (!readWhole(file, body.begin, std::span(bytes).first(length))) {
            return;
        }
        const std::string_view text(reinterpret_cast<const char*>(bytes.data()), length);
        vfw = text.starts_with("V_MS/VFW/FOURCC");
        for (const MatroskaName& name : kMatroskaNames) {
            if (text.starts_with(name.prefix)) {
                codec = name.fourcc;
                return;
            }
        }
    }

    void element(std::uint64_t id, Range body, int depth) {
        constexpr std::uint64_t kSegment = 0x18538067, kTracks = 0x1654AE6B, kTrackEntry = 0xAE;
        constexpr std::uint64_t kCodecId = 0x86, kCodecPrivate = 0x63A2;
        std::array<std::uint8_t, 20> bitmap{};
        if (id == kCodecId) {
            codecName(body);
        } else if (id == kCodecPrivate && vfw && readWhole(file, body.begin, bitmap)) {
            codec = le32(bitmap.data() + 16);  // BITMAPINFOHEADER.biCompression
        } else if (depth < kDeepest && (id == kSegment || id == kTracks || id == kTrackEntry)) {
            vfw = vfw && id != kTrackEntry;
            walk(body, depth + 1);
        }
    }

    void walk(Range range, int depth) {
        constexpr std::uint64_t kCluster = 0x1F43B675;  // the tracks stand before it
        while (range.begin < range.end && ++elements < kMostElements && !codec) {
            std::uint64_t id = 0;
            std::uint64_t size = 0;
            if (!number(&range.begin, true, &id) || !number(&range.begin, false, &size) ||
                id == kCluster || range.begin > range.end) {
                return;
            }
            const Range body = {range.begin, range.begin + std::min(size, range.size())};
            element(id, body, depth);
            range.begin = body.end;
        }
    }
};

}  // namespace

std::uint32_t matroskaCodec(platform::ReadOnlyFile& file) {
    MatroskaWalk walk{file};
    walk.walk({0, kNoEnd}, 0);
    return walk.codec;
}

}  // namespace filters
