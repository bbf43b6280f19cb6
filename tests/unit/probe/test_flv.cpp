// Flash Video: script data, first tags, last time stamp.
#include "build_flv.h"
#include "expectations.h"
#include "probe/flv/timestamp.h"

namespace probe_test {
namespace {

using R = probe::MediaRecord;

constexpr std::uint32_t kH264 = 0x48323634, kS263 = 0x53323633;

TEST(Flv, DescribesBothStreams) {
    const char* const name = "flv_video_and_audio_with_metadata";
    expectFields(std::to_array<FieldCase>({
        {name, &R::containerType, probe::kContainerFlv},
        {name, &R::durationSeconds, 12},
        {name, &R::videoFourCC, kH264},
        {name, &R::videoWidth, 640},
        {name, &R::videoHeight, 360},
        {name, &R::videoBitRate, 700'000},
        {name, &R::frameTimeMicroseconds, 40'000},
        {name, &R::audioFormatTag, 0xFF},
        {name, &R::audioSampleRate, 44100},
        {name, &R::audioChannels, 2},
        {name, &R::audioBitRate, 128'000},
    }));
}

TEST(Flv, TheHeaderFlagsSayWhatIsLookedFor) {
    expectFields(std::to_array<FieldCase>({
        {"flv_without_flags_has_no_streams", &R::videoFourCC, probe::kUnknownVideo},
        {"flv_without_flags_has_no_streams", &R::videoWidth, 0},
        {"flv_without_flags_has_no_streams", &R::durationSeconds, 7},
        {"flv_without_flags_has_no_streams", &R::audioSampleRate, 0},
        {"flv_audio_alone_has_an_unknown_video", &R::videoFourCC, probe::kUnknownVideo},
        {"flv_audio_alone_has_an_unknown_video", &R::durationSeconds, 9},
        {"flv_video_alone_has_no_audio_fields", &R::audioFormatTag, 0},
        {"flv_video_alone_has_no_audio_fields", &R::audioSampleRate, 0},
        {"flv_vp6_has_no_name", &R::videoFourCC, probe::kUnknownVideo},
        {"flv_9_bytes_without_streams", &R::containerType, probe::kContainerFlv},
        {"flv_9_bytes_without_streams", &R::durationSeconds, 0},
        {"flv_announced_video_never_comes", &R::containerType, 0},
        {"flv_header_size_leads_to_the_first_tag", &R::durationSeconds, 3},
    }));
    expectStatus(std::to_array<StatusCase>({
        {"flv_announced_video_never_comes", 1, probe::kNotParsed},
        {"flv_announced_audio_never_comes", 1, probe::kNotParsed},
        {"flv_header_size_beyond_the_file", 1, probe::kNotParsed},
        {"flv_script_cut_by_the_file", 1, probe::kNotParsed},
        {"flv_script_of_16_mib_in_a_small_file", 1, probe::kNotParsed},
        {"flv_8_bytes_are_refused", 0, probe::kNotParsed},
    }));
}

TEST(Flv, AudioFormats) {
    expectFields(std::to_array<FieldCase>({
        {"flv_audio_pcm_5500", &R::audioFormatTag, 1},
        {"flv_audio_pcm_5500", &R::audioSampleRate, 5500},
        {"flv_audio_pcm_5500", &R::audioChannels, 1},
        {"flv_audio_adpcm_11025_stereo", &R::audioFormatTag, 2},
        {"flv_audio_adpcm_11025_stereo", &R::audioSampleRate, 11025},
        {"flv_audio_adpcm_11025_stereo", &R::audioChannels, 2},
        {"flv_audio_mp3_22050", &R::audioFormatTag, 0x55},
        {"flv_audio_mp3_22050", &R::audioSampleRate, 22050},
        {"flv_audio_pcm_little_endian", &R::audioFormatTag, 1},
        {"flv_audio_speex_has_no_tag", &R::audioFormatTag, 0},
    }));
}

TEST(Flv, SorensonPictureSizes) {
    struct Case {
        const char* sample;
        std::uint32_t width, height;
    };
    for (const Case& one : std::to_array<Case>({
             {"flv_sorenson_code_0_has_8_bit_sizes", 200, 152},
             {"flv_sorenson_code_1_has_16_bit_sizes", 1000, 601},
             {"flv_sorenson_code_2_is_352_288", 352, 288},
             {"flv_sorenson_code_3_is_176_144", 176, 144},
             {"flv_sorenson_code_4_is_128_96", 128, 96},
             {"flv_sorenson_code_5_is_320_240", 320, 240},
             {"flv_sorenson_code_6_is_160_120", 160, 120},
             {"flv_sorenson_code_7_has_no_size", 0, 0},
             {"flv_sorenson_of_version_1_has_its_size", 352, 288},
             {"flv_sorenson_of_another_version_keeps_the_metadata", 1, 2},
             {"flv_sorenson_of_9_bytes_keeps_the_metadata", 1, 2},
             {"flv_metadata_behind_the_picture_counts", 11, 12},
         })) {
        const Outcome outcome = probeBytes(sample(one.sample).build());
        EXPECT_EQ(outcome.info->videoFourCC, kS263) << one.sample;
        EXPECT_EQ(outcome.info->videoWidth, one.width) << one.sample;
        EXPECT_EQ(outcome.info->videoHeight, one.height) << one.sample;
    }
}

TEST(Flv, ScriptData) {
    expectFields(std::to_array<FieldCase>({
        {"flv_key_of_13_bytes_sets_no_key", &R::videoWidth, 320},
        {"flv_key_of_13_bytes_sets_no_key", &R::videoHeight, 0},
        {"flv_key_of_13_bytes_sets_no_key", &R::videoBitRate, 500'000},
        {"flv_key_of_14_bytes_leaves_the_key", &R::videoWidth, 777},
        {"flv_nested_object_takes_the_pending_key", &R::videoWidth, 99},
        {"flv_nested_object_takes_the_pending_key", &R::videoHeight, 55},
        {"flv_keyframe_arrays_are_passed_over", &R::videoWidth, 480},
        {"flv_keyframe_arrays_are_passed_over", &R::videoHeight, 0},
        {"flv_count_of_entries_ends_the_array", &R::videoWidth, 480},
        {"flv_count_of_entries_ends_the_array", &R::videoHeight, 0},
        {"flv_every_simple_value_is_passed_over", &R::videoWidth, 480},
        {"flv_object_end_stops_the_array", &R::videoWidth, 0},
        {"flv_type_17_stops_behind_four_bytes", &R::videoWidth, 0},
        {"flv_unknown_type_stops", &R::videoWidth, 0},
        {"flv_long_string_leads_twice_its_length_on", &R::videoWidth, 480},
        {"flv_long_string_beyond_the_tag_stops", &R::videoHeight, 4},
        {"flv_number_cut_by_the_tag_is_not_stored", &R::videoHeight, 4},
        {"flv_number_cut_by_the_tag_is_not_stored", &R::videoWidth, 0},
        {"flv_first_value_that_stops_does_not_hide_the_second", &R::videoWidth, 480},
        {"flv_nesting_beyond_64_levels_stops", &R::videoHeight, 4},
        {"flv_nesting_beyond_64_levels_stops", &R::videoWidth, 0},
        {"flv_nesting_of_65_levels_ends_every_level", &R::videoWidth, 0},
        {"flv_nesting_of_64_levels_is_read", &R::videoWidth, 480},
        {"flv_reference_is_followed_by_its_bytes", &R::videoWidth, 480},
        {"flv_record_set_is_a_strict_array", &R::videoWidth, 7},
        {"flv_record_set_is_a_strict_array", &R::videoHeight, 55},
        {"flv_xml_document_leads_twice_its_length_on", &R::videoWidth, 480},
        {"flv_typed_object_is_read_as_an_object", &R::videoWidth, 99},
        {"flv_typed_object_is_read_as_an_object", &R::videoHeight, 55},
        {"flv_frame_rate_of_0_gives_no_frame_time", &R::frameTimeMicroseconds, 0},
        {"flv_numbers_that_fit_nowhere_are_clamped", &R::videoWidth, 0xFFFFFFFF},
        {"flv_numbers_that_fit_nowhere_are_clamped", &R::videoHeight, 0},
        {"flv_numbers_that_fit_nowhere_are_clamped", &R::videoBitRate, 0xFFFFFFFF},
        {"flv_numbers_that_fit_nowhere_are_clamped", &R::frameTimeMicroseconds, 0xFFFFFFFF},
        {"flv_empty_video_tag_has_no_codec", &R::videoFourCC, probe::kUnknownVideo},
    }));
}

TEST(Flv, LastTimeStamp) {
    expectFields(std::to_array<FieldCase>({
        {"flv_last_time_stamp_has_32_bits", &R::durationSeconds, 0x01020304 / 1000},
        {"flv_single_tag_has_no_duration", &R::durationSeconds, 0},
        {"flv_last_tag_of_70000_bytes_is_found", &R::durationSeconds, 8},
        {"flv_last_tag_across_a_block_border_is_found", &R::durationSeconds, 8},
        {"flv_tag_of_another_type_at_the_end_is_passed_over", &R::durationSeconds, 6},
        {"flv_stream_number_other_than_0_is_no_tag", &R::durationSeconds, 6},
    }));
}

TEST(Flv, LastTimeStampOfKeyFramesAlone) {
    const Bytes bytes =
        flv::File(flv::kVideo).video().video(2000, 1).video(4000, 2).audio(5000).end();
    TestFile file(bytes);
    probe::ReadWindow window(file);
    std::uint32_t milliseconds = 0;
    EXPECT_TRUE(probe::findLastFlvTimestamp(window, 9, bytes.size(), probe::FlvTags::KeyFrames,
                                            milliseconds));
    EXPECT_EQ(milliseconds, 2000u);
    EXPECT_TRUE(
        probe::findLastFlvTimestamp(window, 9, bytes.size(), probe::FlvTags::Any, milliseconds));
    EXPECT_EQ(milliseconds, 5000u);
}

TEST(Flv, AFailedReadEndsTheSearchForTheLastTimeStamp) {
    const Bytes bytes = flv::File(flv::kVideo).video().video(8000, 2, 70'000).end();
    TestFile whole(bytes);
    const std::uint64_t reads = probeFile(whole).reads;
    TestFile failing(bytes);
    failing.failAtRead = reads;
    const Outcome outcome = probeFile(failing);
    EXPECT_EQ(outcome.info->status, probe::kOk);
    EXPECT_EQ(outcome.info->durationSeconds, 0u);
}

TEST(Flv, PlacesThatEachCostAReadAreGivenUpOn) {
    // Every seventh byte reads as the end of a tag of 256 KiB, which begins somewhere else.
    Builder builder;
    builder.bytes(flv::File(0).cut()).fill(300'000);
    for (int i = 0; i < 40'000; ++i) {
        builder.bytes({0, 4, 0, 0, 8, 0, 0});
    }
    const Bytes bytes = builder.take();
    const Outcome outcome = probeBytes(bytes);
    EXPECT_EQ(outcome.info->status, probe::kOk);
    EXPECT_EQ(outcome.info->durationSeconds, 0u);
    const std::uint64_t lookups = (bytes.size() + (512 << 10)) / 512;
    EXPECT_GE(outcome.reads, lookups) << "the places are what it is about";
    EXPECT_LE(outcome.reads, lookups + 40);
}

TEST(Flv, AnHourNeedsFewBytes) {
    // Coded pictures look like noise: in it the MPEG audio scan, which comes first, soon meets a
    // frame header that no other follows.
    std::uint32_t random = 1;
    Bytes picture(2000);
    for (std::uint8_t& byte : picture) {
        random = random * 1664525 + 1013904223;
        byte = static_cast<std::uint8_t>(random >> 24);
    }
    picture[0] = 0x27;
    picture[1000] = 0xFF;
    picture[1001] = 0xFB;
    picture[1002] = 0x90;
    flv::File file(flv::kVideo | flv::kAudio);
    file.script(flv::ecmaArray({{"width", flv::number(640)}})).video().audio();
    for (std::uint32_t second = 1; second <= 3600; ++second) {
        file.tag(9, picture, second * 1000);
    }
    const Bytes bytes = file.end();
    TestFile counted(bytes);
    const Outcome outcome = probeFile(counted);
    EXPECT_EQ(outcome.info->durationSeconds, 3600u);
    EXPECT_LE(outcome.bytesRead, 8u * 1024);
    EXPECT_LE(outcome.reads, 2u);
}

}  // namespace
}  // namespace probe_test
