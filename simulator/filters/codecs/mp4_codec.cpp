// moov/trak/mdia/minf/stbl/stsd, video tracks told by minf/vmhd: ISO/IEC 14496-12, 8.5.2 and 12.1.
#include <algorithm>
#include <array>
#include <iterator>

#include "simulator/filters/codecs/chip_codecs.h"
#include "simulator/filters/codecs/container_walk.h"

namespace filters {

namespace {

constexpr std::uint32_t kTrack = packFourcc('t', 'r', 'a', 'k');
constexpr std::uint32_t kIndex = packFourcc('m', 'o', 'o', 'v');
constexpr std::uint32_t kParents[] = {kIndex, kTrack, packFourcc('m', 'd', 'i', 'a'),
                                      packFourcc('m', 'i', 'n', 'f'),
                                      packFourcc('s', 't', 'b', 'l')};

struct Mp4Walk {
    platform::ReadOnlyFile& file;
    int elements = 0;
    std::uint32_t entry = 0;  // first sample entry of the current track
    bool video = false;
    bool indexed = false;
    std::uint32_t codec = 0;

    void box(std::uint32_t type, Range body, int depth) {
        std::array<std::uint8_t, 16> head{};
        indexed = indexed || type == kIndex;
        if (type == packFourcc('v', 'm', 'h', 'd')) {
            video = true;
        } else if (type == packFourcc('s', 't', 's', 'd')) {
            // version and flags 4, count 4, size of the first entry 4, its type 4
            if (body.size() >= head.size() && readWhole(file, body.begin, head)) {
                entry = le32(head.data() + 12);
            }
        } else if (depth < kDeepest && std::find(std::begin(kParents), std::end(kParents), type) !=
                                           std::end(kParents)) {
            walk(body, depth + 1);
        }
        if (type == kTrack) {
            codec = video ? entry : 0;
            video = false;
            entry = 0;
        }
    }

    void walk(Range range, int depth) {
        while (range.size() >= 8 && ++elements < kMostElements && !codec) {
            std::array<std::uint8_t, 16> head{};
            if (!readWhole(file, range.begin, std::span(head).first(8))) {
                return;
            }
            std::uint64_t size = be32(head.data());
            std::uint64_t header = 8;
            if (size == 1) {  // a 64-bit size follows the type
                if (!readWhole(file, range.begin + 8, std::span(head).last(8))) {
                    return;
                }
                size = static_cast<std::uint64_t>(be32(head.data() + 8)) << 32 |
                       be32(head.data() + 12);
                header = 16;
            } else if (size == 0) {  // up to the end
                size = range.size();
            }
            if (size < header || size > range.size()) {
                return;
            }
            box(le32(head.data() + 4), {range.begin + header, range.begin + size}, depth);
            range.begin += size;
        }
    }
};

}  // namespace

std::uint32_t mp4Codec(platform::ReadOnlyFile& file) {
    Mp4Walk walk{file};
    walk.walk({0, kNoEnd}, 0);
    return walk.codec;
}

bool mp4LacksIndex(platform::ReadOnlyFile& file) {
    std::uint64_t bytes = 0;
    Mp4Walk walk{file};
    if (file.size(bytes)) {
        walk.walk({0, bytes}, 0);
    }
    return !walk.indexed;
}

}  // namespace filters
