// MPEG system and program streams.
#include <algorithm>
#include <array>

#include "build_audio.h"
#include "build_mpegps.h"
#include "expectations.h"
#include "probe/mpegps/pack.h"

namespace probe_test {
namespace {

using R = probe::MediaRecord;

constexpr std::uint32_t kMpg1 = 0x4D504731, kMpg2 = 0x4D504732;

Bytes videoPacket() {
    return ps::packet2(
        0xE0,
        Builder().bytes(ps::sequence({})).bytes(ps::extension()).bytes(ps::pictures()).take());
}

TEST(MpegPs, DescribesAnMpeg1SystemStream) {
    const char* const name = "mpegps_mpeg1_system_stream";
    expectFields(std::to_array<FieldCase>({
        {name, &R::containerType, probe::kContainerMpeg1System},
        {name, &R::videoFourCC, kMpg1},
        {name, &R::videoWidth, 352},
        {name, &R::videoHeight, 288},
        {name, &R::videoBitRate, 1'000'000},
        {name, &R::frameTimeMicroseconds, 40'000},
        {name, &R::pixelAspectX, 1},
        {name, &R::pixelAspectY, 1},
        {name, &R::audioFormatTag, 0x50},
        {name, &R::audioSampleRate, 48000},
        {name, &R::audioChannels, 2},
        {name, &R::audioBitRate, 192'000},
        {name, &R::durationSeconds, 90},
    }));
}

TEST(MpegPs, DescribesAnMpeg2ProgramStream) {
    const char* const name = "mpegps_mpeg2_program_stream";
    expectFields(std::to_array<FieldCase>({
        {name, &R::containerType, probe::kContainerMpeg2Program},
        {name, &R::videoFourCC, kMpg2},
        {name, &R::videoWidth, 720},
        {name, &R::videoHeight, 576},
        {name, &R::pixelAspectX, 576 * 16},
        {name, &R::pixelAspectY, 720 * 9},
        {name, &R::audioFormatTag, 0x2000},
        {name, &R::audioSampleRate, 48000},
        {name, &R::audioChannels, 2},
        {name, &R::audioBitRate, 192'000},
        {name, &R::durationSeconds, 59},
    }));
}

TEST(MpegPs, Video) {
    expectFields(std::to_array<FieldCase>({
        {"mpegps_aspect_4_to_3", &R::pixelAspectX, 288 * 4},
        {"mpegps_aspect_4_to_3", &R::pixelAspectY, 352 * 3},
        {"mpegps_aspect_211_to_100", &R::pixelAspectX, 288 * 211},
        {"mpegps_aspect_211_to_100", &R::pixelAspectY, 352 * 100},
        {"mpegps_aspect_code_5_is_unknown", &R::pixelAspectX, 0},
        {"mpegps_sequence_header_across_packets", &R::videoWidth, 704},
        {"mpegps_extension_widens_the_fields", &R::videoWidth, 4096 + 352},
        {"mpegps_extension_widens_the_fields", &R::videoHeight, 8192 + 288},
        {"mpegps_extension_widens_the_fields", &R::videoBitRate, ((1 << 18) + 2500) * 400},
        {"mpegps_extension_widens_the_fields", &R::frameTimeMicroseconds, 16'666},
        {"mpegps_packet_without_a_length", &R::videoWidth, 352},
        {"mpegps_packet_without_a_length", &R::audioFormatTag, 0x50},
    }));
}

TEST(MpegPs, FrameRates) {
    // Microseconds a frame for codes 0 to 9: 24000/1001, 24, 25, 30000/1001, 30, 50, 60000/1001
    // and 60 frames a second; the rest is unknown.
    constexpr auto kWanted = std::to_array<std::uint32_t>(
        {0, 41'708, 41'666, 40'000, 33'366, 33'333, 20'000, 16'683, 16'666, 0});
    for (unsigned rate = 0; rate < kWanted.size(); ++rate) {
        const Bytes video = Builder()
                                .bytes(ps::sequence({.rate = rate}))
                                .bytes(ps::extension())
                                .bytes(ps::pictures())
                                .take();
        const Bytes bytes =
            ps::file(Builder().bytes(ps::pack2(0)).bytes(ps::packet2(0xE0, video)).take());
        EXPECT_EQ(probeBytes(bytes).info->frameTimeMicroseconds, kWanted[rate]) << rate;
    }
}

TEST(MpegPs, Sound) {
    expectFields(std::to_array<FieldCase>({
        {"mpegps_layer_3_has_the_tag_of_layer_2", &R::audioFormatTag, 0x50},
        {"mpegps_layer_3_has_the_tag_of_layer_2", &R::audioBitRate, 128'000},
        {"mpegps_ac3_with_five_channels_and_bass", &R::audioFormatTag, 0x2000},
        {"mpegps_ac3_with_five_channels_and_bass", &R::audioSampleRate, 44100},
        {"mpegps_ac3_with_five_channels_and_bass", &R::audioBitRate, 384'000},
        {"mpegps_ac3_with_five_channels_and_bass", &R::audioChannels, 6},
        {"mpegps_pcm_of_one_channel", &R::audioFormatTag, 1},
        {"mpegps_pcm_of_one_channel", &R::audioChannels, 1},
        {"mpegps_pcm_of_one_channel", &R::audioSampleRate, 96000},
        {"mpegps_pcm_of_one_channel", &R::audioBitRate, 96000 * 16},
        {"mpegps_pcm_of_six_channels_is_told_as_two", &R::audioChannels, 2},
        {"mpegps_pcm_of_six_channels_is_told_as_two", &R::audioBitRate, 48000 * 2 * 16},
        {"mpegps_one_frame_per_packet_before_ac3", &R::audioFormatTag, 0x50},
        {"mpegps_one_frame_per_packet_before_ac3", &R::audioBitRate, 192'000},
        {"mpegps_one_frame_per_packet_before_a_second_stream", &R::audioBitRate, 192'000},
        {"mpegps_chance_sync_word_before_the_frames", &R::audioSampleRate, 48000},
        {"mpegps_chance_sync_word_before_the_frames", &R::audioBitRate, 192'000},
        {"mpegps_sound_that_no_system_header_lists", &R::audioFormatTag, 0x50},
        {"mpegps_sound_that_no_system_header_lists", &R::audioBitRate, 192'000},
        {"mpegps_silent_by_its_system_header", &R::audioFormatTag, 0},
        {"mpegps_silent_by_its_system_header", &R::durationSeconds, 10},
        {"mpegps_dts_is_no_known_sound", &R::audioFormatTag, 0},
        {"mpegps_dts_is_no_known_sound", &R::audioSampleRate, 0},
        {"mpegps_first_sound_is_described", &R::audioFormatTag, 1},
        {"mpegps_one_frame_per_packet_is_enough", &R::audioBitRate, 192'000},
    }));
}

TEST(MpegPs, DurationSurvivesTheClock) {
    // A stretch of 200 packs is 19.9 s long.
    expectFields(std::to_array<FieldCase>({
        {"mpegps_single_pack_has_no_duration", &R::durationSeconds, 0},
        {"mpegps_clock_wraps_at_33_bits", &R::durationSeconds, 39},
        {"mpegps_clock_starts_again", &R::durationSeconds, 59},
        {"mpegps_clock_leaps_an_hour", &R::durationSeconds, 39},
        {"mpegps_mpeg1_clock_without_its_marker", &R::durationSeconds, 3},
        {"mpegps_mpeg2_clock_without_its_marker", &R::durationSeconds, 0},
        {"mpegps_last_mpeg1_pack_without_its_marker", &R::durationSeconds, 4},
        {"mpegps_last_mpeg2_packs_without_their_markers", &R::durationSeconds, 4},
        {"mpegps_last_pack_of_a_file_that_is_walked_whole", &R::durationSeconds, 4},
        {"mpegps_hole_before_a_new_start", &R::durationSeconds, 7},
        {"mpegps_videocd_sectors", &R::durationSeconds, 20},
        {"mpegps_videocd_sectors", &R::audioFormatTag, 0x50},
    }));
}

TEST(MpegPs, DamagedHeadersPrintTheirLines) {
    const auto lines = [](const char* name) { return probeBytes(sample(name).build()).lines; };
    EXPECT_EQ(lines("mpegps_mpeg1_clock_without_its_marker"), "ERROR: GetSCR ERROR(MPEG1)\n");
    EXPECT_EQ(lines("mpegps_mpeg2_clock_without_its_marker"), "ERROR: GetSCR ERROR\n");
    EXPECT_EQ(lines("mpegps_forbidden_time_stamp_flags"),
              "PES Packet Parse ERROR: PTS_DTS_flags =0x01\r\n");
    EXPECT_EQ(lines("mpegps_mpeg1_system_stream"), "");
    EXPECT_EQ(lines("mpegps_last_mpeg1_pack_without_its_marker"), "ERROR: GetSCR ERROR(MPEG1)\n");
    EXPECT_EQ(lines("mpegps_last_mpeg2_packs_without_their_markers"),
              "ERROR: GetSCR ERROR\nERROR: GetSCR ERROR\n");
    EXPECT_EQ(lines("mpegps_last_pack_of_a_file_that_is_walked_whole"), "ERROR: GetSCR ERROR\n");
}

TEST(MpegPs, ForbiddenTimeStampFlagsPrintInEveryStreamThatHasThem) {
    // Program stream map, padding, private stream 2, ECM, EMM, DSM-CC, H.222.1 type E and the
    // directory have no such header: 8 of the 68 streams from 0xBC to 0xFF.
    constexpr std::string_view kLine = "PES Packet Parse ERROR: PTS_DTS_flags =0x01\r\n";
    const std::string lines =
        probeBytes(sample("mpegps_forbidden_time_stamp_flags_in_every_stream").build()).lines;
    EXPECT_EQ(lines.size(), (68 - 8) * kLine.size());
    for (std::size_t at = 0; at < lines.size(); at += kLine.size()) {
        EXPECT_EQ(lines.substr(at, kLine.size()), kLine);
    }
}

TEST(MpegPs, EightStreamsHaveNoHeaderWithTimeStamps) {
    // ISO/IEC 13818-1 2.4.3.7: packets of these have data right behind their length.
    constexpr auto kWithout =
        std::to_array<unsigned>({0xBC, 0xBE, 0xBF, 0xF0, 0xF1, 0xF2, 0xF8, 0xFF});
    for (unsigned stream = 0xBC; stream <= 0xFF; ++stream) {
        const Bytes bytes = ps::file(Builder()
                                         .bytes(ps::pack2(0))
                                         .bytes(ps::packet2(stream, Bytes(9, 0x22), 1))
                                         .bytes(videoPacket())
                                         .bytes(ps::packet2(0xC0, audio::frames(2)))
                                         .take());
        const bool hasNone = std::ranges::find(kWithout, stream) != kWithout.end();
        EXPECT_EQ(probeBytes(bytes).lines,
                  hasNone ? "" : "PES Packet Parse ERROR: PTS_DTS_flags =0x01\r\n")
            << stream;
    }
}

TEST(MpegPs, WhatIsClaimed) {
    expectStatus(std::to_array<StatusCase>({
        {"mpegps_without_video_fails", 1, probe::kFail},
        {"mpegps_pack_in_the_last_four_bytes_of_the_head", 1, probe::kOk},
        {"mpegps_pack_behind_the_head_is_refused", 0, probe::kNotParsed},
        {"mpegps_one_byte_below_256_kib_is_refused", 0, probe::kNotParsed},
    }));
    expectFields(std::to_array<FieldCase>({
        {"mpegps_without_video_fails", &R::containerType, 0},
        {"mpegps_without_video_fails", &R::fileSize, ps::kSmallest},
    }));
}

TEST(MpegPs, SmallFilesFallThroughToTheFrameScan) {
    // 200 KiB of a stream whose sound is nothing but MPEG audio frames.
    const Bytes bytes =
        Builder().bytes(ps::pack2(0)).bytes(audio::frames(480)).padTo(200 * 1024).take();
    EXPECT_EQ(probeBytes(bytes).info->containerType, probe::kContainerMpegAudio);
}

TEST(MpegPs, AVideoCdIsSearchedOverTwoMebibytes) {
    const auto claimed = [](std::size_t offset) {
        const Bytes bytes = Builder()
                                .text("RIFF")
                                .le32(0)
                                .text("CDXA")
                                .padTo(offset, 0xFF)
                                .bytes(ps::pack1(0))
                                .fill(100, 0xFF)
                                .take();
        return probeBytes(bytes).claimed;
    };
    EXPECT_EQ(claimed(0x200000 - 4), 1);
    EXPECT_EQ(claimed(0x200000 - 3), 0);
}

TEST(MpegPs, AVideoCdsPackMayLieAcrossTheWindow) {
    for (const std::size_t border : {256u, 4096u, 4096u + 8192u}) {
        for (std::size_t at = border - 8; at <= border + 8; ++at) {
            const Bytes bytes = ps::file(Builder()
                                             .text("RIFF")
                                             .le32(0)
                                             .text("CDXA")
                                             .padTo(at, 0x11)
                                             .bytes(ps::pack1(0))
                                             .take());
            EXPECT_EQ(probeBytes(bytes).claimed, 1) << at;
        }
    }
}

TEST(MpegPs, APlayTimeEndsWithItsLastWholeSecond) {
    const Bytes start = Builder().bytes(ps::pack2(0)).bytes(videoPacket()).take();
    EXPECT_EQ(probeBytes(ps::file(start, ps::pack2(1000 * 90'000 - 1))).info->durationSeconds,
              999u);
    EXPECT_EQ(probeBytes(ps::file(start, ps::pack2(1000 * 90'000))).info->durationSeconds, 1000u);
}

TEST(MpegPs, ClocksOfBothKinds) {
    const auto clockOf = [](const Bytes& pack) {
        return probe::packClock(std::span(pack).subspan<4, probe::kPackClockBytes>()).time;
    };
    constexpr std::uint64_t kTicks = 0x1'2345'6789;
    EXPECT_EQ(clockOf(ps::pack1(kTicks)), static_cast<std::int64_t>(kTicks * 1000 / 9));
    EXPECT_EQ(clockOf(ps::pack2(kTicks, 200)),
              static_cast<std::int64_t>((kTicks * 300 + 200) * 10 / 27));
    EXPECT_EQ(clockOf(ps::pack2((std::uint64_t{1} << 33) - 1, 299)),
              static_cast<std::int64_t>((((std::uint64_t{1} << 33) - 1) * 300 + 299) * 10 / 27));
}

TEST(MpegPs, StartCodesAreFoundWhereverTheyStand) {
    for (std::size_t at = 0; at < 9; ++at) {
        for (const std::uint8_t around : std::to_array<std::uint8_t>({0, 1, 2, 0xFF})) {
            Bytes bytes(13, around);
            const Bytes code = {0, 0, 1, 0xBA};
            std::copy(code.begin(), code.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
            EXPECT_EQ(probe::findStartCode(bytes, 0xBA, 0xBA), at) << int{around};
            bytes.resize(at + 3);
            EXPECT_EQ(probe::findStartCode(bytes, 0xBA, 0xBA), bytes.size());
        }
    }
}

TEST(MpegPs, AStartCodeIsTwoZerosAndAOne) {
    const Bytes code = {0, 0, 1, 0xBA};
    for (const Bytes& other : {Bytes{0, 0, 2, 0xBA}, Bytes{0, 9, 1, 0xBA}, Bytes{9, 0, 1, 0xBA},
                               Bytes{0, 0, 1, 0xB9}, Bytes{0, 0, 1, 0xBB}}) {
        const Bytes bytes = Builder().bytes(other).fill(3, 9).bytes(code).take();
        EXPECT_EQ(probe::findStartCode(bytes, 0xBA, 0xBA), 7u);
    }
}

TEST(MpegPs, TwoPacketsOfOneFrameEachEndTheWalk) {
    const Bytes frame = audio::frame({.layer = 2, .bitRate = 10, .sampleRate = 1, .bytes = 576});
    Builder builder;
    builder.bytes(ps::pack2(0)).bytes(videoPacket());
    for (std::uint64_t i = 0; i < 2000; ++i) {
        builder.bytes(ps::pack2(i * 9000)).bytes(ps::packet2(0xC0, frame));
    }
    const Outcome outcome = probeBytes(builder.view());
    EXPECT_EQ(outcome.info->audioBitRate, 192'000u);
    EXPECT_LE(outcome.bytesRead, 100u * 1024) << "of 1.1 MiB";
}

// A silent recording of 16 MiB whose system header lists video alone, with a packet of sound
// behind the given number of packs.
Outcome probeSilent(std::size_t packsBeforeSound) {
    Builder builder;
    builder.bytes(ps::pack2(0)).bytes(ps::systemHeader({0xE0})).bytes(videoPacket());
    for (std::uint64_t i = 1; i < 8000; ++i) {
        builder.bytes(ps::pack2(i * 9000)).bytes(ps::packet2(0xE0, Bytes(2015, 0x77)));
        if (i == packsBeforeSound) {
            builder.bytes(ps::packet2(
                0xC0,
                audio::frames(3, {.layer = 2, .bitRate = 10, .sampleRate = 1, .bytes = 576})));
        }
    }
    return probeBytes(builder.view());
}

TEST(MpegPs, ASilentSystemHeaderIsBelievedBehind256Kib) {
    const Outcome silent = probeSilent(0);
    EXPECT_EQ(silent.info->audioFormatTag, 0u);
    EXPECT_EQ(silent.info->durationSeconds, 799u);
    EXPECT_LE(silent.bytesRead, 600u * 1024) << "of 16 MiB";
    EXPECT_LE(silent.reads, 40u);
    EXPECT_EQ(probeSilent(125).info->audioFormatTag, 0x50u);
    EXPECT_EQ(probeSilent(135).info->audioFormatTag, 0u);
}

TEST(MpegPs, ALongFileIsNotReadWhole) {
    Builder builder;
    builder.bytes(sample("mpegps_mpeg2_program_stream").build());
    for (std::uint64_t i = 0; i < 8000; ++i) {
        builder.bytes(ps::pack2(61 * 90'000 + i * 9000)).fill(2034, 0xFF);
    }
    const Outcome outcome = probeBytes(builder.view());
    EXPECT_EQ(outcome.info->durationSeconds, 60u + 799u);
    EXPECT_LE(outcome.bytesRead, 400u * 1024) << "of 16 MiB";
}

}  // namespace
}  // namespace probe_test
