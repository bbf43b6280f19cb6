// The values that single samples must give, worked out by hand.
#include <gtest/gtest.h>

#include "probe/read/four_cc.h"
#include "probe/read/read_window.h"
#include "probing.h"

namespace probe_test {
namespace {

using probe::MediaRecord;

struct Expected {
    std::uint32_t MediaRecord::*field;
    std::uint32_t value;
};
struct Case {
    const char* sample;
    std::vector<Expected> fields;
    const char* lines = "";  // the diagnostic lines, all of them
};

class Edge : public testing::TestWithParam<Case> {};

TEST_P(Edge, GivesItsFields) {
    const Case& one = GetParam();
    const Outcome outcome = probeBytes(sample(one.sample).build());
    for (std::size_t i = 0; i < one.fields.size(); ++i) {
        const MediaRecord& record = *outcome.info;
        EXPECT_EQ(record.*one.fields[i].field, one.fields[i].value) << "field number " << i;
    }
    EXPECT_EQ(outcome.lines, one.lines);
}

constexpr auto kType = &MediaRecord::containerType;
constexpr auto kSize = &MediaRecord::fileSize;
constexpr auto kSeconds = &MediaRecord::durationSeconds;
constexpr auto kTag = &MediaRecord::audioFormatTag;
constexpr auto kAudioRate = &MediaRecord::audioBitRate;
constexpr auto kHertz = &MediaRecord::audioSampleRate;
constexpr auto kChannels = &MediaRecord::audioChannels;
constexpr auto kCodec = &MediaRecord::videoFourCC;
constexpr auto kWidth = &MediaRecord::videoWidth;
constexpr auto kHeight = &MediaRecord::videoHeight;
constexpr auto kFrame = &MediaRecord::frameTimeMicroseconds;
constexpr auto kVideoRate = &MediaRecord::videoBitRate;
constexpr auto kAspectX = &MediaRecord::pixelAspectX;
constexpr auto kAspectY = &MediaRecord::pixelAspectY;
constexpr auto kImageWidth = &MediaRecord::imageWidth;
constexpr auto kImageHeight = &MediaRecord::imageHeight;
constexpr auto kDepth = &MediaRecord::imageBitsPerPixel;
using probe::fourCc;

INSTANTIATE_TEST_SUITE_P(
    Image, Edge,
    testing::Values(
        Case{"image_jpeg_baseline",
             {{kType, 0x1001}, {kSize, 128}, {kImageWidth, 64}, {kImageHeight, 48}, {kDepth, 24}}},
        Case{"image_jpeg_progressive_sof2", {{kImageWidth, 800}, {kImageHeight, 600}}},
        Case{"image_jpeg_lossless_sof3_12_bit_grey", {{kImageWidth, 200}, {kDepth, 12}}},
        Case{"image_jpeg_fixed_layout_fallback",
             {{kType, 0x1001}, {kImageWidth, 0x10}, {kImageHeight, 0x20}, {kDepth, 24}}},
        Case{"image_jpeg_comment_behind_soi_is_fallback",
             {{kType, 0x1001}, {kImageWidth, 0xFFFE}, {kImageHeight, 16}, {kDepth, 8 * 0x11}}},
        Case{"image_jpeg_only_sof9_is_refused", {{kType, 0}, {kSize, 128}}},
        Case{"image_png_of_64_bytes",
             {{kType, 0x1004}, {kImageWidth, 640}, {kImageHeight, 480}, {kDepth, 8}}},
        Case{"image_png_16_bit_depth_is_per_channel", {{kImageWidth, 70000}, {kDepth, 16}}},
        Case{"image_png_of_63_bytes_is_refused", {{kType, 0}, {kSize, 0}}},
        Case{"image_gif_packed_f7_is_8_bits",
             {{kType, 0x1002}, {kImageWidth, 320}, {kImageHeight, 240}, {kDepth, 8}}},
        Case{"image_gif_packed_80_is_1_bit", {{kDepth, 1}}},
        Case{"image_bmp_24_bits",
             {{kType, 0x1003}, {kImageWidth, 640}, {kImageHeight, 480}, {kDepth, 24}}},
        Case{"image_bmp_top_down_keeps_its_negative_height", {{kImageHeight, 0xFFFFFE20}}},
        Case{"image_unknown_bytes_keep_the_file_size", {{kType, 0}, {kSize, 200}}}));

INSTANTIATE_TEST_SUITE_P(
    Wave, Edge,
    testing::Values(Case{"wave_pcm_stereo",
                         {{kType, 6},
                          {kSize, 6000},
                          {kTag, 1},
                          {kAudioRate, 1411200},
                          {kHertz, 44100},
                          {kChannels, 2},
                          {kSeconds, 0}}},
                    Case{"wave_of_2047_bytes_is_refused", {{kType, 0}, {kSize, 2047}}},
                    Case{"wave_fmt_at_2023", {{kType, 6}, {kTag, 1}}},
                    Case{"wave_fmt_at_2024_is_refused", {{kType, 0}}},
                    // 0x20000001 * 8 is 8 in 32 bits: 4096 * 8 / 8 seconds.
                    Case{"wave_bit_rate_wraps_at_32_bits", {{kAudioRate, 8}, {kSeconds, 4096}}},
                    Case{"wave_without_bit_rate_has_no_duration", {{kAudioRate, 0}, {kSeconds, 0}}},
                    Case{"wave_of_mpeg_frames_stays_wave", {{kType, 6}, {kTag, 0x50}}}));

INSTANTIATE_TEST_SUITE_P(
    Avi, Edge,
    testing::Values(
        Case{"avi_mpeg4_with_idx1",
             {{kType, 1},
              {kSeconds, 0},
              {kTag, 0x55},
              {kAudioRate, 128000},
              {kHertz, 44100},
              {kChannels, 2},
              {kCodec, fourCc("XVID")},
              {kWidth, 320},
              {kHeight, 240},
              {kFrame, 40000},
              {kVideoRate, 5 * 64 * 8 / 200 * 1000},
              {kAspectX, 11},
              {kAspectY, 0}}},
        Case{"avi_nothing_behind_the_form", {{kType, 1}, {kSize, 256}, {kSeconds, 0}, {kFrame, 0}}},
        Case{"avi_without_any_index_has_no_duration",
             {{kType, 1}, {kSeconds, 0}, {kFrame, 0}, {kVideoRate, 0}, {kWidth, 320}}},
        Case{"avi_only_video_chunks_02dc_is_no_video", {{kType, 1}, {kFrame, 0}, {kAspectX, 0}}},
        Case{"avi_01db_counts_as_video", {{kFrame, 40000}, {kVideoRate, 64 * 8 / 40 * 1000}}},
        Case{"avi_second_vids_leaves_the_first", {{kCodec, fourCc("XVID")}, {kWidth, 320}}},
        Case{"avi_ninth_auds_is_parsed_for_nothing", {{kType, 1}, {kTag, 0x50}}},
        Case{"avi_unknown_stream_type_prints_and_goes_on",
             {{kWidth, 64}},
             "ERROR: fcc_type is not valid=69617673\n"},
        Case{"avi_not_strh_prints_and_goes_on",
             {{kWidth, 8}},
             "ERROR: not strh\nERROR: not strf=73747258\n"},
        Case{"avi_bisize_below_40_fails", {{kType, 0}}},
        Case{"avi_unknown_hdrl_child_ends_the_walk",
             {{kWidth, 64}, {kTag, 0}},
             "ERROR: neither avih nor LIST(strl)=6F646421\n"},
        Case{"avi_lists_info_and_unknown",
             {{kType, 1}, {kWidth, 320}},
             "ERROR: Unknown Chunk FourCC =77686174 \nERROR: Unknown Chunk ID =4C4F5354 \n"},
        Case{"avi_4096_zero_headers",
             {{kType, 1}, {kWidth, 320}},
             "ERROR: Unknown Chunk ID =78787878 \n"},
        Case{"avi_4097_zero_headers_fail", {{kType, 0}}},
        Case{"avi_idx1_with_absolute_offsets", {{kFrame, 40000}, {kAspectX, 11}}},
        Case{"avi_idx1_entry_cut_by_its_chunk_is_not_counted", {{kVideoRate, 64 * 8 / 40 * 1000}}},
        Case{"avi_idx1_entry_cut_by_the_file_counts_with_zeros",
             {{kVideoRate, 64 * 8 / 80 * 1000}}},
        Case{"avi_second_idx1_is_skipped", {{kVideoRate, 64 * 8 / 40 * 1000}}},
        Case{"avi_idx1_before_movi", {{kAspectX, 11}}},
        Case{"avi_idx1_without_hdrl", {{kType, 1}, {kCodec, 0}, {kFrame, 0}, {kAspectX, 11}}},
        // 3 * 0x60000000 is 0x20000000 in 32 bits, times 8 is 0 in 32 bits.
        Case{"avi_video_bytes_wrap_at_32_bits", {{kFrame, 40000}, {kVideoRate, 0}}},
        Case{"avi_first_chunk_too_large_fails", {{kType, 0}}},
        Case{"avi_first_chunk_just_not_too_large", {{kType, 1}, {kAspectX, 33}}},
        Case{"avi_codec_data_just_not_too_large", {{kType, 1}, {kWidth, 8}}},
        Case{"avi_idx1_first_entry_decides_the_base", {{kAspectX, 33}}},
        Case{"avi_first_chunk_behind_the_end", {{kType, 1}, {kAspectX, 0}}},
        Case{
            "avi_opendml",
            {{kFrame, 40000}, {kVideoRate, 2 * 64 * 8 / 80 * 1000}, {kAspectX, 11}, {kWidth, 640}}},
        Case{"avi_opendml_is_taken_before_idx1", {{kVideoRate, 2 * 64 * 8 / 80 * 1000}}},
        Case{"avi_opendml_index_of_another_stream_kind_holds_no_video",
             {{kFrame, 40000}, {kVideoRate, 0}, {kAspectX, 0}}},
        Case{"avi_opendml_longs_per_entry_2_only_warns",
             {{kVideoRate, 2 * 64 * 8 / 80 * 1000}},
             "AVIINDEX_CHUNK_VIDEO[0].wLongsPerEntry is 2\n"},
        Case{"avi_opendml_super_count_zero_skips_idx1", {{kType, 1}, {kFrame, 0}}},
        Case{"avi_opendml_standard_count_too_large_fails",
             {{kType, 0}},
             "ERROR: indx) video index alloc fail\n"},
        Case{"avi_opendml_audio_count_too_large_fails",
             {{kType, 0}},
             "ERROR: indx) audio index alloc fail\n"},
        Case{"avi_indx_of_a_second_video_marks_nothing", {{kFrame, 40000}}},
        Case{"avi_child_with_39_bytes_left_is_not_read", {{kType, 1}}},
        Case{"avi_child_with_40_bytes_left_is_read", {{kType, 0}}}));

INSTANTIATE_TEST_SUITE_P(
    AviAspect, Edge,
    testing::Values(Case{"avi_h264_aspect_12_11", {{kAspectX, 11}, {kAspectY, 0}}},
                    Case{"avi_h264_lower_case_code", {{kAspectX, 99}}},
                    Case{"avi_h264_other_code_is_searched_as_mpeg4", {{kAspectX, 0}}},
                    Case{"avi_h264_extended_sar", {{kAspectX, 3}}},
                    Case{"avi_h264_aspect_idc_14_gives_none", {{kAspectX, 0}}},
                    Case{"avi_h264_high_profile_with_scaling_lists", {{kAspectX, 11}}},
                    Case{"avi_h264_444_has_12_scaling_lists", {{kAspectX, 11}}},
                    Case{"avi_h264_interlaced_and_cropped", {{kAspectX, 33}}},
                    Case{"avi_h264_emulation_prevention_in_the_sar", {{kAspectX, 2}}},
                    Case{"avi_h264_set_in_the_last_9_bytes_is_not_found", {{kAspectX, 0}}},
                    Case{"avi_h264_first_set_alone_counts", {{kAspectX, 0}}},
                    Case{"avi_mpeg4_last_valid_aspect_wins", {{kAspectX, 33}}},
                    Case{"avi_mpeg4_extended_par", {{kAspectX, 9}}},
                    Case{"avi_mpeg4_layer_identifier", {{kAspectX, 11}}},
                    Case{"avi_mpeg4_start_code_across_a_window", {{kAspectX, 11}}},
                    Case{"avi_mpeg4_payload_of_7_bytes_is_not_searched", {{kAspectX, 0}}},
                    Case{"avi_no_video_list_is_searched_as_mpeg4", {{kCodec, 0}, {kAspectX, 11}}}));

INSTANTIATE_TEST_SUITE_P(
    Mp4, Edge,
    testing::Values(
        Case{"mp4_avc_and_aac",
             {{kType, 2},
              {kSeconds, 2},  // the audio's 2,310 ms
              {kTag, 255},
              {kAudioRate, 96000},
              {kHertz, 44100},
              {kChannels, 2},
              {kCodec, fourCc("AVC1")},
              {kWidth, 320},
              {kHeight, 240},
              {kFrame, 40000},
              {kVideoRate, 25000 * 8 / 1000 * 1000},
              {kAspectX, 12},
              {kAspectY, 11}}},
        Case{"mp4_moov_behind_mdat", {{kType, 2}, {kFrame, 40000}}},
        Case{"mp4_audio_only", {{kType, 2}, {kCodec, 0}, {kFrame, 0}, {kTag, 255}}},
        Case{"mp4_mp3_object_type_6b", {{kTag, 85}}}, Case{"mp4_mp3_object_type_69", {{kTag, 85}}},
        Case{"mp4_he_aac_reports_the_output_rate", {{kHertz, 44100}}},
        Case{"mp4_he_aac_by_sync_extension", {{kHertz, 44100}}},
        Case{"mp4_he_aac_index_13_is_all_ones", {{kHertz, 0xFFFFFFFF}}},
        Case{"mp4_he_aac_index_14_keeps_the_entry_rate", {{kHertz, 22050}}},
        Case{"mp4_he_aac_explicit_extension_rate", {{kHertz, 47250}}},
        Case{"mp4_aac_config_of_2_bytes_is_not_parsed", {{kHertz, 22050}}},
        Case{"mp4_aac_program_config_element", {{kHertz, 48000}}},
        Case{"mp4_only_co64_leaves_the_size_alone",
             {{kType, 0}, {kWidth, 0}},
             "[ERROR] MP4Demux SetSampleOffset-VIDEO\n"},
        Case{"mp4_both_tracks_fail_prints_the_audio_line",
             {{kType, 0}},
             "[ERROR] MP4Demux SetSampleOffset-AUDIO\n"},
        Case{"mp4_moov_of_1_gib_is_out_of_memory",
             {{kType, 0}},
             "[ERROR] MP4 Parse memory alloc fail\n"},
        Case{"mp4_moov_below_1_gib_cut_by_the_file_is_a_failed_read", {{kType, 0}, {kWidth, 0}}},
        Case{"mp4_fast_start_cut_in_a_moov_of_2_mib", {{kType, 0}, {kWidth, 0}}},
        Case{"mp4_mono_pcm_of_30_s", {{kType, 2}, {kSeconds, 30}, {kHertz, 44100}, {kChannels, 1}}},
        Case{"mp4_sound_of_more_samples_than_could_be_kept",
             {{kType, 0}},
             "[ERROR] MP4Demux SetSampleOffset-AUDIO\n"},
        Case{"mp4_sound_of_the_most_samples", {{kType, 2}, {kSeconds, 268435454 / 48000}}},
        Case{"mp4_stts_count_beyond_its_box_fails",
             {{kType, 0}},
             "[ERROR] MP4 Parse MEDIA memory alloc fail\n"},
        Case{"mp4_mp4s_in_a_sound_track_prints",
             {{kHertz, 16000}, {kChannels, 1}},
             "MPEG Sample Entry is not supported\n"},
        Case{"mp4_last_video_track_describes_it",
             {{kCodec, fourCc("MP4V")}, {kWidth, 64}, {kAspectX, 10}, {kAspectY, 11}}},
        // One slot, which is sound in the end: 99 * 1,024 + 512 ticks at 1,280 a second.
        Case{"mp4_trak_without_tkhd_goes_on_with_the_last_slot",
             {{kType, 2}, {kCodec, 0}, {kFrame, 0}, {kTag, 255}, {kSeconds, 79}}},
        Case{"mp4_third_word_behind_a_short_ftyp_is_not_looked_at", {{kType, 0}}},
        Case{"mp4_21st_track_is_passed_over", {{kType, 2}, {kCodec, 0}}},
        Case{"mp4_second_moov_adds_its_tracks", {{kCodec, fourCc("AVC1")}, {kTag, 255}}},
        Case{"mp4_child_of_size_0_ends_its_parent", {{kCodec, fourCc("AVC1")}, {kTag, 0}}},
        Case{"mp4_mdhd_of_version_1", {{kSeconds, 512}}},
        Case{"mp4_second_stts_replaces_the_first", {{kSeconds, 10}}},
        Case{"mp4_timescale_0_has_no_duration", {{kSeconds, 0}, {kFrame, 0}, {kVideoRate, 0}}},
        // 1/3 s, twice: 3,333,333 + 6,666,666 units of 100 ns are 999 ms.
        Case{"mp4_duration_truncates_per_entry",
             {{kSeconds, 0}, {kFrame, 333000}, {kVideoRate, 24 * 8 / 999 * 1000}}},
        Case{"mp4_audio_longer_than_video", {{kSeconds, 12}}},
        Case{"mp4_mp4v_extended_par", {{kAspectX, 3}, {kAspectY, 7}}},
        Case{"mp4_mp4v_info_of_6_bytes_is_searched", {{kAspectX, 12}, {kAspectY, 11}}},
        Case{"mp4_avc_extended_sar", {{kAspectX, 64}, {kAspectY, 45}}},
        Case{"mp4_avc_without_configuration", {{kWidth, 1920}, {kAspectX, 0}}},
        Case{"mp4_last_sample_entry_wins", {{kCodec, fourCc("MP4V")}, {kWidth, 11}}},
        Case{"mp4_last_mdat_cut_by_the_end", {{kType, 2}, {kFrame, 40000}}}));

TEST(Refusals, AJpegWhoseWalkFailsKeepsTheFailureCode) {
    const Outcome outcome = probeBytes(sample("image_jpeg_segment_past_end_is_refused").build());
    EXPECT_EQ(outcome.claimed, 0);
    EXPECT_EQ(outcome.info->status, probe::kFail);
}

TEST(Refusals, AFailedAviLeavesStatusOneAndTheSize) {
    const Bytes bytes = sample("avi_4097_zero_headers_fail").build();
    const Outcome outcome = probeBytes(bytes);
    EXPECT_EQ(outcome.claimed, 1);
    EXPECT_EQ(outcome.info->status, probe::kNotParsed);
    EXPECT_EQ(outcome.info->fileSize, bytes.size());
    EXPECT_EQ(outcome.info->videoWidth, 0u);
}

TEST(LargeFiles, KeepTheLowHalfOfTheirSize) {
    const Bytes bytes = sample("wave_pcm_stereo").build();
    TestFile file(bytes);
    file.claimedSize = (std::uint64_t{3} << 32) + 5;
    const Outcome outcome = probeFile(file);
    EXPECT_EQ(outcome.info->fileSize, 5u);
    EXPECT_EQ(outcome.info->fileSizeHigh, 0u);
    // The duration is counted over all of it.
    EXPECT_EQ(outcome.info->durationSeconds, ((std::uint64_t{3} << 32) + 5) * 8 / 1411200);
}

TEST(Reads, OfSmallFilesAreOne) {
    for (const char* name : {"mp4_avc_and_aac", "wave_pcm_stereo", "image_png_of_64_bytes",
                             "avi_mpeg4_with_idx1", "avi_opendml", "mp4_moov_behind_mdat"}) {
        const Bytes bytes = sample(name).build();
        const Outcome outcome = probeBytes(bytes);
        EXPECT_EQ(outcome.reads, 1u) << name;
        EXPECT_LE(outcome.bytesRead, probe::ReadWindow::kSmallest) << name;
    }
}

}  // namespace
}  // namespace probe_test
