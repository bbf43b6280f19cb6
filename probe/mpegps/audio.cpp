#include "probe/mpegps/audio.h"

#include <array>

#include "probe/codec/mpegaudio_header.h"
#include "probe/read/bit_reader.h"
#include "probe/record/media_record.h"

namespace probe {
namespace {

// Private stream 1 of DVD-Video: sub-stream number, frame count, offset of the first frame (2
// bytes), then the sub-stream's own header.
constexpr std::uint8_t kFirstAc3 = 0x80, kLastAc3 = 0x87, kFirstPcm = 0xA0, kLastPcm = 0xAF;
constexpr std::size_t kSubStreamHeaderBytes = 4;

// Finds a frame header that a second one follows; failing that, one that begins the payload and
// reaches beyond its end.
AudioFound readMpegAudio(std::span<const std::uint8_t> payload, PacketAudio& audio) {
    AudioFound found = AudioFound::No;
    for (std::size_t at = 0; at + kMpegAudioHeaderBytes <= payload.size(); ++at) {
        const auto rest = payload.subspan(at);
        MpegAudioHeader header, next;
        if (!parseMpegAudioHeader(rest, header)) {
            continue;
        }
        // Required: layer III has the same tag here as layers I and II.
        const PacketAudio described = {kAudioMpeg, header.sampleRate, header.channels,
                                       header.bitRate, header.layer};
        const bool nextIsHere =
            header.frameBytes != 0 && header.frameBytes + kMpegAudioHeaderBytes <= rest.size();
        if (nextIsHere && parseMpegAudioHeader(rest.subspan(header.frameBytes), next) &&
            next.layer == header.layer && next.sampleRate == header.sampleRate) {
            audio = described;
            return AudioFound::Certain;
        }
        if (!nextIsHere && at == 0) {
            audio = described;
            found = AudioFound::Likely;
        }
    }
    return found;
}

// ATSC A/52 sections 5.3.1 and 5.3.2: sync word 0B 77, checksum 16, sample rate code 2, frame size
// code 6, version 5, service 3, channel mode 3, mix levels where the mode has them, low frequency
// channel 1.
bool readAc3Frame(std::span<const std::uint8_t> bytes, PacketAudio& audio) {
    constexpr std::uint32_t kSync = 0x0B77, kHighestVersion = 8;
    constexpr std::array<std::uint32_t, 3> kSampleRates = {48000, 44100, 32000};
    constexpr auto kKilobits = std::to_array<std::uint32_t>(
        {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384, 448, 512, 576, 640});
    constexpr std::array<std::uint32_t, 8> kChannels = {2, 1, 2, 3, 3, 4, 4, 5};

    BitReader bits(bytes);
    const std::uint32_t sync = bits.bits(16);
    bits.skip(16);
    const std::uint32_t rate = bits.bits(2), size = bits.bits(6) / 2, version = bits.bits(5);
    bits.skip(3);
    const std::uint32_t mode = bits.bits(3);
    const bool hasCentre = (mode & 1) != 0 && mode != 1, hasSurround = (mode & 4) != 0;
    bits.skip((hasCentre ? 2u : 0u) + (hasSurround ? 2u : 0u) + (mode == 2 ? 2u : 0u));
    const std::uint32_t lowFrequency = bits.bit();
    if (!bits.ok() || sync != kSync || rate >= kSampleRates.size() || size >= kKilobits.size() ||
        version > kHighestVersion) {
        return false;
    }
    audio = {.formatTag = kAudioAc3,
             .sampleRate = kSampleRates[rate],
             .channels = kChannels[mode] + lowFrequency,
             .bitRate = kKilobits[size] * 1000};
    return true;
}

bool readAc3(std::span<const std::uint8_t> frames, PacketAudio& audio) {
    for (std::size_t at = 0; at + 1 < frames.size(); ++at) {
        if (frames[at] == 0x0B && readAc3Frame(frames.subspan(at), audio)) {
            return true;
        }
    }
    return false;
}

// Behind the sub-stream header: emphasis, mute and frame number 8, sample size 2, sample rate 2,
// reserved 1, channels - 1 3.
bool readPcm(std::span<const std::uint8_t> header, PacketAudio& audio) {
    constexpr std::array<std::uint32_t, 4> kSampleRates = {48000, 96000, 44100, 32000};
    if (header.size() < 2) {
        return false;
    }
    const std::uint32_t sampleRate = kSampleRates[(header[1] >> 4) & 3u];
    const std::uint32_t channels = (header[1] & 7) == 0 ? 1 : 2;  // more are told as two
    audio = {.formatTag = kAudioPcm,
             .sampleRate = sampleRate,
             .channels = channels,
             .bitRate = sampleRate * channels * 16};
    return true;
}

}  // namespace

AudioFound readPacketAudio(std::uint8_t stream, std::span<const std::uint8_t> payload,
                           PacketAudio& audio) {
    if (stream >= kFirstAudioStream && stream <= kLastAudioStream) {
        return readMpegAudio(payload, audio);
    }
    if (stream != kPrivateStream1 || payload.size() < kSubStreamHeaderBytes) {
        return AudioFound::No;
    }
    const std::uint8_t subStream = payload[0];
    const auto content = payload.subspan(kSubStreamHeaderBytes);
    const bool isAc3 = subStream >= kFirstAc3 && subStream <= kLastAc3;
    const bool isPcm = subStream >= kFirstPcm && subStream <= kLastPcm;
    const bool found = isAc3 ? readAc3(content, audio) : isPcm && readPcm(content, audio);
    return found ? AudioFound::Certain : AudioFound::No;
}

}  // namespace probe
