// Sound in MPEG system and program streams: MPEG audio streams, and the AC-3 and linear PCM
// sub-streams that DVD-Video puts into private stream 1.
#pragma once

#include <cstdint>
#include <span>

namespace probe {

constexpr std::uint8_t kPrivateStream1 = 0xBD;
constexpr std::uint8_t kFirstAudioStream = 0xC0, kLastAudioStream = 0xDF;

struct PacketAudio {
    std::uint32_t formatTag = 0;  // as in the record
    std::uint32_t sampleRate = 0;
    std::uint32_t channels = 0;
    std::uint32_t bitRate = 0;  // bits per second; 0 for the free format of MPEG audio
    std::uint32_t layer = 0;    // of MPEG audio, 1 to 3; 0 for other sound
};

enum class AudioFound : std::uint8_t {
    No,      // no sound that is known here, or no frame header in this payload
    Likely,  // a frame header of MPEG audio whose next one lies in another packet
    Certain,
};

// Looks for the start of a frame in the payload of one packet of the stream.
[[nodiscard]] AudioFound readPacketAudio(std::uint8_t stream, std::span<const std::uint8_t> payload,
                                         PacketAudio& audio);

}  // namespace probe
