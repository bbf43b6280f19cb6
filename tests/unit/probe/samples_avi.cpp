// AVI files: header lists, idx1 and OpenDML indexes, pixel aspects, damaged ones.
#include "build_riff.h"
#include "samples.h"

namespace probe_test {
namespace {

Bytes plainHeaders(std::string_view codec = "XVID") {
    return join({avih(40000), videoList(codec, 320, 240), audioList(0x55, 2, 44100, 16000)});
}
Bytes plainAvi() {
    return avi(plainHeaders(), volPayload(2), 5);
}

struct Odml {
    std::string_view codec = "XVID";
    std::string_view chunkId = "00dc";
    unsigned longsPerEntry = 4;
    std::uint32_t superCount = 0xFFFFFFFF;     // as declared
    std::uint32_t standardCount = 0xFFFFFFFF;  // as declared
    std::uint64_t baseAdd = 0;
    bool withIdx1 = false;
    std::uint32_t audioStandardCount = 0;  // of an audio stream with an index, 0 for none
};

// Two pictures with a standard index behind them. The layout is built twice: first to learn where
// everything lies.
Bytes odmlAvi(const Odml& o) {
    std::uint64_t indexAt = 0;
    std::uint64_t audioIndexAt = 0;
    Bytes file;
    for (int pass = 0; pass < 2; ++pass) {
        const Bytes video =
            videoList(o.codec, 640, 480,
                      join({superIndex(o.chunkId, {{indexAt, 48}}, o.longsPerEntry, o.superCount),
                            chunk("JUNK", Bytes(64))}));
        const Bytes audio = audioList(
            1, 2, 48000, 192000,
            o.audioStandardCount != 0
                ? join({superIndex("01wb", {{audioIndexAt, 32}}), chunk("JUNK", Bytes(64))})
                : Bytes());
        const Bytes headers = join({avih(40000, 2), video, audio});
        const std::uint32_t moviAt = moviTypeAt(headers);
        const Bytes picture = volPayload(3);
        const std::uint32_t data = static_cast<std::uint32_t>(4 + 8);  // of the first picture
        const std::uint32_t second = data + static_cast<std::uint32_t>(picture.size()) + 8;
        const Bytes pictures = join({chunk("00dc", picture), chunk("00dc", picture)});
        const std::uint32_t size = static_cast<std::uint32_t>(picture.size());
        const Bytes index =
            standardIndex(o.chunkId, moviAt + o.baseAdd,
                          {{data, size}, {second, size | 0x80000000u}}, o.standardCount);
        indexAt = moviAt + 4 + pictures.size();
        audioIndexAt = indexAt + index.size();
        const Bytes audioIndex = standardIndex("01wb", 0, {}, o.audioStandardCount);
        const Bytes idx1 =
            o.withIdx1 ? chunk("idx1", join({idx1Entry("00dc", 4, 10), idx1Entry("00dc", 4, 10),
                                             idx1Entry("00dc", 4, 10)}))
                       : Bytes();
        file = aviWithIndex(headers, join({pictures, index, audioIndex}), idx1);
    }
    return file;
}

Bytes zeroHeaders(unsigned count) {
    Bytes zeros(std::size_t{9} * count, 0);
    return riff("AVI ", join({list("hdrl", plainHeaders()), zeros, Bytes(9, 'x')}));
}

Bytes nineAudioStreams() {
    Bytes headers = avih(40000);
    for (unsigned i = 0; i < 9; ++i) {
        headers = join({headers, audioList(static_cast<std::uint16_t>(0x50 + i), 1, 8000, 1000)});
    }
    return avi(headers, {}, 0);
}

const SampleSet kPlain = {
    {"avi_mpeg4_with_idx1", Kind::Good, plainAvi},
    {"avi_nothing_behind_the_form", Kind::Good,
     [] {
         return Builder()
             .text("RIFF")
             .le32(248)
             .text("AVI ")
             .text("JUNK")
             .le32(236)
             .padTo(256)
             .take();
     }},
    {"avi_of_255_bytes_is_refused", Kind::Refused,
     [] { return Builder().text("RIFF").le32(247).text("AVI ").padTo(255).take(); }},
    {"avi_of_256_zero_bytes", Kind::Good,
     [] { return Builder().text("RIFF").le32(248).text("AVI ").padTo(256).take(); }},
    {"avi_without_any_index_has_no_duration", Kind::Good,
     [] { return aviWithIndex(plainHeaders(), chunk("00dc", volPayload(2)), {}); }},
    {"avi_only_video_chunks_02dc_is_no_video", Kind::Good,
     [] {
         return aviWithIndex(plainHeaders(), chunk("02dc", volPayload(2)),
                             chunk("idx1", idx1Entry("02dc", 4, 64)));
     }},
    {"avi_01db_counts_as_video", Kind::Good,
     [] {
         return aviWithIndex(
             plainHeaders(), chunk("01db", volPayload(2)),
             chunk("idx1", join({idx1Entry("01db", 4, 64), idx1Entry("00DC", 4, 64)})));
     }},
    {"avi_second_vids_leaves_the_first", Kind::Good,
     [] {
         return avi(
             join({avih(40000, 2), videoList("XVID", 320, 240), videoList("H264", 1920, 1080)}),
             volPayload(4), 2);
     }},
    {"avi_second_vids_with_a_short_format_fails", Kind::Claimed,
     [] {
         return avi(join({avih(40000, 2), videoList("XVID", 320, 240),
                          list("strl", join({strh("vids"), chunk("strf", Bytes(36))}))}),
                    volPayload(4), 2);
     }},
    {"avi_ninth_auds_is_parsed_for_nothing", Kind::Good, nineAudioStreams},
    {"avi_audio_before_video", Kind::Good,
     [] {
         return avi(
             join({avih(33367), audioList(0xFF, 6, 48000, 40000), videoList("DX50", 720, 576)}),
             volPayload(5), 7);
     }},
    {"avi_top_down_height_is_kept", Kind::Good,
     [] {
         return avi(join({avih(40000), videoList("DIB ", 16, 0xFFFFFFF0)}), Bytes(64, 9), 1);
     }},
    {"avi_mids_and_txts_are_skipped", Kind::Good,
     [] {
         return avi(join({avih(40000), list("strl", strh("mids")), list("strl", strh("txts")),
                          videoList("XVID", 64, 48)}),
                    volPayload(1), 1);
     }},
    {"avi_unknown_stream_type_prints_and_goes_on", Kind::Good,
     [] {
         return avi(join({avih(40000), list("strl", strh("iavs")), videoList("XVID", 64, 48)}),
                    volPayload(1), 1);
     }},
    {"avi_not_strh_prints_and_goes_on", Kind::Good,
     [] {
         Bytes strange = strh("vids");
         strange[3] = 'X';
         return avi(
             join({avih(40000),
                   list("strl", join({strange, chunk("strX", bitmapFormat("XVID", 8, 6))}))}),
             volPayload(1), 1);
     }},
    {"avi_bisize_below_40_fails", Kind::Claimed,
     [] {
         return avi(join({avih(40000),
                          list("strl", join({strh("vids"),
                                             chunk("strf", bitmapFormat("XVID", 8, 6, 39))}))}),
                    volPayload(1), 1);
     }},
    {"avi_codec_data_too_large_fails", Kind::Claimed,
     [] {
         return avi(
             join({avih(40000),
                   list("strl", join({strh("vids"),
                                      chunk("strf", bitmapFormat("XVID", 8, 6, 0x40000028))}))}),
             volPayload(1), 1);
     }},
    {"avi_audio_format_of_15_bytes_fails", Kind::Claimed,
     [] {
         return avi(
             join({avih(40000), list("strl", join({strh("auds"), chunk("strf", Bytes(15))}))}),
             volPayload(1), 1);
     }},
    {"avi_strn_strd_and_vprp_are_skipped", Kind::Good,
     [] {
         return avi(
             join({avih(40000),
                   videoList("XVID", 64, 48,
                             join({chunk("strn", Bytes(30, 'n')), chunk("strd", Bytes(20, 'd')),
                                   chunk("vprp", Bytes(68, 1)), chunk("JUNK", Bytes(64))}))}),
             volPayload(1), 1);
     }},
    {"avi_unknown_hdrl_child_ends_the_walk", Kind::Good,
     [] {
         return avi(join({avih(40000), videoList("XVID", 64, 48), chunk("odd!", Bytes(8)),
                          audioList(1, 2, 8000, 16000)}),
                    volPayload(1), 1);
     }},
    {"avi_zero_words_in_hdrl_are_passed_over", Kind::Good,
     [] {
         return avi(join({avih(40000), Bytes(12), videoList("XVID", 64, 48),
                          chunk("JUNK", Bytes(5)), list("odml", Bytes(40))}),
                    volPayload(1), 1);
     }},
    {"avi_hdrl_of_12_bytes_parses_nothing", Kind::Good,
     [] { return avi(Bytes(8), volPayload(1), 4); }},
    {"avi_hdrl_larger_than_the_file", Kind::Claimed,
     [] {
         Bytes bytes = plainAvi();
         bytes[16] = 0;
         bytes[17] = 0;
         bytes[18] = 0;
         bytes[19] = 0x40;
         return bytes;
     }},
    {"avi_hdrl_runs_over_the_end", Kind::Good,
     [] {
         Bytes bytes = plainAvi();
         bytes[18] = 0x02;
         return bytes;
     }},
    {"avi_lists_info_and_unknown", Kind::Good,
     [] {
         return riff("AVI ",
                     join({list("INFO", chunk("ISFT", Bytes(6, 'a'))), list("what", Bytes(10)),
                           chunk("LOST", Bytes(3)), list("hdrl", plainHeaders())}));
     }},
    {"avi_junk_and_riff_of_size_0", Kind::Good,
     [] {
         return riff("AVI ", join({chunk("JUNK", {}), Builder().text("RIFF").le32(0).take(),
                                   list("hdrl", plainHeaders()), chunk("JUNK", Bytes(99))}));
     }},
    {"avi_4096_zero_headers", Kind::Good, [] { return zeroHeaders(4096); }},
    {"avi_4097_zero_headers_fail", Kind::Claimed, [] { return zeroHeaders(4097); }},
    {"avi_odd_chunk_without_padding_resynchronises", Kind::Good,
     [] {
         return riff("AVI ", join({chunk("JUNK", Bytes(3)), list("hdrl", plainHeaders())}));
     }},
    {"avi_second_hdrl_replaces_the_first", Kind::Good,
     [] {
         return riff("AVI ", join({list("hdrl", plainHeaders()),
                                   list("hdrl", join({avih(20000), videoList("MJPG", 10, 20)}))}));
     }},
};

const SampleSet kIndexes = {
    {"avi_idx1_with_absolute_offsets", Kind::Good,
     [] {
         const Bytes headers = plainHeaders();
         const std::uint32_t at = moviTypeAt(headers) + 4;
         return aviWithIndex(headers, chunk("00dc", volPayload(3)),
                             chunk("idx1", idx1Entry("00dc", at, 64)));
     }},
    {"avi_idx1_first_entry_decides_the_base", Kind::Good,
     [] {
         // The audio entry lies above the movi list, so the video offset counts from the start of
         // the file, where "AVI " is read as the size of a picture that takes in the second one.
         const Bytes headers = plainHeaders();
         return aviWithIndex(
             headers, join({chunk("00dc", volPayload(3)), chunk("00dc", volPayload(5))}),
             chunk("idx1", join({idx1Entry("01wb", 0x7000, 64), idx1Entry("00dc", 4, 64)})));
     }},
    {"avi_idx1_entry_cut_by_its_chunk_is_not_counted", Kind::Good,
     [] {
         const Bytes entries = join({idx1Entry("00dc", 4, 64), idx1Entry("00dc", 4, 64)});
         return aviWithIndex(plainHeaders(), chunk("00dc", volPayload(3)),
                             chunk("idx1", Bytes(entries.begin(), entries.end() - 1)));
     }},
    {"avi_idx1_entry_cut_by_the_file_counts_with_zeros", Kind::Good,
     [] {
         Bytes bytes = aviWithIndex(
             plainHeaders(), chunk("00dc", volPayload(3)),
             chunk("idx1", join({idx1Entry("00dc", 4, 64), idx1Entry("00dc", 4, 64)})));
         return withoutLast(bytes, 4);
     }},
    {"avi_idx1_declares_4_gib", Kind::Good,
     [] {
         Bytes bytes = plainAvi();
         const std::size_t at = bytes.size() - 5 * 16 - 4;
         for (std::size_t i = 0; i < 4; ++i) {
             bytes[at + i] = 0xFF;
         }
         return bytes;
     }},
    {"avi_second_idx1_is_skipped", Kind::Good,
     [] {
         return aviWithIndex(
             plainHeaders(), chunk("00dc", volPayload(3)),
             join({chunk("idx1", idx1Entry("00dc", 4, 64)),
                   chunk("idx1", join({idx1Entry("00dc", 4, 64), idx1Entry("00dc", 4, 64)}))}));
     }},
    {"avi_idx1_before_movi", Kind::Good,
     [] {
         const Bytes headers = plainHeaders();
         const Bytes hdrl = list("hdrl", headers);
         const std::uint32_t at = static_cast<std::uint32_t>(12 + hdrl.size() + 24 + 12);
         return riff("AVI ", join({hdrl, chunk("idx1", idx1Entry("00dc", at, 64)),
                                   list("movi", chunk("00dc", volPayload(4)))}));
     }},
    {"avi_idx1_without_hdrl", Kind::Good,
     [] {
         return riff("AVI ",
                     join({list("movi", chunk("00dc", volPayload(4))),
                           chunk("idx1", idx1Entry("00dc", 4, 64)), chunk("JUNK", Bytes(160))}));
     }},
    {"avi_idx1_of_one_block_and_more", Kind::Good,
     [] { return avi(plainHeaders(), volPayload(2, 0, 0, 16), 5000); }},
    {"avi_video_bytes_wrap_at_32_bits", Kind::Good,
     [] {
         Bytes entries;
         for (int i = 0; i < 3; ++i) {
             entries = join({entries, idx1Entry("00dc", 4, 0x60000000)});
         }
         return aviWithIndex(plainHeaders(), chunk("00dc", volPayload(3)), chunk("idx1", entries));
     }},
    {"avi_first_chunk_too_large_fails", Kind::Claimed,
     [] {
         Builder b;
         b.text("00dc").le32(0x40000000).bytes(volPayload(2));
         return aviWithIndex(plainHeaders(), b.take(), chunk("idx1", idx1Entry("00dc", 4, 64)));
     }},
    {"avi_first_chunk_just_not_too_large", Kind::Good,
     [] {
         Builder b;
         b.text("00dc").le32(0x3FFFFFFF).bytes(volPayload(5));
         return aviWithIndex(plainHeaders(), b.take(), chunk("idx1", idx1Entry("00dc", 4, 64)));
     }},
    {"avi_codec_data_just_not_too_large", Kind::Good,
     [] {
         return avi(
             join({avih(40000),
                   list("strl", join({strh("vids"),
                                      chunk("strf", bitmapFormat("XVID", 8, 6, 0x40000027))}))}),
             volPayload(1), 1);
     }},
    {"avi_first_chunk_runs_over_the_end", Kind::Good,
     [] {
         Builder b;
         b.text("00dc").le32(0x80000).bytes(volPayload(2));
         return aviWithIndex(plainHeaders(), b.take(), chunk("idx1", idx1Entry("00dc", 4, 64)));
     }},
    {"avi_first_chunk_behind_the_end", Kind::Good,
     [] {
         return aviWithIndex(plainHeaders(), chunk("00dc", volPayload(2)),
                             chunk("idx1", idx1Entry("00dc", 0x10000000, 64)));
     }},
    {"avi_first_chunk_at_an_impossible_position_fails", Kind::Claimed,
     [] {
         return aviWithIndex(plainHeaders(), chunk("00dc", volPayload(2)),
                             chunk("idx1", idx1Entry("00dc", 0xFFFFFFFF, 64)));
     }},
    {"avi_opendml", Kind::Good, [] { return odmlAvi({}); }},
    {"avi_opendml_00db", Kind::Good, [] { return odmlAvi({.chunkId = "00db"}); }},
    {"avi_opendml_index_of_another_stream_kind_holds_no_video", Kind::Good,
     [] { return odmlAvi({.chunkId = "00wb"}); }},
    {"avi_opendml_is_taken_before_idx1", Kind::Good, [] { return odmlAvi({.withIdx1 = true}); }},
    {"avi_opendml_longs_per_entry_2_only_warns", Kind::Good,
     [] { return odmlAvi({.longsPerEntry = 2}); }},
    {"avi_opendml_standard_count_zero", Kind::Good,
     [] { return odmlAvi({.standardCount = 0, .withIdx1 = true}); }},
    {"avi_opendml_super_count_zero_skips_idx1", Kind::Good,
     [] { return odmlAvi({.superCount = 0, .withIdx1 = true}); }},
    {"avi_opendml_super_count_too_large_reads_no_entry", Kind::Good,
     [] { return odmlAvi({.superCount = 0xFFFFFFF0}); }},
    {"avi_opendml_standard_count_too_large_fails", Kind::Claimed,
     [] { return odmlAvi({.standardCount = 0x7FFFFFF0}); }},
    {"avi_opendml_standard_count_over_the_end", Kind::Good,
     [] { return odmlAvi({.standardCount = 100000}); }},
    {"avi_opendml_audio_count_too_large_fails", Kind::Claimed,
     [] { return odmlAvi({.audioStandardCount = 0x7FFFFFF0}); }},
    {"avi_opendml_base_offset_uses_its_low_half", Kind::Good,
     [] { return odmlAvi({.baseAdd = std::uint64_t{5} << 32}); }},
    {"avi_indx_of_39_bytes_fails", Kind::Claimed,
     [] {
         return avi(join({avih(40000),
                          videoList("XVID", 64, 48, join({chunk("indx", Bytes(39)), Bytes(64)}))}),
                    volPayload(1), 1);
     }},
    {"avi_indx_of_a_second_video_marks_nothing", Kind::Good,
     [] {
         return avi(
             join({avih(40000), videoList("XVID", 64, 48),
                   videoList("XVID", 64, 48,
                             join({superIndex("00dc", {{0, 0}}), chunk("JUNK", Bytes(64))}))}),
             volPayload(1), 3);
     }},
    {"avi_child_with_39_bytes_left_is_not_read", Kind::Good,
     [] {
         return avi(join({avih(40000), videoList("XVID", 64, 48, chunk("indx", Bytes(31)))}),
                    volPayload(1), 3);
     }},
    {"avi_child_with_40_bytes_left_is_read", Kind::Claimed,
     [] {
         return avi(join({avih(40000), videoList("XVID", 64, 48, chunk("indx", Bytes(32)))}),
                    volPayload(1), 3);
     }},
};

Bytes h264Avi(std::string_view codec, const SpsOptions& options) {
    return avi(join({avih(40000), videoList(codec, 320, 240)}), h264Payload(sps(options)), 2);
}

const SampleSet kAspects = {
    {"avi_h264_aspect_12_11", Kind::Good, [] { return h264Avi("H264", {}); }},
    {"avi_h264_lower_case_code", Kind::Good, [] { return h264Avi("h264", {.aspectIdc = 13}); }},
    {"avi_h264_other_code_is_searched_as_mpeg4", Kind::Good, [] { return h264Avi("avc1", {}); }},
    {"avi_h264_extended_sar", Kind::Good,
     [] { return h264Avi("H264", {.aspectIdc = 255, .sarWidth = 4, .sarHeight = 3}); }},
    {"avi_h264_aspect_idc_14_gives_none", Kind::Good,
     [] { return h264Avi("H264", {.aspectIdc = 14}); }},
    {"avi_h264_without_vui", Kind::Good, [] { return h264Avi("H264", {.vui = false}); }},
    {"avi_h264_without_aspect_information", Kind::Good,
     [] { return h264Avi("H264", {.aspectIdc = -1}); }},
    {"avi_h264_high_profile_with_scaling_lists", Kind::Good,
     [] { return h264Avi("H264", {.profile = 100, .scalingMatrix = true, .aspectIdc = 3}); }},
    {"avi_h264_444_has_12_scaling_lists", Kind::Good,
     [] {
         return h264Avi("H264", {.profile = 244,
                                 .chromaFormat = 3,
                                 .scalingMatrix = true,
                                 .pictureOrderType = 0,
                                 .aspectIdc = 4});
     }},
    {"avi_h264_interlaced_and_cropped", Kind::Good,
     [] {
         return h264Avi(
             "H264", {.pictureOrderType = 1, .interlaced = true, .cropping = true, .aspectIdc = 5});
     }},
    {"avi_h264_emulation_prevention_in_the_sar", Kind::Good,
     [] { return h264Avi("H264", {.aspectIdc = 255, .sarWidth = 1, .sarHeight = 2}); }},
    {"avi_h264_set_in_the_last_9_bytes_is_not_found", Kind::Good,
     [] {
         const Bytes set = sps({});
         return avi(join({avih(40000), videoList("H264", 320, 240)}),
                    join({Bytes(60, 0x33), {0, 0, 1}, Bytes(set.begin(), set.begin() + 5)}), 2);
     }},
    {"avi_h264_first_set_alone_counts", Kind::Good,
     [] {
         return avi(join({avih(40000), videoList("H264", 320, 240)}),
                    join({{0, 0, 1}, sps({.vui = false}), {0, 0, 1}, sps({}), Bytes(30, 7)}), 2);
     }},
    {"avi_mpeg4_last_valid_aspect_wins", Kind::Good,
     [] {
         return avi(plainHeaders(), join({volPayload(2), volPayload(5), volPayload(9)}), 1);
     }},
    {"avi_mpeg4_extended_par", Kind::Good,
     [] { return avi(plainHeaders(), volPayload(15, 8, 9), 1); }},
    {"avi_mpeg4_layer_identifier", Kind::Good,
     [] { return avi(plainHeaders(), volPayload(4, 0, 0, 64, true), 1); }},
    {"avi_mpeg4_start_code_across_a_window", Kind::Good,
     [] {
         return avi(plainHeaders(), join({Bytes(4050, 0x44), volPayload(3, 0, 0, 70000)}), 1);
     }},
    {"avi_mpeg4_payload_of_7_bytes_is_not_searched", Kind::Good,
     [] {
         return avi(plainHeaders(), Bytes{0, 0, 1, 0x20, 0x00, 0x84, 0x80}, 8);
     }},
    {"avi_mpeg4_start_code_in_the_last_4_bytes", Kind::Good,
     [] {
         return avi(plainHeaders(), join({Bytes(20, 5), {0, 0, 1, 0x20}}), 1);
     }},
    {"avi_no_video_list_is_searched_as_mpeg4", Kind::Good,
     [] {
         return avi(join({avih(40000), audioList(1, 1, 8000, 8000)}), volPayload(3), 2);
     }},
};

}  // namespace
}  // namespace probe_test
