#include "probe/codec/h264.h"

#include <algorithm>
#include <array>

#include "probe/read/bit_reader.h"
#include "probe/read/start_codes.h"

namespace probe {
namespace {

// More than the longest set: 12 scaling lists and 255 picture order count offsets.
constexpr std::size_t kLongestSet = 16384;
// Enough for a set without long lists.
constexpr std::size_t kMostSets = 256;
constexpr std::uint32_t kExtendedSar = 255;
constexpr std::uint8_t kSequenceParameterSet = 7;

// aspect_ratio_idc 1 to 13, ITU-T H.264 Table E-1.
constexpr auto kAspects = std::to_array<PixelAspect>({{0, 0},
                                                      {1, 1},
                                                      {12, 11},
                                                      {10, 11},
                                                      {16, 11},
                                                      {40, 33},
                                                      {24, 11},
                                                      {20, 11},
                                                      {32, 11},
                                                      {80, 33},
                                                      {18, 11},
                                                      {15, 11},
                                                      {64, 33},
                                                      {160, 99}});

// Profiles whose sets carry chroma_format_idc.
constexpr auto kChromaProfiles =
    std::to_array<std::uint8_t>({44, 83, 86, 100, 110, 118, 122, 128, 134, 135, 138, 139, 244});

class SpsReader {
public:
    explicit SpsReader(std::span<const std::uint8_t> payload) : bits_(payload) {}

    // Whether nothing behind the payload was asked for.
    bool hadAll() const { return bits_.ok(); }

    PixelAspect aspect() {
        const auto profile = static_cast<std::uint8_t>(bits_.bits(8));
        bits_.skip(8 + 8);  // constraint flags, level_idc
        golomb();           // seq_parameter_set_id
        if (std::find(kChromaProfiles.begin(), kChromaProfiles.end(), profile) !=
            kChromaProfiles.end()) {
            passChroma();
        }
        golomb();  // log2_max_frame_num_minus4
        passPictureOrderCount();
        golomb();             // max_num_ref_frames
        bits_.skip(1);        // gaps_in_frame_num_value_allowed_flag
        golomb();             // pic_width_in_mbs_minus1
        golomb();             // pic_height_in_map_units_minus1
        if (!bits_.flag()) {  // frame_mbs_only_flag
            bits_.skip(1);    // mb_adaptive_frame_field_flag
        }
        bits_.skip(1);       // direct_8x8_inference_flag
        if (bits_.flag()) {  // frame_cropping_flag
            for (int edge = 0; edge < 4; ++edge) {
                golomb();
            }
        }
        // vui_parameters_present_flag, aspect_ratio_info_present_flag
        if (!valid_ || !bits_.flag() || !bits_.flag()) {
            return {};
        }
        const std::uint32_t idc = bits_.bits(8);
        if (idc == kExtendedSar) {
            const std::uint32_t horizontal = bits_.bits(16);
            return {horizontal, bits_.bits(16)};
        }
        return idc < kAspects.size() ? kAspects[idc] : PixelAspect{};
    }

private:
    // ue(v), 9.1; a code of more than 32 leading zeros makes the set invalid.
    std::uint32_t golomb() {
        const unsigned zeros = bits_.zeros(32);
        if (zeros > 32) {
            valid_ = false;
            return 0;
        }
        const std::uint64_t base = (std::uint64_t{1} << zeros) - 1;
        return static_cast<std::uint32_t>(base + bits_.bits(zeros));
    }

    std::int32_t signedGolomb() {
        const std::uint32_t code = golomb();
        const auto magnitude = static_cast<std::int32_t>(code / 2 + (code & 1));
        return (code & 1) != 0 ? magnitude : -magnitude;
    }

    void passChroma() {
        const std::uint32_t format = golomb();
        if (format == 3) {
            bits_.skip(1);  // separate_colour_plane_flag
        }
        golomb();  // bit_depth_luma_minus8
        golomb();  // bit_depth_chroma_minus8
        bits_.skip(1);
        if (!bits_.flag()) {  // seq_scaling_matrix_present_flag
            return;
        }
        const int lists = format == 3 ? 12 : 8;
        for (int list = 0; list < lists; ++list) {
            if (bits_.flag()) {
                passScalingList(list < 6 ? 16 : 64);
            }
        }
    }

    // 7.3.2.1.1.1; a delta that makes the next scale 0 ends the list's codes.
    void passScalingList(int size) {
        std::uint32_t last = 8;
        for (int i = 0; i < size && bits_.ok(); ++i) {
            const std::uint32_t next = (last + static_cast<std::uint32_t>(signedGolomb())) & 0xFF;
            if (next == 0) {
                return;
            }
            last = next;
        }
    }

    void passPictureOrderCount() {
        const std::uint32_t type = golomb();
        if (type == 0) {
            golomb();  // log2_max_pic_order_cnt_lsb_minus4
        } else if (type == 1) {
            bits_.skip(1);
            golomb();
            golomb();
            const std::uint32_t frames = golomb();
            if (frames > 255) {
                valid_ = false;
                return;
            }
            for (std::uint32_t i = 0; i < frames; ++i) {
                golomb();
            }
        }
    }

    BitReader bits_;
    bool valid_ = true;
};

// Removes the emulation prevention bytes (7.4.1.1); `ended` when the next start code was met.
std::size_t unescape(std::span<const std::uint8_t> escaped, std::span<std::uint8_t> plain,
                     bool& ended) {
    std::size_t written = 0;
    unsigned zeros = 0;
    ended = false;
    for (const std::uint8_t byte : escaped) {
        if (zeros >= 2 && byte == 3) {
            zeros = 0;
            continue;
        }
        ended = zeros >= 2 && byte == 1;
        if (ended || written == plain.size()) {
            break;
        }
        zeros = byte == 0 ? zeros + 1 : 0;
        plain[written++] = byte;
    }
    return written;
}

// Looks into the beginning of a set: false when that does not hold all that the aspect stands on.
bool lookIntoMostSets(std::span<const std::uint8_t> start, PixelAspect& aspect) {
    std::array<std::uint8_t, kMostSets> plain;
    bool ended = false;
    const std::size_t length =
        unescape(start.first(std::min(start.size(), kMostSets)), plain, ended);
    SpsReader reader({plain.data(), length});
    aspect = reader.aspect();
    return reader.hadAll() || ended;
}

}  // namespace

PixelAspect FindAspectInSps(std::span<const std::uint8_t> parameterSet) {
    PixelAspect aspect;
    if (lookIntoMostSets(parameterSet, aspect)) {
        return aspect;
    }
    std::array<std::uint8_t, kLongestSet> plain;
    bool ended = false;
    const std::size_t length = unescape(parameterSet, plain, ended);
    return SpsReader({plain.data(), length}).aspect();
}

bool findAspectInH264(ReadWindow& file, std::uint64_t start, std::uint64_t end,
                      std::uint64_t lastPosition, PixelAspect& aspect) {
    std::uint64_t found = 0;
    const auto isSet = [&](std::uint64_t position, std::span<const std::uint8_t> unit) {
        if (position > lastPosition) {
            return false;
        }
        if ((unit[0] & 0x1F) != kSequenceParameterSet) {
            return true;
        }
        found = position + 4;
        return false;
    };
    if (!forEachStartCode(file, start, end, isSet)) {
        return false;
    }
    if (found == 0) {
        return true;
    }
    std::span<const std::uint8_t> set;
    const auto left = static_cast<std::size_t>(std::min<std::uint64_t>(end - found, kLongestSet));
    if (!file.view(found, std::min(left, kMostSets), left, set)) {
        return false;
    }
    if (lookIntoMostSets(set, aspect)) {
        return true;
    }
    if (!file.view(found, left, set)) {
        return false;
    }
    aspect = FindAspectInSps(set);
    return true;
}

}  // namespace probe
