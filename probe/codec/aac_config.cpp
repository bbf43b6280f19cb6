#include "probe/codec/aac_config.h"

#include <array>

#include "probe/read/bit_reader.h"

namespace probe {
namespace {

// samplingFrequencyIndex, ISO/IEC 14496-3 Table 1.18.
constexpr auto kSampleRates = std::to_array<std::uint32_t>(
    {96000, 88200, 64000, 48000, 44100, 32000, 24000, 22050, 16000, 12000, 11025, 8000, 7350});
constexpr std::uint32_t kReservedIndex = 13;
constexpr std::uint32_t kKeptIndex = 14;
constexpr std::uint32_t kExplicitRate = 15;
constexpr std::uint32_t kSbr = 5;                // audioObjectType
constexpr std::uint32_t kSyncExtension = 0x2B7;  // 11 bits

std::uint32_t extensionRate(BitReader& bits, std::uint32_t sampleRate) {
    const std::uint32_t index = bits.bits(4);
    switch (index) {
        case kExplicitRate:
            return bits.bits(24);
        case kKeptIndex:
            return sampleRate;
        case kReservedIndex:
            return 0xFFFFFFFF;
        default:
            return kSampleRates[index];
    }
}

// program_config_element, 4.4.1.1; aligned to the start of the configuration.
void passProgramConfig(BitReader& bits) {
    bits.skip(4 + 2 + 4);  // element_instance_tag, object_type, sampling_frequency_index
    const std::uint32_t front = bits.bits(4);
    const std::uint32_t side = bits.bits(4);
    const std::uint32_t back = bits.bits(4);
    const std::uint32_t lfe = bits.bits(2);
    const std::uint32_t data = bits.bits(3);
    const std::uint32_t coupling = bits.bits(4);
    if (bits.flag()) {  // mono_mixdown_present
        bits.skip(4);
    }
    if (bits.flag()) {  // stereo_mixdown_present
        bits.skip(4);
    }
    if (bits.flag()) {  // matrix_mixdown_idx_present
        bits.skip(3);
    }
    bits.skip(5 * (front + side + back + coupling) + 4 * (lfe + data));
    bits.align();
    bits.skip(std::size_t{8} * bits.bits(8));  // comment
}

// GASpecificConfig, 4.4.1.
void passGaSpecificConfig(BitReader& bits, std::uint32_t objectType, std::uint32_t channels) {
    bits.skip(1);       // frameLengthFlag
    if (bits.flag()) {  // dependsOnCoreCoder
        bits.skip(14);
    }
    const bool extension = bits.flag();
    if (channels == 0) {
        passProgramConfig(bits);
    }
    if (objectType == 6 || objectType == 20) {  // the scalable ones
        bits.skip(3);
    }
    if (!extension) {
        return;
    }
    if (objectType == 22) {  // ER BSAC
        bits.skip(5 + 11);
    }
    if (objectType == 17 || objectType == 19 || objectType == 20 || objectType == 23) {
        bits.skip(3);
    }
    bits.skip(1);  // extensionFlag3
}

}  // namespace

std::uint32_t ParseAudioSpecificConfig(std::span<const std::uint8_t> config,
                                       std::uint32_t sampleRate) {
    BitReader bits(config);
    const std::uint32_t objectType = bits.bits(5);
    if (bits.bits(4) == kExplicitRate) {
        bits.skip(24);
    }
    const std::uint32_t channels = bits.bits(4);
    if (objectType == kSbr) {
        // What follows (the core's own object type and configuration) tells nothing more.
        return extensionRate(bits, sampleRate);
    }
    passGaSpecificConfig(bits, objectType, channels);
    if (bits.bits(11) == kSyncExtension && bits.bits(5) == kSbr && bits.flag()) {
        return extensionRate(bits, sampleRate);
    }
    return sampleRate;
}

}  // namespace probe
