// MPEG audio, FLAC and Monkey's Audio.
#include "build_audio.h"
#include "expectations.h"
#include "probe/codec/mpegaudio_header.h"

namespace probe_test {
namespace {

using R = probe::MediaRecord;

// By hand; the tables behind them are tested row by row (test_tables.cpp).
TEST(MpegAudio, LengthsOfFrames) {
    struct Case {
        audio::Frame frame;
        std::uint32_t bytes;
    };
    for (const Case& one : std::to_array<Case>({
             {{.version = 3, .layer = 1, .bitRate = 9}, 417},  // 128 kbit/s at 44,100 Hz
             {{.version = 3, .layer = 1, .bitRate = 14, .sampleRate = 2}, 1440},
             {{.version = 2, .layer = 1, .bitRate = 14, .mode = 3}, 522},
             {{.version = 0, .layer = 1, .bitRate = 1, .sampleRate = 2}, 72},
             {{.version = 3, .layer = 2, .bitRate = 14, .sampleRate = 1}, 1152},
             {{.version = 2, .layer = 2, .bitRate = 1, .sampleRate = 1}, 48},
             {{.version = 3, .layer = 3, .bitRate = 14, .padding = 1}, 488},
             {{.version = 2, .layer = 3, .bitRate = 14}, 556},
             {{.version = 0, .layer = 3, .bitRate = 5, .sampleRate = 0}, 348},
         })) {
        probe::MpegAudioHeader header;
        ASSERT_TRUE(probe::parseMpegAudioHeader(audio::frame(one.frame), header));
        EXPECT_EQ(header.frameBytes, one.bytes);
    }
}

TEST(MpegAudio, DescribesEveryLayerAndVersion) {
    expectFields(std::to_array<FieldCase>({
        {"mp3_constant_rate_behind_a_tag", &R::containerType, probe::kContainerMpegAudio},
        {"mp3_constant_rate_behind_a_tag", &R::audioFormatTag, 0x55},
        {"mp3_constant_rate_behind_a_tag", &R::audioBitRate, 128'000},
        {"mp3_constant_rate_behind_a_tag", &R::audioSampleRate, 44100},
        {"mp3_constant_rate_behind_a_tag", &R::audioChannels, 2},
        {"mp3_constant_rate_behind_a_tag", &R::durationSeconds, 200 * 417 * 8 / 128'000},
        {"mp3_without_a_tag_begins_at_0", &R::durationSeconds, 5},
        {"mp3_mono_mpeg2_layer_3", &R::audioChannels, 1},
        {"mp3_mono_mpeg2_layer_3", &R::audioSampleRate, 22050},
        {"mp3_mpeg25_layer_3", &R::audioSampleRate, 8000},
        {"mp2_layer_2_mpeg1", &R::audioFormatTag, 0x50},
        {"mp2_layer_2_mpeg1", &R::audioBitRate, 192'000},
        {"mp2_layer_2_mpeg1", &R::audioSampleRate, 48000},
        {"mp2_layer_2_mpeg2", &R::audioFormatTag, 0x50},
        {"mp1_layer_1_counts_slots_of_4_bytes", &R::audioFormatTag, 0x50},
        {"mp1_layer_1_counts_slots_of_4_bytes", &R::audioBitRate, 384'000},
    }));
}

TEST(MpegAudio, DurationAndRate) {
    expectFields(std::to_array<FieldCase>({
        // 10000 frames of 1152 samples at 44100 Hz: 261.2 s.
        {"mp3_xing_header_gives_duration_and_rate", &R::durationSeconds, 261},
        {"mp3_xing_header_gives_duration_and_rate", &R::audioBitRate, 153'125},
        {"mp3_xing_header_in_a_file_without_a_tag", &R::durationSeconds, 261},
        {"mp3_xing_header_without_a_byte_count", &R::durationSeconds, 0},
        {"mp3_xing_header_without_a_byte_count", &R::audioBitRate, 223'715},
        {"mp3_xing_header_without_a_frame_count", &R::audioBitRate, 128'000},
        {"mp3_xing_header_without_a_frame_count", &R::durationSeconds, 2},
        {"mp3_info_header_keeps_the_constant_rate", &R::audioBitRate, 128'000},
        {"mp3_info_header_keeps_the_constant_rate", &R::durationSeconds, 104},
        {"mp3_vbri_header_gives_duration_and_rate", &R::durationSeconds, 208},
        {"mp3_vbri_header_gives_duration_and_rate", &R::audioBitRate, 153'125},
        // 400 frames: 10.4 s at a mean of 223.7 kbit/s.
        {"mp3_variable_rate_without_a_header_is_measured", &R::durationSeconds, 10},
        {"mp3_variable_rate_without_a_header_is_measured", &R::audioBitRate, 223'715},
        // 96 frames: 2.50 s; with the tags it would be 3.5.
        {"mp3_tags_at_the_end_are_not_sound", &R::durationSeconds, 2},
    }));
}

TEST(MpegAudio, TheScanLooksAtTwoMebibytesAndTenBytes) {
    const auto behind = [](std::size_t zeros) {
        return probeBytes(Builder().fill(10 + zeros).bytes(audio::frames(6)).fill(100, 0x55).take())
            .claimed;
    };
    constexpr std::size_t kScan = 0x200000, kRun = 5 * 417 + 4;
    EXPECT_EQ(behind(kScan - kRun), 1) << "the sixth header ends with the buffer";
    EXPECT_EQ(behind(kScan - kRun + 1), 0);
    EXPECT_EQ(behind(kScan), 0);
}

TEST(MpegAudio, FewBytesAreRead) {
    const Bytes bytes = Builder().bytes(audio::id3v2(500)).bytes(audio::frames(20'000)).take();
    const Outcome outcome = probeBytes(bytes);
    EXPECT_EQ(outcome.info->durationSeconds, 521u);
    EXPECT_LE(outcome.reads, 2u);
    EXPECT_LE(outcome.bytesRead, 4096u + 160u);
}

TEST(MpegAudio, AFailedReadOfTheEndIsTheStatus) {
    const Bytes bytes = sample("mp3_constant_rate_behind_a_tag").build();
    TestFile whole(bytes);
    TestFile failing(bytes);
    failing.failAtRead = probeFile(whole).reads;
    const Outcome outcome = probeFile(failing);
    EXPECT_EQ(outcome.claimed, 1);
    EXPECT_EQ(outcome.info->status, probe::kFail);
    EXPECT_EQ(outcome.info->containerType, probe::kContainerMpegAudio);
    EXPECT_EQ(outcome.info->audioSampleRate, 44100u);
    EXPECT_EQ(outcome.info->durationSeconds, 0u);
}

TEST(Flac, DescribesTheStream) {
    expectFields(std::to_array<FieldCase>({
        {"flac_stream_information", &R::containerType, probe::kContainerFlac},
        {"flac_stream_information", &R::audioFormatTag, 0xF1AC},
        {"flac_stream_information", &R::durationSeconds, 65},
        {"flac_stream_information", &R::audioSampleRate, 44100},
        {"flac_stream_information", &R::audioChannels, 2},
        {"flac_behind_an_id3_tag", &R::audioSampleRate, 96000},
        {"flac_behind_an_id3_tag", &R::audioChannels, 1},
        {"flac_behind_an_id3_tag", &R::durationSeconds, 2},
        {"flac_behind_an_id3_tag", &R::audioBitRate, 8000},
        {"flac_metadata_is_not_counted_as_sound", &R::audioBitRate, 8000},
        {"flac_of_unknown_length", &R::audioBitRate, 0},
        {"flac_of_unknown_length", &R::audioSampleRate, 44100},
        {"flac_sample_rate_of_0", &R::audioChannels, 8},
        {"flac_sample_rate_of_0", &R::durationSeconds, 0},
        {"flac_length_beyond_32_bits_of_seconds", &R::durationSeconds, 0xFFFFFFFF},
    }));
    expectStatus(std::to_array<StatusCase>({
        {"flac_without_stream_information", 1, probe::kFail},
        {"flac_elsewhere_is_refused", 0, probe::kNotParsed},
    }));
}

TEST(Ape, DurationAndRate) {
    expectFields(std::to_array<FieldCase>({
        // 9 * 73728 + 1000 blocks at 44100 Hz: 15069 ms; 500 bytes in them.
        {"ape_new_header", &R::containerType, probe::kContainerMonkeysAudio},
        {"ape_new_header", &R::audioFormatTag, 0x4150},
        {"ape_new_header", &R::durationSeconds, 15},
        {"ape_new_header", &R::audioBitRate, 265},
        {"ape_new_header", &R::audioChannels, 2},
        {"ape_new_header", &R::audioSampleRate, 44100},
        {"ape_3970_has_294912_blocks_per_frame", &R::durationSeconds, 60},
        {"ape_3949_has_73728_blocks_per_frame", &R::durationSeconds, 15},
        {"ape_3899_has_9216_blocks_per_frame", &R::durationSeconds, 1},
        {"ape_3900_has_73728_blocks_per_frame", &R::durationSeconds, 15},
        {"ape_3950_has_294912_blocks_per_frame", &R::durationSeconds, 60},
        {"ape_3979_has_the_old_header", &R::durationSeconds, 60},
        {"ape_3979_has_the_old_header", &R::audioSampleRate, 44100},
        {"ape_3980_has_the_new_header", &R::durationSeconds, 15},
        {"ape_3980_has_the_new_header", &R::audioSampleRate, 44100},
        {"ape_length_beyond_32_bits_of_seconds", &R::durationSeconds, 0xFFFFFFFF},
        {"ape_3800_extra_high_has_73728_blocks_per_frame", &R::durationSeconds, 15},
        {"ape_3800_fast_has_9216_blocks_per_frame", &R::durationSeconds, 1},
        {"ape_3799_extra_high_has_9216_blocks_per_frame", &R::durationSeconds, 1},
        {"ape_without_frames_has_no_duration", &R::durationSeconds, 0},
        {"ape_without_frames_has_no_duration", &R::audioBitRate, 0},
        {"ape_sample_rate_of_0", &R::audioBitRate, 0},
        {"ape_of_less_than_a_millisecond", &R::audioBitRate, 0},
    }));
}

TEST(Ape, Tags) {
    expectTexts(std::to_array<TextCase>({
        {"ape_with_an_id3_version_1_tag", &R::title, u"Title"},
        {"ape_with_an_id3_version_1_tag", &R::artist, u"Artist"},
        {"ape_with_an_id3_version_1_tag", &R::album, u"Album"},
        {"ape_with_an_id3_version_1_tag", &R::year, u"1999"},
        {"ape_id3_genre_255_is_none", &R::title, u"A title of exactly 30 letters!"},
        {"ape_id3_tag_hides_the_ape_tag", &R::title, u"ID3"},
        {"ape_tag_with_five_items", &R::title, u"제목"},
        {"ape_tag_with_five_items", &R::artist, u"Artist"},
        {"ape_tag_with_five_items", &R::album, u"Album"},
        {"ape_tag_with_five_items", &R::genre, u"Genre"},
        {"ape_tag_with_five_items", &R::track, u"5"},
        {"ape_tag_with_five_items", &R::year, u""},
        {"ape_tag_of_version_1_is_in_the_units_code_page", &R::title, u"Plain"},
        {"ape_keys_in_another_letter_case_are_passed_over", &R::title, u""},
        {"ape_second_item_of_a_key_overwrites", &R::title, u"Second"},
        {"ape_value_beyond_the_tag_ends_the_walk", &R::album, u"Yes"},
        {"ape_value_beyond_the_tag_ends_the_walk", &R::title, u""},
        {"ape_tag_above_16_mib_is_not_read", &R::title, u""},
        {"ape_tag_smaller_than_its_footer_is_empty", &R::title, u""},
    }));
    expectFields(std::to_array<FieldCase>({
        {"ape_with_an_id3_version_1_tag", &R::hasGenre, 1},
        {"ape_id3_genre_255_is_none", &R::hasGenre, 0},
        {"ape_id3_genre_255_is_none", &R::hasArtist, 0},
    }));
    expectStatus(std::to_array<StatusCase>({
        {"ape_tag_of_16_mib_in_a_small_file", 1, probe::kFail},
        {"ape_tag_that_begins_before_the_file", 1, probe::kFail},
        {"ape_255_bytes_are_refused", 0, probe::kNotParsed},
    }));
    const auto genreOf = [](const char* name) {
        return probeBytes(sample(name).build()).info->genreIndex;
    };
    EXPECT_EQ(genreOf("ape_with_an_id3_version_1_tag"), 17);
    EXPECT_EQ(genreOf("ape_id3_genre_255_is_none"), -1);
    EXPECT_EQ(genreOf("ape_id3_tag_hides_the_ape_tag"), 0);
}

}  // namespace
}  // namespace probe_test
