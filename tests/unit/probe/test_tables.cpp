// The tables of the public standards, row by row as they stand there.
#include <array>

#include "bit_writer.h"
#include "build_audio.h"
#include "build_flv.h"
#include "build_mpegps.h"
#include "build_riff.h"
#include "expectations.h"
#include "probe/codec/aac_config.h"
#include "probe/codec/mpeg4_visual.h"
#include "probe/codec/mpegaudio_header.h"
#include "probe/mpegps/audio.h"

namespace probe_test {
namespace {

using R = probe::MediaRecord;

using Rates = std::array<unsigned, 14>;  // kbit/s of the indices 1 to 14

// ISO/IEC 11172-3 and 13818-3, 2.4.2.3.
constexpr Rates kMpeg1Layer1 = {32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448};
constexpr Rates kMpeg1Layer2 = {32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384};
constexpr Rates kMpeg1Layer3 = {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};
constexpr Rates kMpeg2Layer1 = {32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256};
constexpr Rates kMpeg2Layer23 = {8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};

TEST(Tables, MpegAudioFrames) {
    struct Kind {
        unsigned version, layer;  // as in the header
        const Rates& rates;
        std::array<unsigned, 3> sampleRates;
        unsigned samples;
    };
    const auto kKinds = std::to_array<Kind>({
        {3, 3, kMpeg1Layer1, {44100, 48000, 32000}, 384},
        {3, 2, kMpeg1Layer2, {44100, 48000, 32000}, 1152},
        {3, 1, kMpeg1Layer3, {44100, 48000, 32000}, 1152},
        {2, 3, kMpeg2Layer1, {22050, 24000, 16000}, 384},
        {2, 2, kMpeg2Layer23, {22050, 24000, 16000}, 1152},
        {2, 1, kMpeg2Layer23, {22050, 24000, 16000}, 576},
        {0, 3, kMpeg2Layer1, {11025, 12000, 8000}, 384},
        {0, 2, kMpeg2Layer23, {11025, 12000, 8000}, 1152},
        {0, 1, kMpeg2Layer23, {11025, 12000, 8000}, 576},
    });
    for (const Kind& kind : kKinds) {
        for (unsigned index = 1; index <= 14; ++index) {
            for (unsigned rate = 0; rate < 3; ++rate) {
                for (unsigned padding = 0; padding < 2; ++padding) {
                    probe::MpegAudioHeader header;
                    const audio::Frame frame{.version = kind.version,
                                             .layer = kind.layer,
                                             .bitRate = index,
                                             .sampleRate = rate,
                                             .padding = padding};
                    ASSERT_TRUE(probe::parseMpegAudioHeader(audio::frame(frame), header));
                    const unsigned bits = kind.rates[index - 1] * 1000;
                    const unsigned sampleRate = kind.sampleRates[rate];
                    EXPECT_EQ(header.layer, 4 - kind.layer);
                    EXPECT_EQ(header.bitRate, bits) << kind.version << kind.layer << index;
                    EXPECT_EQ(header.sampleRate, sampleRate);
                    EXPECT_EQ(header.samplesPerFrame, kind.samples);
                    const unsigned slot = kind.layer == 3 ? 4 : 1;
                    EXPECT_EQ(header.frameBytes,
                              (kind.samples / 8 / slot * bits / sampleRate + padding) * slot);
                }
            }
        }
    }
}

TEST(Tables, MpegAudioFramesOfTheFreeFormat) {
    for (const unsigned version : {0u, 2u, 3u}) {
        for (unsigned layer = 1; layer <= 3; ++layer) {
            for (unsigned padding = 0; padding < 2; ++padding) {
                probe::MpegAudioHeader header;
                ASSERT_TRUE(probe::parseMpegAudioHeader(
                    audio::frame(
                        {.version = version, .layer = layer, .bitRate = 0, .padding = padding}),
                    header));
                EXPECT_EQ(header.bitRate, 0u) << version << layer;
                EXPECT_EQ(header.frameBytes, 0u) << version << layer << padding;
            }
        }
    }
}

TEST(Tables, MpegAudioHeadersThatAreNone) {
    const Bytes good = {0xFF, 0xFB, 0x90, 0x00};
    probe::MpegAudioHeader header;
    ASSERT_TRUE(probe::parseMpegAudioHeader(good, header));
    struct Case {
        const char* name;
        std::size_t at;
        std::uint8_t value;
    };
    for (const Case& one : std::to_array<Case>({{"sync, first byte", 0, 0xFE},
                                                {"sync, bit 7", 1, 0x7B},
                                                {"sync, bit 6", 1, 0xBB},
                                                {"sync, bit 5", 1, 0xDB},
                                                {"version 01", 1, 0xEB},
                                                {"layer 00", 1, 0xF9},
                                                {"bit rate 1111", 2, 0xF0},
                                                {"sample rate 11", 2, 0x9C}})) {
        Bytes bytes = good;
        bytes[one.at] = one.value;
        EXPECT_FALSE(probe::parseMpegAudioHeader(bytes, header)) << one.name;
        EXPECT_FALSE(one.at != 0 && probe::mayBeMpegAudioFrame(bytes.data())) << one.name;
    }
    EXPECT_TRUE(probe::mayBeMpegAudioFrame(good.data()));
    for (unsigned mode = 0; mode < 4; ++mode) {
        ASSERT_TRUE(probe::parseMpegAudioHeader(audio::frame({.mode = mode}), header));
        EXPECT_EQ(header.channels, mode == 3 ? 1u : 2u);
    }
    EXPECT_FALSE(probe::parseMpegAudioHeader(std::span(good).first(3), header));
}

// ATSC A/52, 5.3.2: a frame whose mode has these fields before the low frequency bit.
Bytes ac3(unsigned rate, unsigned size, unsigned version, unsigned mode, unsigned lowFrequency) {
    BitWriter w;
    w.bits(0x0B77, 16);
    w.bits(0, 16);
    w.bits(rate, 2);
    w.bits(size, 6);
    w.bits(version, 5);
    w.bits(0, 3);
    w.bits(mode, 3);
    if ((mode & 1) != 0 && mode != 1) {
        w.bits(1, 2);  // centre mix level
    }
    if ((mode & 4) != 0) {
        w.bits(1, 2);  // surround mix level
    }
    if (mode == 2) {
        w.bits(1, 2);  // Dolby Surround mode
    }
    w.bits(lowFrequency, 1);
    return Builder().u8(0x80).u8(1).be16(1).bytes(w.take()).fill(8, 0xFF).take();
}

TEST(Tables, Ac3) {
    constexpr auto kKilobits = std::to_array<unsigned>(
        {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384, 448, 512, 576, 640});
    constexpr auto kRates = std::to_array<unsigned>({48000, 44100, 32000});
    constexpr auto kChannels = std::to_array<unsigned>({2, 1, 2, 3, 3, 4, 4, 5});
    probe::PacketAudio found;
    const auto read = [&found](const Bytes& payload) {
        found = {};
        return probe::readPacketAudio(probe::kPrivateStream1, payload, found) ==
               probe::AudioFound::Certain;
    };
    for (unsigned code = 0; code < 38; ++code) {
        ASSERT_TRUE(read(ac3(0, code, 8, 2, 0))) << code;
        EXPECT_EQ(found.bitRate, kKilobits[code / 2] * 1000) << code;
        EXPECT_EQ(found.formatTag, 0x2000u);
    }
    for (unsigned rate = 0; rate < 3; ++rate) {
        ASSERT_TRUE(read(ac3(rate, 20, 8, 2, 0)));
        EXPECT_EQ(found.sampleRate, kRates[rate]);
    }
    for (unsigned mode = 0; mode < 8; ++mode) {
        for (unsigned lowFrequency = 0; lowFrequency < 2; ++lowFrequency) {
            ASSERT_TRUE(read(ac3(0, 20, 8, mode, lowFrequency)));
            EXPECT_EQ(found.channels, kChannels[mode] + lowFrequency) << mode;
        }
    }
    EXPECT_TRUE(read(ac3(0, 20, 6, 2, 0)));
    EXPECT_FALSE(read(ac3(0, 20, 9, 2, 0))) << "another syntax from version 9 on";
    EXPECT_FALSE(read(ac3(3, 20, 8, 2, 0))) << "a reserved rate";
    EXPECT_FALSE(read(ac3(0, 38, 8, 2, 0))) << "no such size";
    Bytes frame = ac3(0, 20, 8, 2, 0);
    frame[5] = 0x76;
    EXPECT_FALSE(read(frame)) << "no sync word";
    // The low frequency bit of mode 7 is the last one of its seventh byte.
    Bytes cut = ac3(0, 20, 8, 7, 1);
    cut.resize(4 + 7);
    EXPECT_TRUE(read(cut));
    cut.resize(4 + 6);
    EXPECT_FALSE(read(cut));
}

TEST(Tables, LinearPcmOfVideoDiscs) {
    constexpr auto kRates = std::to_array<unsigned>({48000, 96000, 44100, 32000});
    for (unsigned rate = 0; rate < 4; ++rate) {
        for (unsigned channels = 1; channels <= 8; ++channels) {
            probe::PacketAudio found;
            const Bytes payload = ps::subStream(0xA0, ps::pcm(rate, channels));
            ASSERT_EQ(probe::readPacketAudio(probe::kPrivateStream1, payload, found),
                      probe::AudioFound::Certain);
            const unsigned told = channels == 1 ? 1 : 2;
            EXPECT_EQ(found.formatTag, 1u);
            EXPECT_EQ(found.sampleRate, kRates[rate]);
            EXPECT_EQ(found.channels, told);
            EXPECT_EQ(found.bitRate, kRates[rate] * told * 16);
        }
    }
}

TEST(Tables, StreamsAndSubStreamsOfSound) {
    struct Case {
        std::uint8_t stream, subStream;
        std::uint32_t tag;
    };
    for (const Case& one : std::to_array<Case>({{0xBD, 0x7F, 0},
                                                {0xBD, 0x80, 0x2000},
                                                {0xBD, 0x87, 0x2000},
                                                {0xBD, 0x88, 0},
                                                {0xBD, 0x9F, 0},
                                                {0xBD, 0xA0, 1},
                                                {0xBD, 0xAF, 1},
                                                {0xBD, 0xB0, 0},
                                                {0xBC, 0x80, 0},
                                                {0xBE, 0xA0, 0}})) {
        // Sound of both kinds: which of them is looked for decides.
        const Bytes content = Builder().bytes(ps::pcm(0, 2)).bytes(ps::ac3Frame()).take();
        probe::PacketAudio found;
        const probe::AudioFound answer =
            probe::readPacketAudio(one.stream, ps::subStream(one.subStream, content), found);
        EXPECT_EQ(answer == probe::AudioFound::Certain, one.tag != 0) << int{one.subStream};
        EXPECT_EQ(found.formatTag, one.tag) << int{one.subStream};
    }
    const Bytes frames = audio::frames(2);
    for (const unsigned stream : {0xBFu, 0xC0u, 0xDFu, 0xE0u}) {
        probe::PacketAudio found;
        const bool isSound = stream == 0xC0 || stream == 0xDF;
        EXPECT_EQ(probe::readPacketAudio(static_cast<std::uint8_t>(stream), frames, found) ==
                      probe::AudioFound::Certain,
                  isSound)
            << stream;
    }
}

// ISO/IEC 14496-3 Table 1.18.
constexpr auto kAacRates = std::to_array<unsigned>(
    {96000, 88200, 64000, 48000, 44100, 32000, 24000, 22050, 16000, 12000, 11025, 8000, 7350});

TEST(Tables, AacExtensionRates) {
    const auto rateOf = [](unsigned index) {
        BitWriter w;
        w.bits(5, 5);
        w.bits(7, 4);
        w.bits(2, 4);
        w.bits(index, 4);
        if (index == 15) {
            w.bits(47250, 24);
        }
        w.bits(2, 5);
        return probe::ParseAudioSpecificConfig(w.take(), 22051);
    };
    for (unsigned index = 0; index < kAacRates.size(); ++index) {
        EXPECT_EQ(rateOf(index), kAacRates[index]) << index;
    }
    EXPECT_EQ(rateOf(13), 0xFFFFFFFFu);
    EXPECT_EQ(rateOf(14), 22051u);
    EXPECT_EQ(rateOf(15), 47250u);
}

// ISO/IEC 14496-3 4.4.1: what stands between the channels and the sync extension.
TEST(Tables, AacConfigurationsBeforeTheSyncExtension) {
    struct Case {
        const char* name;
        unsigned objectType, frequency, core, extension, extensionBits;
    };
    for (const Case& one : std::to_array<Case>({{"AAC LC", 2, 7, 0, 0, 0},
                                                {"explicit frequency", 2, 15, 0, 0, 0},
                                                {"on a core coder", 2, 7, 1, 0, 0},
                                                {"scalable", 6, 7, 0, 0, 0},
                                                {"AAC LC, extension", 2, 7, 0, 1, 1},
                                                {"scalable, extension", 6, 7, 0, 1, 1},
                                                {"ER AAC LC", 17, 7, 0, 1, 3 + 1},
                                                {"ER AAC LTP", 19, 7, 0, 1, 3 + 1},
                                                {"ER scalable", 20, 7, 0, 1, 3 + 1},
                                                {"ER scalable, plain", 20, 7, 0, 0, 0},
                                                {"ER BSAC", 22, 7, 0, 1, 5 + 11 + 1},
                                                {"ER AAC LD", 23, 7, 0, 1, 3 + 1},
                                                {"ER Twin VQ", 21, 7, 0, 1, 1},
                                                {"type 18", 18, 7, 0, 1, 1},
                                                {"type 16", 16, 7, 0, 1, 1},
                                                {"type 24", 24, 7, 0, 1, 1}})) {
        BitWriter w;
        w.bits(one.objectType, 5);
        w.bits(one.frequency, 4);
        w.bits(0x5A5A5A, one.frequency == 15 ? 24 : 0);
        w.bits(2, 4);
        w.bits(0, 1);
        w.bits(one.core, 1);
        w.bits(0x2AAA, one.core != 0 ? 14 : 0);
        w.bits(one.extension, 1);
        const bool layered = one.objectType == 6 || one.objectType == 20;
        w.bits(5, layered ? 3 : 0);
        w.bits(0x0A, one.extensionBits);
        w.bits(0x2B7, 11);
        w.bits(5, 5);
        w.bits(1, 1);
        w.bits(3, 4);
        const Bytes config = w.take();
        EXPECT_EQ(probe::ParseAudioSpecificConfig(config, 24000), 48000u) << one.name;
    }
}

// ISO/IEC 14496-3 4.4.1.1: how many elements of each kind there are, which mixes are described, and
// the length of the comment.
struct ProgramConfig {
    unsigned front, side, back, lfe, data, coupling, monoMix, stereoMix, matrixMix, comment;
};

// A configuration with such an element in it, in front of a sync extension of 48,000 Hz.
Bytes withProgramConfig(const ProgramConfig& config) {
    BitWriter w;
    unsigned used = 0;
    const auto put = [&](std::uint32_t value, unsigned count) {
        w.bits(value, count);
        used += count;
    };
    put(2, 5);
    put(7, 4);
    put(0, 4);  // channel configuration 0: the element follows
    put(0, 3);
    put(0, 4 + 2 + 4);
    put(config.front, 4);
    put(config.side, 4);
    put(config.back, 4);
    put(config.lfe, 2);
    put(config.data, 3);
    put(config.coupling, 4);
    for (const auto& [flag, bits] : {std::pair{config.monoMix, 4u}, std::pair{config.stereoMix, 4u},
                                     std::pair{config.matrixMix, 3u}}) {
        put(flag, 1);
        put(0x7, flag != 0 ? bits : 0);
    }
    for (unsigned i = 0; i < config.front + config.side + config.back + config.coupling; ++i) {
        put(0x15, 5);
    }
    for (unsigned i = 0; i < config.lfe + config.data; ++i) {
        put(0x9, 4);
    }
    put(0, (8 - used % 8) % 8);
    put(config.comment, 8);
    for (unsigned i = 0; i < config.comment; ++i) {
        put(0x41, 8);
    }
    put(0x2B7, 11);
    put(5, 5);
    put(1, 1);
    put(3, 4);
    return w.take();
}

TEST(Tables, AacProgramConfigElement) {
    for (const ProgramConfig& one :
         std::to_array<ProgramConfig>({{0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
                                       {1, 0, 0, 0, 0, 0, 0, 0, 0, 0},
                                       {0, 1, 0, 0, 0, 0, 0, 0, 0, 0},
                                       {0, 0, 1, 0, 0, 0, 0, 0, 0, 0},
                                       {0, 0, 0, 1, 0, 0, 0, 0, 0, 0},
                                       {0, 0, 0, 0, 1, 0, 0, 0, 0, 0},
                                       {0, 0, 0, 0, 0, 1, 0, 0, 0, 0},
                                       {0, 0, 0, 0, 0, 0, 1, 0, 0, 0},
                                       {0, 0, 0, 0, 0, 0, 0, 1, 0, 0},
                                       {0, 0, 0, 0, 0, 0, 0, 0, 1, 0},
                                       {0, 0, 0, 0, 0, 0, 0, 0, 0, 3},
                                       {3, 2, 1, 1, 2, 1, 1, 1, 1, 9}})) {
        // More elements of five bits, so that they end at every bit of a byte.
        for (unsigned more = 0; more < 8; ++more) {
            ProgramConfig config = one;
            config.front += more;
            EXPECT_EQ(probe::ParseAudioSpecificConfig(withProgramConfig(config), 24000), 48000u)
                << one.front << one.side << one.back << one.lfe << one.data << one.coupling
                << one.monoMix << one.stereoMix << one.matrixMix << one.comment << more;
        }
    }
}

TEST(Tables, AacSyncExtensionIsReadBitByBit) {
    const auto rateOf = [](std::uint32_t sync, unsigned type, unsigned present) {
        BitWriter w;
        w.bits(2, 5);
        w.bits(7, 4);
        w.bits(2, 4);
        w.bits(0, 3);
        w.bits(sync, 11);
        w.bits(type, 5);
        w.bits(present, 1);
        w.bits(3, 4);
        return probe::ParseAudioSpecificConfig(w.take(), 24000);
    };
    EXPECT_EQ(rateOf(0x2B7, 5, 1), 48000u);
    for (unsigned bit = 0; bit < 11; ++bit) {
        EXPECT_EQ(rateOf(0x2B7 ^ (1u << bit), 5, 1), 24000u) << bit;
    }
    EXPECT_EQ(rateOf(0x2B7, 6, 1), 24000u);
    EXPECT_EQ(rateOf(0x2B7, 5, 0), 24000u);
}

TEST(Tables, Mpeg4PixelAspects) {
    // ISO/IEC 14496-2 Table 6-12.
    constexpr auto kAspects =
        std::to_array<probe::PixelAspect>({{1, 1}, {12, 11}, {10, 11}, {16, 11}, {40, 33}});
    for (unsigned info = 0; info < 16; ++info) {
        for (const bool identifier : {false, true}) {
            const Bytes payload = volPayload(info, 77, 99, 16, identifier);
            probe::PixelAspect found{5, 6};
            const bool given = probe::aspectOfVol(std::span(payload).subspan(3), found);
            const bool listed = info >= 1 && info <= kAspects.size();
            EXPECT_EQ(given, listed || info == 15) << info;
            EXPECT_EQ(found.horizontal, listed       ? kAspects[info - 1].horizontal
                                        : info == 15 ? 77u
                                                     : 5u);
            EXPECT_EQ(found.vertical, listed ? kAspects[info - 1].vertical : info == 15 ? 99u : 6u);
        }
    }
    for (unsigned code = 0; code < 256; ++code) {
        Bytes payload = volPayload(2);
        payload[3] = static_cast<std::uint8_t>(code);
        probe::PixelAspect found;
        EXPECT_EQ(probe::aspectOfVol(std::span(payload).subspan(3), found), code >> 4 == 2) << code;
    }
}

TEST(Tables, FlashSoundAndPicture) {
    // Adobe Flash Video File Format 10.1, E.4.2.1; the lowest rate is told as 5500.
    constexpr auto kTags =
        std::to_array<std::uint32_t>({1, 2, 0x55, 1, 0, 0, 0, 0, 0, 0, 0xFF, 0, 0, 0, 0, 0});
    constexpr auto kRates = std::to_array<std::uint32_t>({5500, 11025, 22050, 44100});
    for (unsigned head = 0; head < 256; ++head) {
        const Bytes bytes =
            flv::File(flv::kAudio).audio(0, static_cast<std::uint8_t>(head)).audio(1000).end();
        const Outcome outcome = probeBytes(bytes);
        EXPECT_EQ(outcome.info->audioFormatTag, kTags[head >> 4]) << head;
        EXPECT_EQ(outcome.info->audioSampleRate, kRates[head >> 2 & 3]) << head;
        EXPECT_EQ(outcome.info->audioChannels, (head & 1) + 1) << head;
    }
    for (unsigned codec = 0; codec < 16; ++codec) {
        const Bytes bytes = flv::File(flv::kVideo)
                                .tag(9, Builder().u8(0x10 | codec).fill(20).take())
                                .video(1000)
                                .end();
        const std::uint32_t wanted = codec == 7 ? 0x48323634 : codec == 2 ? 0x53323633 : 0xFFFFFFFF;
        EXPECT_EQ(probeBytes(bytes).info->videoFourCC, wanted) << codec;
    }
}

TEST(Tables, MonkeysAudioBlocksPerFrame) {
    struct Case {
        unsigned version, compression;
        std::uint64_t blocks;
    };
    for (const Case& one : std::to_array<Case>({{3799, 4000, 9216},
                                                {3800, 4000, 73728},
                                                {3800, 3999, 9216},
                                                {3800, 4001, 9216},
                                                {3899, 3000, 9216},
                                                {3900, 2000, 73728},
                                                {3949, 4000, 73728},
                                                {3950, 2000, 294912},
                                                {3979, 2000, 294912}})) {
        const Bytes bytes = audio::ape({.version = one.version,
                                        .compression = one.compression,
                                        .sampleRate = 1,
                                        .finalFrameBlocks = 1000,
                                        .totalFrames = 2});
        EXPECT_EQ(probeBytes(bytes).info->durationSeconds, one.blocks + 1000)
            << one.version << ' ' << one.compression;
    }
}

}  // namespace
}  // namespace probe_test
