// MP4 and 3GP files: brands, boxes, tables, audio configurations, damaged ones.
#include "build_mp4.h"
#include "samples.h"

namespace probe_test {
namespace {

// 25 pictures at 25 a second in two chunks.
Bytes videoTables(const Bytes& entry) {
    return join({stsd(1, entry), table("stts", 1, {25, 512}), table("stsc", 2, {1, 20, 1, 2, 5, 1}),
                 stsz(1000, 25), table("stco", 2, {2000, 30000})});
}
Bytes videoTrack(const Bytes& entry) {
    return track("vide", 12800, videoTables(entry));
}
Bytes avcEntry(const SpsOptions& options = {}) {
    return visualEntry("avc1", 320, 240, avcC(sps(options)));
}
// AAC LC 44,100 Hz stereo: object type 2, index 4, 2 channels, padded to three bytes.
Bytes plainConfig() {
    return {0x12, 0x10, 0x00};
}
Bytes audioTables(const Bytes& entry) {
    return join({stsd(1, entry), table("stts", 2, {99, 1024, 1, 512}), table("stsc", 1, {1, 50, 1}),
                 stsz(0, 4, {100, 200, 300, 400}), table("stco", 1, {2500})});
}
Bytes audioTrack(const Bytes& entry) {
    return track("soun", 44100, audioTables(entry));
}
Bytes aacEntry(const Bytes& config = plainConfig(), unsigned objectType = 0x40,
               unsigned rate = 44100) {
    return audioEntry("mp4a", 2, rate, esds(objectType, 96000, config));
}
Bytes mp4(const Bytes& moov, std::string_view brand = "isom") {
    return join({ftyp(brand, "isomiso2"), box("moov", moov), box("mdat", Bytes(300, 0x42))});
}
Bytes plainMoov() {
    return join({box("mvhd", Bytes(100)), videoTrack(avcEntry()), audioTrack(aacEntry())});
}
Bytes withAudio(const Bytes& entry) {
    return mp4(audioTrack(entry));
}
Bytes withStbl(std::string_view handler, const Bytes& stbl) {
    return mp4(track(handler, 1000, stbl));
}
Bytes brands(std::string_view major, std::string_view compatible) {
    return join({ftyp(major, compatible), box("free", Bytes(200)), box("moov", plainMoov())});
}

// Sound of two bytes a sample, whose table has one size for all, in chunks of half a second.
Bytes monoPcm(std::uint32_t rate, std::uint32_t samples) {
    const std::uint32_t perChunk = rate / 2, chunks = (samples + perChunk - 1) / perChunk;
    Builder offsets;
    offsets.be32(0).be32(chunks);
    for (std::uint32_t i = 0; i < chunks; ++i) {
        offsets.be32(1000 + i * perChunk * 2);
    }
    const Bytes stbl =
        join({stsd(1, audioEntry("sowt", 1, rate)), table("stts", 1, {samples, 1}),
              stsz(2, samples), table("stsc", 1, {1, perChunk, 1}), box("stco", offsets.take())});
    return mp4(track("soun", rate, stbl));
}

const SampleSet kBrands = {
    {"mp4_avc_and_aac", Kind::Good, [] { return mp4(plainMoov()); }},
    {"mp4_brand_mp41", Kind::Good, [] { return mp4(plainMoov(), "mp41"); }},
    {"mp4_brand_mp42", Kind::Good, [] { return mp4(plainMoov(), "mp42"); }},
    {"mp4_brand_m4a", Kind::Good, [] { return mp4(audioTrack(aacEntry()), "M4A "); }},
    {"mp4_brand_msnv", Kind::Good, [] { return mp4(plainMoov(), "MSNV"); }},
    {"mp4_brand_3gp1", Kind::Good, [] { return mp4(plainMoov(), "3gp1"); }},
    {"mp4_brand_3gp6", Kind::Good, [] { return mp4(plainMoov(), "3gp6"); }},
    {"mp4_brand_3gp7_is_refused", Kind::Refused, [] { return brands("3gp7", "3gp7"); }},
    {"mp4_brand_qt_is_refused", Kind::Refused, [] { return brands("qt  ", "qt  "); }},
    {"mp4_compatible_m4a_behind_an_unlisted_brand", Kind::Good,
     [] { return brands("dash", "iso6M4A "); }},
    {"mp4_word_behind_a_short_ftyp_is_looked_at", Kind::Good,
     [] {
         // "isom" as the type of the box behind an ftyp without compatible brands.
         return join({ftyp("dash", ""), box("isom", Bytes(200)), box("moov", plainMoov())});
     }},
    {"mp4_third_word_behind_a_short_ftyp_is_not_looked_at", Kind::Refused,
     [] {
         // The two words are the size and the type of the next box; "isom" is what it holds.
         return join({ftyp("dash", ""), box("free", join({{'i', 's', 'o', 'm'}, Bytes(200)})),
                      box("moov", plainMoov())});
     }},
    {"mp4_ftyp_size_with_the_sign_bit_is_refused", Kind::Refused,
     [] {
         Bytes bytes = brands("dash", "isom");
         bytes[0] = 0x90;
         return bytes;
     }},
    {"mp4_of_255_bytes_is_refused", Kind::Refused,
     [] {
         Bytes bytes = mp4(plainMoov());
         bytes.resize(255);
         return bytes;
     }},
};

const SampleSet kWalks = {
    {"mp4_moov_behind_mdat", Kind::Good,
     [] {
         return join({ftyp("isom", "isom"), box("free", Bytes(8)), box("mdat", Bytes(3000, 1)),
                      box("moov", plainMoov())});
     }},
    {"mp4_without_moov", Kind::Claimed,
     [] {
         return join({ftyp("isom", "isom"), box("mdat", Bytes(3000, 1))});
     }},
    {"mp4_last_mdat_cut_by_the_end", Kind::Good,
     [] {
         Bytes bytes = mp4(plainMoov());
         return withoutLast(bytes, 200);
     }},
    {"mp4_seven_bytes_behind_moov_fail", Kind::Claimed,
     [] {
         return join({mp4(plainMoov()), Bytes(7)});
     }},
    {"mp4_top_level_box_of_size_0_fails", Kind::Claimed,
     [] {
         return join({mp4(plainMoov()), Bytes(8)});
     }},
    {"mp4_mdat_of_size_1_is_walked_byte_by_byte", Kind::Claimed,
     [] {
         Builder b;
         b.bytes(ftyp("isom", "isom")).be32(1).text("mdat").be64(1016).fill(1000, 1);
         return b.bytes(box("moov", plainMoov())).take();
     }},
    {"mp4_moov_larger_than_the_file_fails", Kind::Claimed,
     [] {
         Bytes bytes = join({ftyp("isom", "isom"), box("moov", plainMoov())});
         return withoutLast(bytes, 10);
     }},
    {"mp4_moov_of_1_gib_is_out_of_memory", Kind::Claimed,
     [] {
         Builder b;
         b.bytes(ftyp("isom", "isom")).be32(0x40000000).text("moov").fill(400);
         return b.take();
     }},
    {"mp4_moov_below_1_gib_cut_by_the_file_is_a_failed_read", Kind::Claimed,
     [] {
         Builder b;
         b.bytes(ftyp("isom", "isom")).be32(0x3FFFFFFF).text("moov").fill(400);
         return b.take();
     }},
    {"mp4_fast_start_cut_in_a_moov_of_2_mib", Kind::Claimed,
     [] {
         const Bytes moov = box("moov", join({plainMoov(), box("udta", Bytes(2 << 20))}));
         return withoutLast(join({ftyp("isom", "isom"), moov}), 1 << 20);
     }},
    {"mp4_mono_pcm_of_30_s", Kind::Good, [] { return monoPcm(44100, 30 * 44100); }},
    // Four bytes for each sample's place, and one place more: 1 GiB less four bytes, and 1 GiB.
    {"mp4_sound_of_the_most_samples", Kind::Good, [] { return monoPcm(48000, (1u << 28) - 2); }},
    {"mp4_sound_of_more_samples_than_could_be_kept", Kind::Claimed,
     [] { return monoPcm(48000, (1u << 28) - 1); }},
    {"mp4_moov_without_tracks", Kind::Good,
     [] {
         return mp4(
             join({box("mvhd", Bytes(100)), box("iods", Bytes(16)), box("udta", Bytes(80))}));
     }},
    {"mp4_trak_without_tkhd_is_passed_over", Kind::Good,
     [] {
         return mp4(box("trak", box("mdia", join({mdhd(1000), hdlr("vide")}))));
     }},
    {"mp4_trak_without_tkhd_goes_on_with_the_last_slot", Kind::Good,
     [] {
         // The second box tells the media of the first one's track: ten times as slow, and sound.
         const Bytes sound = box("mdia", join({mdhd(1280), hdlr("soun"),
                                               box("minf", box("stbl", audioTables(aacEntry())))}));
         return mp4(join({videoTrack(avcEntry()), box("trak", sound)}));
     }},
    {"mp4_21st_track_is_passed_over", Kind::Good,
     [] {
         Bytes tracks;
         for (int i = 0; i < 20; ++i) {
             tracks = join({tracks, track("text", 1000, {})});
         }
         return mp4(join({tracks, videoTrack(avcEntry())}));
     }},
    {"mp4_last_video_track_describes_it", Kind::Good,
     [] {
         return mp4(join({videoTrack(avcEntry()),
                          videoTrack(visualEntry("mp4v", 64, 48, esds(0x20, 1, volPayload(3))))}));
     }},
    {"mp4_second_moov_adds_its_tracks", Kind::Good,
     [] {
         return join({ftyp("isom", "isom"), box("moov", videoTrack(avcEntry())),
                      box("moov", audioTrack(aacEntry()))});
     }},
    {"mp4_child_beyond_its_parent_is_cut_there", Kind::Good,
     [] {
         Bytes trak = videoTrack(avcEntry());
         trak[2] = 0x7F;
         return mp4(trak);
     }},
    {"mp4_child_of_size_0_ends_its_parent", Kind::Good,
     [] {
         return mp4(join({videoTrack(avcEntry()), Bytes(8), audioTrack(aacEntry())}));
     }},
    {"mp4_mdhd_of_version_1", Kind::Good,
     [] {
         return mp4(
             box("trak",
                 join({tkhd(),
                       box("mdia", join({mdhd(25, true), hdlr("vide"),
                                         box("minf", box("stbl", videoTables(avcEntry())))}))})));
     }},
    {"mp4_hint_and_text_tracks", Kind::Good,
     [] {
         return mp4(join({track("hint", 90000, audioTables(audioEntry("rtp ", 0, 0))),
                          track("text", 1000, audioTables(audioEntry("tx3g", 0, 0))),
                          audioTrack(aacEntry())}));
     }},
    {"mp4_minf_before_hdlr_belongs_to_nobody", Kind::Good,
     [] {
         return mp4(box("trak",
                        join({tkhd(), box("mdia", join({box("minf", box("stbl", stsd(1, Bytes(3)))),
                                                        mdhd(1000), hdlr("text")}))})));
     }},
};

const SampleSet kTables = {
    {"mp4_only_co64_leaves_the_size_alone", Kind::Claimed,
     [] {
         return withStbl(
             "vide", join({stsd(1, avcEntry()), table("stts", 1, {2, 500}),
                           table("stsc", 1, {1, 2, 1}), stsz(9, 2), table("co64", 1, {0, 2000})}));
     }},
    {"mp4_without_stsc_fails", Kind::Claimed,
     [] {
         return withStbl("soun", join({stsd(1, aacEntry()), table("stts", 1, {2, 500}), stsz(9, 2),
                                       table("stco", 1, {2000})}));
     }},
    {"mp4_both_tracks_fail_prints_the_audio_line", Kind::Claimed,
     [] {
         return mp4(join(
             {track("vide", 1000, stsd(1, avcEntry())), track("soun", 1000, stsd(1, aacEntry()))}));
     }},
    {"mp4_chunks_hold_too_few_samples_fails", Kind::Claimed,
     [] {
         return withStbl("vide", join({stsd(1, avcEntry()), table("stts", 1, {5, 500}),
                                       table("stsc", 1, {1, 2, 1}), stsz(9, 5),
                                       table("stco", 2, {2000, 3000})}));
     }},
    {"mp4_length_beyond_32_bits_of_seconds", Kind::Good,
     [] {
         return withStbl(
             "vide", join({stsd(1, avcEntry()),
                           table("stts", 3, {0xFFFFFFFF, 429, 0xFFFFFFFF, 429, 0xFFFFFFFF, 429}),
                           table("stsc", 1, {1, 2, 1}), stsz(9, 2), table("stco", 1, {2000})}));
     }},
    {"mp4_empty_tables", Kind::Good,
     [] {
         return withStbl("vide", join({stsd(1, avcEntry()), table("stts", 0, {}),
                                       table("stsc", 0, {}), stsz(0, 0), table("stco", 0, {})}));
     }},
    {"mp4_stts_count_beyond_its_box_fails", Kind::Claimed,
     [] {
         return withStbl("vide",
                         join({stsd(1, avcEntry()), table("stts", 0x10000000, {5, 500}),
                               table("stsc", 1, {1, 2, 1}), stsz(9, 2), table("stco", 1, {2000})}));
     }},
    {"mp4_stsz_constant_with_a_huge_count_fails", Kind::Claimed,
     [] {
         return withStbl("soun", join({stsd(1, aacEntry()), table("stts", 1, {5, 500}),
                                       table("stsc", 1, {1, 0xFFFFFFFF, 1}), stsz(1, 0xFFFFFFFF),
                                       table("stco", 1, {2000})}));
     }},
    {"mp4_second_stts_replaces_the_first", Kind::Good,
     [] {
         return withStbl("vide", join({stsd(1, avcEntry()), table("stts", 1, {2, 500}),
                                       table("stts", 1, {2, 5000}), table("stsc", 1, {1, 2, 1}),
                                       stsz(9, 2), table("stco", 1, {2000})}));
     }},
    {"mp4_timescale_0_has_no_duration", Kind::Good,
     [] { return mp4(track("vide", 0, videoTables(avcEntry()))); }},
    {"mp4_duration_truncates_per_entry", Kind::Good,
     [] {
         return mp4(track(
             "vide", 3,
             join({stsd(1, avcEntry()), table("stts", 2, {1, 1, 2, 1}), table("stsc", 1, {1, 3, 1}),
                   stsz(0, 3, {7, 8, 9}), table("stco", 1, {2000})})));
     }},
    {"mp4_audio_longer_than_video", Kind::Good,
     [] {
         return mp4(join(
             {videoTrack(avcEntry()),
              track("soun", 1,
                    join({stsd(1, aacEntry()), table("stts", 1, {4, 3}),
                          table("stsc", 1, {1, 4, 1}), stsz(2, 4), table("stco", 1, {2000})}))}));
     }},
};

// The 11 bits of the sync extension and what follows, behind a GASpecificConfig of zeros:
// object type 2, index 7 (22,050 Hz), 1 channel, then 0x2B7, 5, 1, index 4 (44,100 Hz).
Bytes backwardSbrConfig() {
    return {0x13, 0x88, 0x56, 0xE5, 0xA0};
}

const SampleSet kEntries = {
    {"mp4_audio_only", Kind::Good, [] { return withAudio(aacEntry()); }},
    {"mp4_mp3_object_type_6b", Kind::Good, [] { return withAudio(aacEntry(plainConfig(), 0x6B)); }},
    {"mp4_mp3_object_type_69", Kind::Good, [] { return withAudio(aacEntry({}, 0x69)); }},
    {"mp4_he_aac_reports_the_output_rate", Kind::Good,
     // object type 5, index 7 (22,050 Hz), 2 channels, extension index 4 (44,100 Hz), type 2
     [] {
         return withAudio(aacEntry({0x2B, 0x92, 0x08, 0x00}, 0x40, 22050));
     }},
    {"mp4_he_aac_by_sync_extension", Kind::Good,
     [] { return withAudio(aacEntry(backwardSbrConfig(), 0x40, 22050)); }},
    {"mp4_he_aac_index_13_is_all_ones", Kind::Good,
     [] {
         return withAudio(aacEntry({0x2B, 0x96, 0x88, 0x00}, 0x40, 22050));
     }},
    {"mp4_he_aac_index_14_keeps_the_entry_rate", Kind::Good,
     [] {
         return withAudio(aacEntry({0x2B, 0x97, 0x08, 0x00}, 0x40, 22050));
     }},
    {"mp4_he_aac_explicit_extension_rate", Kind::Good,
     // extension index 15, then 24 bits: 47,250
     [] {
         return withAudio(aacEntry({0x2B, 0x97, 0x80, 0x5C, 0x49, 0x08}, 0x40, 22050));
     }},
    {"mp4_aac_explicit_core_rate_is_passed_over", Kind::Good,
     [] {
         return withAudio(aacEntry({0x17, 0x80, 0x56, 0x22, 0x10}, 0x40, 44100));
     }},
    {"mp4_aac_config_of_2_bytes_is_not_parsed", Kind::Good,
     [] {
         return withAudio(aacEntry({0x2B, 0x92}, 0x40, 22050));
     }},
    {"mp4_aac_program_config_element", Kind::Good,
     // object type 2, index 4, channel configuration 0, PCE with one front pair, then SBR sync
     [] {
         return withAudio(aacEntry(
             {0x12, 0x00, 0x05, 0x84, 0x00, 0x00, 0x20, 0x00, 0x56, 0xE5, 0x98}, 0x40, 24000));
     }},
    {"mp4_plain_audio_entry", Kind::Good, [] { return withAudio(audioEntry("samr", 1, 8000)); }},
    {"mp4_mp4s_in_a_sound_track_prints", Kind::Good,
     [] { return withAudio(audioEntry("mp4s", 1, 16000)); }},
    {"mp4_mp4v_extended_par", Kind::Good,
     [] {
         return mp4(videoTrack(
             visualEntry("mp4v", 176, 144, esds(0x20, 64000, volPayload(15, 3, 7, 40)))));
     }},
    {"mp4_mp4v_info_of_6_bytes_is_searched", Kind::Good,
     [] {
         return mp4(videoTrack(
             visualEntry("mp4v", 176, 144, esds(0x20, 64000, {0, 0, 1, 0x20, 0x00, 0x88}))));
     }},
    {"mp4_plain_video_entry_is_mp4v", Kind::Good,
     [] { return mp4(videoTrack(visualEntry("s263", 176, 144, box("d263", Bytes(7))))); }},
    {"mp4_avc_without_configuration", Kind::Good,
     [] { return mp4(videoTrack(visualEntry("avc1", 1920, 1080))); }},
    {"mp4_avc_extended_sar", Kind::Good,
     [] {
         return mp4(videoTrack(avcEntry({.profile = 100,
                                         .scalingMatrix = true,
                                         .aspectIdc = 255,
                                         .sarWidth = 64,
                                         .sarHeight = 45})));
     }},
    {"mp4_last_sample_entry_wins", Kind::Good,
     [] {
         return mp4(track("vide", 12800,
                          join({stsd(2, join({avcEntry(), visualEntry("mp4v", 11, 22)})),
                                table("stts", 1, {25, 512}), table("stsc", 1, {1, 25, 1}),
                                stsz(1000, 25), table("stco", 1, {2000})})));
     }},
    {"mp4_sample_entry_too_small_fails", Kind::Claimed,
     [] { return mp4(videoTrack(box("avc1", Bytes(77)))); }},
    {"mp4_stsd_count_beyond_its_box_fails", Kind::Claimed,
     [] { return mp4(track("soun", 1000, stsd(2, aacEntry()))); }},
    {"mp4_esds_cut_gives_what_it_holds", Kind::Good,
     [] {
         return withAudio(audioEntry("mp4a", 2, 48000,
                                     box("esds", {0, 0, 0, 0, 3, 30, 0, 1, 0, 4, 25, 0x40, 0x15})));
     }},
};

}  // namespace
}  // namespace probe_test
