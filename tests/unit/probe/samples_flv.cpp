// Flash Video files: tags, script values of every type, Sorenson pictures, last time stamps.
#include "build_flv.h"

namespace probe_test {
namespace {

using namespace flv;

Bytes metadata() {
    return ecmaArray({{"duration", number(12.5)},
                      {"width", number(640)},
                      {"height", number(360)},
                      {"videodatarate", number(700.9)},
                      {"framerate", number(25)},
                      {"videocodecid", number(7)},
                      {"audiodatarate", number(128)},
                      {"encoder", text("recorder")}});
}

// A video tag of Sorenson H.263 with the size code and the size bits behind it.
Bytes sorenson(unsigned sizeCode, unsigned width, unsigned height, unsigned version = 0) {
    // Codec byte; start code 17 bits, version 5, temporal reference 8, size code 3, sizes.
    std::uint64_t bits = 1;
    unsigned count = 17;
    const auto put = [&](std::uint64_t value, unsigned bitCount) {
        bits = bits << bitCount | value;
        count += bitCount;
    };
    put(version, 5);
    put(0, 8);
    put(sizeCode, 3);
    const unsigned each = sizeCode == 0 ? 8 : 16;
    put(width, each);
    const std::uint64_t head = bits << (64 - count);
    // The height continues where the width ended.
    Builder builder;
    builder.u8(0x22);
    Bytes all;
    for (unsigned i = 0; i < 8; ++i) {
        all.push_back(static_cast<std::uint8_t>(head >> (56 - 8 * i)));
    }
    all.resize(16);
    for (unsigned i = 0; i < each; ++i) {
        if ((height >> (each - 1 - i) & 1) != 0) {
            all[(count + i) / 8] |= static_cast<std::uint8_t>(0x80 >> (count + i) % 8);
        }
    }
    return builder.bytes(all).take();
}

Bytes sorensonFile(unsigned sizeCode, unsigned width = 0, unsigned height = 0,
                   unsigned version = 0) {
    return File(kVideo)
        .script(ecmaArray({{"width", number(1)}, {"height", number(2)}}))
        .tag(9, sorenson(sizeCode, width, height, version))
        .tag(9, sorenson(sizeCode, width, height, version), 1040)
        .end();
}

Bytes scriptFile(const Bytes& value) {
    return File(kVideo).script(value).video().video(2000, 2).end();
}

const SampleSet kFlvSamples = {
    {"flv_video_and_audio_with_metadata", Kind::Good,
     [] {
         return File(kVideo | kAudio)
             .script(metadata())
             .video()
             .audio()
             .video(40, 2)
             .audio(23)
             .video(12'480, 2)
             .end();
     }},
    {"flv_without_flags_has_no_streams", Kind::Good,
     [] { return File(0).script(metadata()).video().video(7000).end(); }},
    {"flv_announced_video_never_comes", Kind::Claimed,
     [] { return File(kVideo | kAudio).script(metadata()).audio().audio(5000).end(); }},
    {"flv_announced_audio_never_comes", Kind::Claimed,
     [] { return File(kVideo | kAudio).video().video(5000).end(); }},
    {"flv_audio_alone_has_an_unknown_video", Kind::Good,
     [] { return File(kAudio).audio().audio(9999).end(); }},
    {"flv_video_alone_has_no_audio_fields", Kind::Good,
     [] { return File(kVideo).audio(0, 0x2F).video().video(3000).end(); }},
    {"flv_vp6_has_no_name", Kind::Good,
     [] {
         return File(kVideo).tag(9, {0x14, 0, 0}).tag(9, {0x24, 0}, 1500).end();
     }},
    {"flv_audio_pcm_5500", Kind::Good, [] { return File(kAudio).audio(0, 0x00).end(); }},
    {"flv_audio_adpcm_11025_stereo", Kind::Good, [] { return File(kAudio).audio(0, 0x17).end(); }},
    {"flv_audio_mp3_22050", Kind::Good, [] { return File(kAudio).audio(0, 0x2A).end(); }},
    {"flv_audio_pcm_little_endian", Kind::Good, [] { return File(kAudio).audio(0, 0x3F).end(); }},
    {"flv_audio_speex_has_no_tag", Kind::Good, [] { return File(kAudio).audio(0, 0xB2).end(); }},
    {"flv_sorenson_code_0_has_8_bit_sizes", Kind::Good, [] { return sorensonFile(0, 200, 152); }},
    {"flv_sorenson_code_1_has_16_bit_sizes", Kind::Good, [] { return sorensonFile(1, 1000, 601); }},
    {"flv_sorenson_code_2_is_352_288", Kind::Good, [] { return sorensonFile(2); }},
    {"flv_sorenson_code_3_is_176_144", Kind::Good, [] { return sorensonFile(3); }},
    {"flv_sorenson_code_4_is_128_96", Kind::Good, [] { return sorensonFile(4); }},
    {"flv_sorenson_code_5_is_320_240", Kind::Good, [] { return sorensonFile(5); }},
    {"flv_sorenson_code_6_is_160_120", Kind::Good, [] { return sorensonFile(6); }},
    {"flv_sorenson_code_7_has_no_size", Kind::Good, [] { return sorensonFile(7); }},
    {"flv_sorenson_of_version_1_has_its_size", Kind::Good, [] { return sorensonFile(2, 0, 0, 1); }},
    {"flv_sorenson_of_another_version_keeps_the_metadata", Kind::Good,
     [] { return sorensonFile(2, 0, 0, 2); }},
    {"flv_sorenson_of_9_bytes_keeps_the_metadata", Kind::Good,
     [] {
         Bytes data = sorenson(2, 0, 0);
         data.resize(9);
         return File(kVideo)
             .script(ecmaArray({{"width", number(1)}, {"height", number(2)}}))
             .tag(9, data)
             .end();
     }},
    {"flv_metadata_behind_the_picture_counts", Kind::Good,
     [] {
         return File(kVideo | kAudio)
             .tag(9, sorenson(2, 0, 0))
             .script(ecmaArray({{"width", number(11)}, {"height", number(12)}}))
             .audio()
             .end();
     }},
    {"flv_key_of_13_bytes_sets_no_key", Kind::Good,
     [] {
         return scriptFile(ecmaArray({{"width", number(320)},
                                      {"height", text("?")},
                                      {"thirteenbytes", number(5)},
                                      {"videodatarate", number(500)}}));
     }},
    {"flv_key_of_14_bytes_leaves_the_key", Kind::Good,
     [] {
         return scriptFile(ecmaArray({{"width", text("?")}, {"a-key-of-14-by", number(777)}}));
     }},
    {"flv_nested_object_takes_the_pending_key", Kind::Good,
     [] {
         return scriptFile(ecmaArray(
             {{"width", object({{"x", text("?")}, {"y", number(99)}})}, {"height", number(55)}}));
     }},
    {"flv_keyframe_arrays_are_passed_over", Kind::Good,
     [] {
         return scriptFile(ecmaArray(
             {{"keyframes",
               object({{"times", strictArray({number(0), number(1), number(2)})},
                       {"filepositions", strictArray({number(9), number(99), number(999)})}})},
              {"width", number(480)}}));
     }},
    {"flv_count_of_entries_ends_the_array", Kind::Good,
     [] {
         return scriptFile(ecmaArray({{"width", number(480)}, {"height", number(270)}}, 1));
     }},
    {"flv_every_simple_value_is_passed_over", Kind::Good,
     [] {
         return scriptFile(ecmaArray({{"a", {1, 1}},
                                      {"b", {5}},
                                      {"c", {6}},
                                      {"d", {13}},
                                      {"e", Builder().u8(11).be64(0).be16(0).take()},
                                      {"f", Builder().u8(4).be16(3).text("mov").take()},
                                      {"width", number(480)}}));
     }},
    {"flv_reference_is_followed_by_its_bytes", Kind::Good,
     [] {
         // The two bytes of the reference are read as the length of the next key: none.
         return scriptFile(Builder()
                               .u8(8)
                               .be32(3)
                               .bytes(key("a"))
                               .u8(7)
                               .be16(0)
                               .u8(5)
                               .bytes(key("width"))
                               .bytes(number(480))
                               .take());
     }},
    {"flv_record_set_is_a_strict_array", Kind::Good,
     [] {
         Bytes set = strictArray({number(7), number(8)});
         set[0] = 14;
         return scriptFile(ecmaArray({{"width", set}, {"height", number(55)}}));
     }},
    {"flv_xml_document_leads_twice_its_length_on", Kind::Good,
     [] {
         return scriptFile(ecmaArray(
             {{"a", Builder().u8(15).be32(4).fill(8, 'x').take()}, {"width", number(480)}}));
     }},
    {"flv_typed_object_is_read_as_an_object", Kind::Good,
     [] {
         // Its class name is taken for the first key.
         return scriptFile(ecmaArray(
             {{"width", Builder().u8(16).bytes(key("Size")).bytes(number(99)).be24(9).take()},
              {"height", number(55)}}));
     }},
    {"flv_object_end_stops_the_array", Kind::Good,
     [] {
         return scriptFile(ecmaArray({{"a", {9}}, {"width", number(480)}}));
     }},
    {"flv_type_17_stops_behind_four_bytes", Kind::Good,
     [] {
         return scriptFile(ecmaArray({{"a", {17, 1, 2, 3, 4}}, {"width", number(480)}}));
     }},
    {"flv_unknown_type_stops", Kind::Good,
     [] {
         return scriptFile(ecmaArray({{"a", {200}}, {"width", number(480)}}));
     }},
    {"flv_long_string_leads_twice_its_length_on", Kind::Good,
     [] {
         // Length 4: the cursor goes to 12 bytes behind the type byte.
         return scriptFile(ecmaArray(
             {{"a", Builder().u8(12).be32(4).fill(8, 'x').take()}, {"width", number(480)}}));
     }},
    {"flv_long_string_beyond_the_tag_stops", Kind::Good,
     [] {
         return scriptFile(
             ecmaArray({{"height", number(4)}, {"a", Builder().u8(12).be32(0xFFFFFFFF).take()}}));
     }},
    {"flv_number_cut_by_the_tag_is_not_stored", Kind::Good,
     [] {
         Bytes array = ecmaArray({{"height", number(4)}, {"width", number(480)}});
         array.resize(array.size() - 4);  // the end mark and one byte of the number
         return scriptFile(array);
     }},
    {"flv_first_value_that_stops_does_not_hide_the_second", Kind::Good,
     [] {
         return File(kVideo)
             .tag(18, Builder().u8(9).bytes(ecmaArray({{"width", number(480)}})).take())
             .video()
             .end();
     }},
    {"flv_nesting_beyond_64_levels_stops", Kind::Good,
     [] {
         Builder deep;
         for (int i = 0; i < 70; ++i) {
             deep.u8(10).be32(1);
         }
         return scriptFile(
             ecmaArray({{"height", number(4)}, {"a", deep.view()}, {"width", number(480)}}));
     }},
    {"flv_nesting_of_65_levels_ends_every_level", Kind::Good,
     [] {
         // Were the array around to go on, it would read a key and its number.
         Builder deep;
         for (int i = 0; i < 64; ++i) {
             deep.u8(10).be32(1);
         }
         deep.bytes(key("width")).bytes(number(480));
         return scriptFile(ecmaArray({{"a", deep.view()}}, 2));
     }},
    {"flv_nesting_of_64_levels_is_read", Kind::Good,
     [] {
         Builder deep;
         for (int i = 0; i < 63; ++i) {
             deep.u8(10).be32(1);
         }
         deep.u8(5);
         return scriptFile(ecmaArray({{"a", deep.view()}, {"width", number(480)}}));
     }},
    {"flv_numbers_that_fit_nowhere_are_clamped", Kind::Good,
     [] {
         return scriptFile(ecmaArray({{"width", number(1e300)},
                                      {"height", number(-5)},
                                      {"videodatarate", number(5e6)},
                                      {"framerate", number(1e-9)}}));
     }},
    {"flv_frame_rate_of_0_gives_no_frame_time", Kind::Good,
     [] {
         return scriptFile(ecmaArray({{"framerate", number(0)}}));
     }},
    {"flv_last_time_stamp_has_32_bits", Kind::Good,
     [] { return File(kVideo).video().video(0x01020304, 2).end(); }},
    {"flv_single_tag_has_no_duration", Kind::Good, [] { return File(kVideo).video(4000).end(); }},
    {"flv_last_tag_of_70000_bytes_is_found", Kind::Good,
     [] { return File(kVideo).video().video(8000, 2, 70'000).end(); }},
    {"flv_last_tag_across_a_block_border_is_found", Kind::Good,
     // The sixteen bytes that are looked at begin in the block before: 4096 from the end lie in
     // the middle of the last tag's header.
     [] { return File(kVideo).video().video(8000, 2, 4096 - 4 - 1 - 8).end(); }},
    {"flv_tag_of_another_type_at_the_end_is_passed_over", Kind::Good,
     [] { return File(kVideo).video().video(6000, 2).tag(15, Bytes(20, 1), 9000).end(); }},
    {"flv_stream_number_other_than_0_is_no_tag", Kind::Good,
     [] {
         File file(kVideo);
         file.video().video(6000, 2).video(9000, 2);
         Bytes bytes = file.end();
         bytes[bytes.size() - 4 - 41 - 1] = 1;
         return bytes;
     }},
    {"flv_header_size_leads_to_the_first_tag", Kind::Good,
     [] { return File(kVideo, 64).video().video(3000, 2).end(); }},
    {"flv_header_size_beyond_the_file", Kind::Claimed,
     [] { return Builder().text("FLV").u8(1).u8(kVideo).be32(0x80000000).fill(100).take(); }},
    {"flv_script_cut_by_the_file", Kind::Claimed,
     [] {
         Bytes bytes = File(kVideo).script(metadata()).cut();
         bytes.resize(bytes.size() - 1);
         return bytes;
     }},
    {"flv_script_of_16_mib_in_a_small_file", Kind::Claimed,
     [] { return File(kVideo).raw().be32(0).u8(18).be24(0xFFFFFF).fill(60).take(); }},
    {"flv_empty_video_tag_has_no_codec", Kind::Good,
     [] { return File(kVideo).tag(9, {}).video(1000).end(); }},
    {"flv_9_bytes_without_streams", Kind::Good, [] { return File(0).cut(); }},
    {"flv_8_bytes_are_refused", Kind::Refused,
     [] {
         Bytes bytes = File(0).cut();
         bytes.resize(8);
         return bytes;
     }},
};

}  // namespace
}  // namespace probe_test
