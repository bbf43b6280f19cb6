#include "probe/codec/mpegaudio_header.h"

#include <array>

namespace probe {
namespace {

using BitRates = std::array<std::uint16_t, 15>;  // kbit/s by index 0 to 14

// ISO/IEC 11172-3 table of 2.4.2.3, layers I to III.
constexpr std::array<BitRates, 3> kMpeg1BitRates = {{
    {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
}};

// ISO/IEC 13818-3 table of 2.4.2.3: layer I, then layers II and III alike.
constexpr std::array<BitRates, 3> kMpeg2BitRates = {{
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
}};

constexpr std::array<std::uint32_t, 3> kSampleRates = {44100, 48000, 32000};

constexpr std::uint32_t samplesPerFrame(MpegVersion version, std::uint32_t layer) {
    if (layer == 1) {
        return 384;
    }
    return layer == 3 && version != MpegVersion::Mpeg1 ? 576 : 1152;
}

constexpr std::uint32_t frameBytes(const MpegAudioHeader& header, std::uint32_t padding) {
    if (header.bitRate == 0) {
        return 0;
    }
    if (header.layer == 1) {  // counted in slots of four bytes, the padding too
        return (12 * header.bitRate / header.sampleRate + padding) * 4;
    }
    return header.samplesPerFrame / 8 * header.bitRate / header.sampleRate + padding;
}

}  // namespace

bool parseMpegAudioHeader(std::span<const std::uint8_t> bytes, MpegAudioHeader& header) {
    if (bytes.size() < kMpegAudioHeaderBytes || bytes[0] != 0xFF || (bytes[1] & 0xE0) != 0xE0) {
        return false;
    }
    const std::uint32_t versionBits = (bytes[1] >> 3) & 3u, layerBits = (bytes[1] >> 1) & 3u;
    const std::uint32_t bitRateIndex = bytes[2] >> 4, sampleRateIndex = (bytes[2] >> 2) & 3u;
    if (versionBits == 1 || layerBits == 0 || bitRateIndex == 15 || sampleRateIndex == 3) {
        return false;
    }
    MpegAudioHeader parsed;
    parsed.version = versionBits == 3   ? MpegVersion::Mpeg1
                     : versionBits == 2 ? MpegVersion::Mpeg2
                                        : MpegVersion::Mpeg25;
    parsed.layer = 4 - layerBits;
    const auto& bitRates = parsed.version == MpegVersion::Mpeg1 ? kMpeg1BitRates : kMpeg2BitRates;
    parsed.bitRate = bitRates[parsed.layer - 1][bitRateIndex] * 1000u;
    parsed.sampleRate = kSampleRates[sampleRateIndex] >> static_cast<unsigned>(parsed.version);
    parsed.channels = (bytes[3] >> 6) == 3 ? 1 : 2;
    parsed.samplesPerFrame = samplesPerFrame(parsed.version, parsed.layer);
    parsed.frameBytes = frameBytes(parsed, (bytes[2] >> 1) & 1u);
    header = parsed;
    return true;
}

}  // namespace probe
