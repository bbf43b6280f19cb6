// MPEG audio, FLAC and Monkey's Audio files, with the tags before and behind them.
#include "build_audio.h"

namespace probe_test {
namespace {

using namespace audio;

// Frames behind a tag, so that the first one is found.
Bytes tagged(const Bytes& stream, std::size_t tagBytes = 64) {
    return Builder().bytes(id3v2(tagBytes)).bytes(stream).padTo(1200, 0x55).take();
}

Bytes variable(std::size_t pairs) {
    Builder builder;
    for (std::size_t i = 0; i < pairs; ++i) {
        builder.bytes(frame({.bitRate = 9, .bytes = 417}));
        builder.bytes(frame({.bitRate = 14, .bytes = 1044}));
    }
    return builder.take();
}

const SampleSet kMpegAudioSamples = {
    {"mp3_constant_rate_behind_a_tag", Kind::Good, [] { return tagged(frames(200)); }},
    {"mp3_without_a_tag_begins_at_0", Kind::Good, [] { return frames(200); }},
    {"mp3_mono_mpeg2_layer_3", Kind::Good,
     [] {
         return tagged(
             frames(100, {.version = 2, .bitRate = 8, .sampleRate = 0, .mode = 3, .bytes = 208}));
     }},
    {"mp3_mpeg25_layer_3", Kind::Good,
     [] {
         return tagged(frames(100, {.version = 0, .bitRate = 8, .sampleRate = 2, .bytes = 576}));
     }},
    {"mp2_layer_2_mpeg1", Kind::Good,
     [] {
         return tagged(frames(100, {.layer = 2, .bitRate = 10, .sampleRate = 1, .bytes = 576}));
     }},
    {"mp2_layer_2_mpeg2", Kind::Good,
     [] {
         return tagged(
             frames(100, {.version = 2, .layer = 2, .bitRate = 8, .sampleRate = 1, .bytes = 384}));
     }},
    {"mp1_layer_1_counts_slots_of_4_bytes", Kind::Good,
     [] {
         // 12 * 384000 / 44100 = 104 slots, and one of padding.
         return tagged(frames(100, {.layer = 3, .bitRate = 12, .padding = 1, .bytes = 420}));
     }},
    {"mp3_padded_frames", Kind::Good,
     [] { return tagged(frames(100, {.padding = 1, .bytes = 418})); }},
    {"mp3_xing_header_gives_duration_and_rate", Kind::Good,
     [] {
         return tagged(
             Builder().bytes(xingFrame("Xing", 10'000, 5'000'000)).bytes(variable(10)).take());
     }},
    {"mp3_xing_header_in_a_file_without_a_tag", Kind::Good,
     [] {
         return Builder().bytes(xingFrame("Xing", 10'000, 5'000'000)).bytes(variable(10)).take();
     }},
    {"mp3_xing_header_without_a_byte_count", Kind::Good,
     [] {
         return tagged(Builder().bytes(xingFrame("Xing", 20, 0, 1)).bytes(variable(10)).take());
     }},
    {"mp3_xing_header_without_a_frame_count", Kind::Good,
     [] { return tagged(Builder().bytes(xingFrame("Xing", 0, 0, 0)).bytes(frames(100)).take()); }},
    {"mp3_info_header_keeps_the_constant_rate", Kind::Good,
     [] {
         return tagged(
             Builder().bytes(xingFrame("Info", 4000, 1'668'000)).bytes(frames(100)).take());
     }},
    {"mp3_vbri_header_gives_duration_and_rate", Kind::Good,
     [] { return tagged(Builder().bytes(vbriFrame(8000, 4'000'000)).bytes(variable(10)).take()); }},
    {"mp3_variable_rate_without_a_header_is_measured", Kind::Good,
     [] { return tagged(variable(200)); }},
    {"mp3_tags_at_the_end_are_not_sound", Kind::Good,
     [] {
         return tagged(Builder()
                           .bytes(frames(96))
                           .bytes(apeTag({{"Picture", std::string(16'000, 'x')}}))
                           .bytes(id3v1("Title", "", "", "", 255))
                           .take());
     }},
    {"mp3_six_frames_are_enough", Kind::Good, [] { return tagged(frames(6)); }},
    {"mp3_five_frames_are_not", Kind::Refused, [] { return tagged(frames(5)); }},
    {"mp3_sixth_header_in_the_last_four_bytes_counts", Kind::Good,
     [] {
         Bytes bytes = Builder().bytes(id3v2(64)).bytes(frames(6)).take();
         bytes.resize(bytes.size() - 413);
         return bytes;
     }},
    {"mp3_sixth_header_cut_at_the_end_does_not", Kind::Refused,
     [] {
         Bytes bytes = Builder().bytes(id3v2(64)).bytes(frames(6)).take();
         bytes.resize(bytes.size() - 414);
         return bytes;
     }},
    {"mp3_another_layer_breaks_the_run", Kind::Refused,
     [] {
         return tagged(
             Builder().bytes(frames(3)).bytes(frames(10, {.layer = 2, .bytes = 417})).take());
     }},
    {"mp3_broken_run_is_not_begun_again", Kind::Refused,
     [] { return tagged(Builder().bytes(frame({})).fill(30).bytes(frames(50)).take()); }},
    {"mp3_false_header_in_the_tag_ends_the_scan", Kind::Refused,
     [] {
         Bytes bytes = tagged(frames(50));
         bytes[20] = 0xFF;
         bytes[21] = 0xFB;
         bytes[22] = 0x90;
         return bytes;
     }},
    {"mp3_header_of_the_reserved_layer_is_no_candidate", Kind::Good,
     [] {
         // A JPEG in the tag: FF D8, FF E0 (reserved layer), then FF with rate index 0.
         Bytes bytes = tagged(frames(50));
         const Bytes picture = {0xFF, 0xD8, 0xFF, 0xE0, 0x00, 0x10, 0xFF, 0xFB, 0x04, 0x00};
         std::copy(picture.begin(), picture.end(), bytes.begin() + 20);
         return bytes;
     }},
    {"mp3_free_format_is_no_candidate", Kind::Refused,
     [] { return tagged(frames(50, {.bitRate = 0, .bytes = 417})); }},
    {"mp3_forbidden_indexes_are_no_candidates", Kind::Good,
     [] {
         Bytes bytes = tagged(frames(50));
         const Bytes no = {0xFF, 0xFB, 0xF0, 0xFF, 0xFB, 0x9C, 0xFF, 0xEB, 0x90};
         std::copy(no.begin(), no.end(), bytes.begin() + 20);
         return bytes;
     }},
    {"mp3_tag_larger_than_the_file_is_declined", Kind::Refused,
     [] {
         Bytes bytes = Builder().bytes(id3v2(64)).bytes(frames(50)).take();
         bytes[6] = 0x7F;
         return bytes;
     }},
    {"mp3_tag_with_a_revision_is_not_measured", Kind::Good,
     [] {
         Bytes bytes = Builder().bytes(id3v2(64, 3, 0, 1)).bytes(frames(50)).take();
         bytes[6] = 0x7F;
         return bytes;
     }},
    {"mp3_footer_of_version_4_counts", Kind::Refused,
     [] {
         // 64 bytes of tag, 10 of footer and 1024 more must be there.
         Bytes bytes = Builder().bytes(id3v2(64, 4, 0x10)).bytes(frames(3)).take();
         bytes.resize(64 + 10 + 1024 - 1);
         return bytes;
     }},
    {"mp3_footer_flag_of_version_3_does_not", Kind::Good,
     [] {
         Bytes bytes = Builder()
                           .bytes(id3v2(1564, 3, 0x10))
                           .bytes(frames(50, {.bitRate = 1, .bytes = 104}))
                           .take();
         bytes.resize(1564 + 1024);
         return bytes;
     }},
    {"mp3_1023_bytes_are_refused", Kind::Refused,
     [] {
         Bytes bytes = frames(20, {.bitRate = 1, .bytes = 104});
         bytes.resize(1023);
         return bytes;
     }},
    {"mp3_1024_bytes_are_read", Kind::Good,
     [] {
         Bytes bytes = frames(20, {.bitRate = 1, .bytes = 104});
         bytes.resize(1024);
         return bytes;
     }},
};

const SampleSet kFlacSamples = {
    {"flac_stream_information", Kind::Good,
     [] { return Builder().bytes(flac(44100 * 65 + 44099)).fill(10'000, 0x33).take(); }},
    {"flac_behind_an_id3_tag", Kind::Good,
     [] {
         return Builder()
             .bytes(id3v2(300))
             .bytes(flac(96000 * 2, 96000, 1))
             .fill(2000, 0x33)
             .take();
     }},
    {"flac_metadata_is_not_counted_as_sound", Kind::Good,
     [] {
         return Builder()
             .bytes(flac(44100 * 8, 44100, 2, false))
             .u8(0x84)
             .be24(20'000)
             .fill(20'000)
             .fill(8000, 0x33)
             .take();
     }},
    {"flac_block_beyond_the_file_is_not_skipped", Kind::Good,
     [] {
         return Builder()
             .bytes(flac(44100, 44100, 2, false))
             .u8(0x04)
             .be24(0xFFFFFF)
             .fill(1000, 0x33)
             .take();
     }},
    {"flac_of_unknown_length", Kind::Good,
     [] { return Builder().bytes(flac(0)).fill(500, 0x33).take(); }},
    {"flac_sample_rate_of_0", Kind::Good,
     [] { return Builder().bytes(flac(1000, 0, 8)).fill(500, 0x33).take(); }},
    {"flac_of_36_bits_of_samples", Kind::Good,
     [] { return Builder().bytes(flac(0xFFFFFFFFF, 1)).fill(500, 0x33).take(); }},
    {"flac_length_beyond_32_bits_of_seconds", Kind::Good,
     [] { return Builder().bytes(flac(0x100000005, 1)).fill(500, 0x33).take(); }},
    {"flac_without_stream_information", Kind::Claimed,
     [] { return Builder().text("fLaC").u8(0x04).be24(40).fill(400).take(); }},
    {"flac_behind_a_cut_id3_tag_is_refused", Kind::Refused,
     [] {
         Bytes bytes = Builder().bytes(id3v2(300)).bytes(flac(44100)).fill(300).take();
         bytes.resize(310 + 255);
         return bytes;
     }},
    {"flac_elsewhere_is_refused", Kind::Refused,
     [] { return Builder().fill(16, 1).bytes(flac(44100)).fill(500, 0x33).take(); }},
    {"flac_255_bytes_are_refused", Kind::Refused,
     [] { return Builder().bytes(flac(44100)).padTo(255, 0x33).take(); }},
};

const SampleSet kApeSamples = {
    {"ape_new_header", Kind::Good, [] { return ape({}); }},
    {"ape_3970_has_294912_blocks_per_frame", Kind::Good, [] { return ape({.version = 3970}); }},
    {"ape_3949_has_73728_blocks_per_frame", Kind::Good, [] { return ape({.version = 3949}); }},
    {"ape_3800_extra_high_has_73728_blocks_per_frame", Kind::Good,
     [] { return ape({.version = 3800, .compression = 4000}); }},
    {"ape_3800_fast_has_9216_blocks_per_frame", Kind::Good,
     [] { return ape({.version = 3800, .compression = 1000}); }},
    {"ape_3799_extra_high_has_9216_blocks_per_frame", Kind::Good,
     [] { return ape({.version = 3799, .compression = 4000}); }},
    {"ape_3899_has_9216_blocks_per_frame", Kind::Good, [] { return ape({.version = 3899}); }},
    {"ape_3900_has_73728_blocks_per_frame", Kind::Good, [] { return ape({.version = 3900}); }},
    {"ape_3950_has_294912_blocks_per_frame", Kind::Good, [] { return ape({.version = 3950}); }},
    {"ape_3979_has_the_old_header", Kind::Good, [] { return ape({.version = 3979}); }},
    {"ape_3980_has_the_new_header", Kind::Good, [] { return ape({.version = 3980}); }},
    {"ape_length_beyond_32_bits_of_seconds", Kind::Good,
     [] {
         return ape({.sampleRate = 1,
                     .blocksPerFrame = 0x48000,
                     .finalFrameBlocks = 5,
                     .totalFrames = 0x8000});
     }},
    {"ape_without_frames_has_no_duration", Kind::Good, [] { return ape({.totalFrames = 0}); }},
    {"ape_sample_rate_of_0", Kind::Good, [] { return ape({.sampleRate = 0}); }},
    {"ape_of_less_than_a_millisecond", Kind::Good,
     [] { return ape({.finalFrameBlocks = 10, .totalFrames = 1}); }},
    {"ape_length_beyond_64_bits", Kind::Good,
     [] {
         return ape({.sampleRate = 1,
                     .blocksPerFrame = 0xFFFFFFFF,
                     .finalFrameBlocks = 0xFFFFFFFF,
                     .totalFrames = 0xFFFFFFFF});
     }},
    {"ape_with_an_id3_version_1_tag", Kind::Good,
     [] {
         return Builder()
             .bytes(ape({}))
             .bytes(id3v1("Title", "Artist", "Album", "1999", 17))
             .take();
     }},
    {"ape_id3_genre_255_is_none", Kind::Good,
     [] {
         return Builder()
             .bytes(ape({}))
             .bytes(id3v1("A title of exactly 30 letters!!", "", "", "2001", 255))
             .take();
     }},
    {"ape_id3_tag_hides_the_ape_tag", Kind::Good,
     [] {
         return Builder()
             .bytes(ape({}))
             .bytes(apeTag({{"Title", "APE"}}))
             .bytes(id3v1("ID3", "", "", "", 0))
             .take();
     }},
    {"ape_tag_with_five_items", Kind::Good,
     [] {
         return Builder()
             .bytes(ape({}))
             .bytes(apeTag({{"Title", "\xEC\xA0\x9C\xEB\xAA\xA9"},
                            {"Year", "2011"},
                            {"Cover Art (Front)", std::string_view("a\0b", 3)},
                            {"Artist", "Artist"},
                            {"Album", "Album"},
                            {"Genre", "Genre"},
                            {"Track", "5"}}))
             .take();
     }},
    {"ape_tag_of_version_1_is_in_the_units_code_page", Kind::Good,
     [] {
         return Builder().bytes(ape({})).bytes(apeTag({{"Title", "Plain"}}, 1000)).take();
     }},
    {"ape_keys_in_another_letter_case_are_passed_over", Kind::Good,
     [] {
         return Builder()
             .bytes(ape({}))
             .bytes(apeTag({{"TITLE", "No"}, {"title", "No"}, {"Titles", "No"}}))
             .take();
     }},
    {"ape_second_item_of_a_key_overwrites", Kind::Good,
     [] {
         return Builder()
             .bytes(ape({}))
             .bytes(apeTag({{"Title", "First"}, {"Title", "Second"}}))
             .take();
     }},
    {"ape_value_beyond_the_tag_ends_the_walk", Kind::Good,
     [] {
         Bytes bytes =
             Builder().bytes(ape({})).bytes(apeTag({{"Album", "Yes"}, {"Title", "No"}})).take();
         bytes[500 + 4 + 4 + 6 + 3 + 1] = 0x7F;  // the second value's size
         return bytes;
     }},
    {"ape_tag_above_16_mib_is_not_read", Kind::Good,
     [] {
         return Builder().bytes(ape({})).bytes(apeTag({{"Title", "No"}}, 2000, 0x1000001)).take();
     }},
    {"ape_tag_of_16_mib_in_a_small_file", Kind::Claimed,
     [] {
         return Builder().bytes(ape({})).bytes(apeTag({{"Title", "No"}}, 2000, 0x1000000)).take();
     }},
    {"ape_tag_that_begins_before_the_file", Kind::Claimed,
     [] {
         return Builder().bytes(ape({})).bytes(apeTag({{"Title", "No"}}, 2000, 5000)).take();
     }},
    {"ape_tag_smaller_than_its_footer_is_empty", Kind::Good,
     [] {
         return Builder().bytes(ape({})).bytes(apeTag({{"Title", "No"}}, 2000, 31)).take();
     }},
    {"ape_256_bytes_are_read", Kind::Good,
     [] {
         Bytes bytes = ape({});
         bytes.resize(256);
         return bytes;
     }},
    {"ape_255_bytes_are_refused", Kind::Refused,
     [] {
         Bytes bytes = ape({});
         bytes.resize(255);
         return bytes;
     }},
};

}  // namespace
}  // namespace probe_test
