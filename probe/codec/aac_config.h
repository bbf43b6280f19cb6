// The AudioSpecificConfig of MPEG-4 audio (ISO/IEC 14496-3, 1.6.2.1).
#pragma once

#include <cstdint>
#include <span>

namespace probe {

// Returns the sample rate in Hz that the configuration gives by an SBR extension, explicit or
// backward compatible, and `sampleRate` when it has none. Bits beyond the end count as 0.
std::uint32_t ParseAudioSpecificConfig(std::span<const std::uint8_t> config,
                                       std::uint32_t sampleRate);

}  // namespace probe
