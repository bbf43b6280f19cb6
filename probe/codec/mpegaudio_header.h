// The four-byte header of an MPEG audio frame: ISO/IEC 11172-3 section 2.4.1.3 (MPEG-1),
// ISO/IEC 13818-3 section 2.4.1.3 (MPEG-2 low sampling frequencies), and the widely used
// extension of the latter to 8, 11.025 and 12 kHz ("MPEG 2.5").
//
//   byte 0     1111 1111                    sync word
//   byte 1     111 vv ll p                  sync word, version, layer, no CRC follows
//   byte 2     bbbb ss d x                  bit rate index, sample rate index, padding, private
//   byte 3     mm ee c o hh                 channel mode, extension, copyright, original, emphasis
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace probe {

enum class MpegVersion : std::uint8_t { Mpeg1, Mpeg2, Mpeg25 };

struct MpegAudioHeader {
    MpegVersion version = MpegVersion::Mpeg1;
    std::uint32_t layer = 0;            // 1 to 3
    std::uint32_t bitRate = 0;          // bits per second; 0 for the free format
    std::uint32_t sampleRate = 0;       // samples per second
    std::uint32_t channels = 0;         // 1 or 2
    std::uint32_t samplesPerFrame = 0;  // per channel
    std::uint32_t frameBytes = 0;       // header to header; 0 for the free format
};

constexpr std::size_t kMpegAudioHeaderBytes = 4;

// Reads the first four bytes of `bytes`. Returns false, leaving `header` alone, when they are
// fewer, when the sync word is missing, or when version, layer, bit rate index (15) or sample
// rate index (3) is a reserved or forbidden one. The free format (index 0) is read, with
// bitRate and frameBytes 0.
[[nodiscard]] bool parseMpegAudioHeader(std::span<const std::uint8_t> bytes,
                                        MpegAudioHeader& header);

// Whether a header with a length begins at `p`, which holds 0xFF and two bytes more: the cheap
// test of a scan.
inline bool mayBeMpegAudioFrame(const std::uint8_t* p) {
    return (p[1] & 0xE0) == 0xE0 && (p[1] & 0x18) != 0x08 && (p[1] & 0x06) != 0 && p[2] >= 0x10 &&
           p[2] < 0xF0 && (p[2] & 0x0C) != 0x0C;
}

}  // namespace probe
