#include "probe/codec/mpeg4_visual.h"

#include <array>

#include "probe/read/bit_reader.h"
#include "probe/read/start_codes.h"

namespace probe {
namespace {

// aspect_ratio_info, ISO/IEC 14496-2 Table 6-12; 0 is forbidden, 15 has its terms behind it.
constexpr auto kAspects =
    std::to_array<PixelAspect>({{0, 0}, {1, 1}, {12, 11}, {10, 11}, {16, 11}, {40, 33}});
constexpr std::uint32_t kExtendedPar = 15;

}  // namespace

bool aspectOfVol(std::span<const std::uint8_t> bytes, PixelAspect& aspect) {
    if (bytes.empty() || (bytes[0] & 0xF0) != 0x20) {
        return false;
    }
    BitReader bits(bytes.subspan(1));
    bits.skip(1 + 8);   // random_accessible_vol, video_object_type_indication
    if (bits.flag()) {  // is_object_layer_identifier
        bits.skip(4 + 3);
    }
    const std::uint32_t info = bits.bits(4);
    if (info == kExtendedPar) {
        aspect.horizontal = bits.bits(8);
        aspect.vertical = bits.bits(8);
        return true;
    }
    if (info == 0 || info >= kAspects.size()) {
        return false;
    }
    aspect = kAspects[info];
    return true;
}

bool FindAspectInVol(ReadWindow& file, std::uint64_t start, std::uint64_t end,
                     PixelAspect& aspect) {
    return forEachStartCode(file, start, end,
                            [&aspect](std::uint64_t, std::span<const std::uint8_t> bytes) {
                                aspectOfVol(bytes, aspect);
                                return true;
                            });
}

}  // namespace probe
