// AVI files: the reset of the count of zero headers, cut index entries, values beyond 32 bits.
#include "build_riff.h"
#include "samples.h"

namespace probe_test {
namespace {

Bytes headers() {
    return join({avih(40000), videoList("XVID", 320, 240), audioList(0x55, 2, 44100, 16000)});
}

// 4,000 headers of zeros, one chunk, 4,000 more.
Bytes betweenZeros(const Bytes& chunk) {
    const Bytes zeros(std::size_t{9} * 4000, 0);
    return riff("AVI ", join({list("hdrl", headers()), zeros, chunk, zeros, Bytes(9, 'x')}));
}

// Pictures of those sizes in an OpenDML index at the end of the file, which lacks its last bytes.
Bytes cutOdml(std::initializer_list<std::uint32_t> sizes, std::size_t lacking) {
    std::uint64_t indexAt = 0;
    Bytes file;
    for (int pass = 0; pass < 2; ++pass) {
        const Bytes all = join({avih(40000), videoList("XVID", 64, 48,
                                                       join({superIndex("00dc", {{indexAt, 48}}),
                                                             chunk("JUNK", Bytes(64))}))});
        const Bytes movi = chunk("00dc", volPayload(2, 0, 0, 200));
        std::vector<std::pair<std::uint32_t, std::uint32_t>> entries;
        for (const std::uint32_t size : sizes) {
            entries.emplace_back(12, size);
        }
        indexAt = moviTypeAt(all) + 4 + movi.size();
        file = aviWithIndex(all, movi, standardIndex("00dc", moviTypeAt(all), entries));
    }
    return withoutLast(file, lacking);
}

// A "vprp" whose content would be an index that is too short.
Bytes vprpIn(const Bytes& list) {
    return avi(join({avih(40000), list}), volPayload(1), 3);
}
Bytes shortIndexInVprp() {
    return join(
        {chunk("vprp", join({chunk("indx", Bytes(10)), Bytes(60)})), chunk("JUNK", Bytes(64))});
}

const SampleSet kZeros = {
    {"avi_junk_resets_the_zero_headers", Kind::Good,
     [] { return betweenZeros(chunk("JUNK", Bytes(3))); }},
    {"avi_list_resets_the_zero_headers", Kind::Good,
     [] { return betweenZeros(list("INFO", Bytes(3))); }},
    {"avi_riff_resets_the_zero_headers", Kind::Good,
     [] { return betweenZeros(chunk("RIFF", Bytes(3))); }},
    {"avi_idx1_resets_the_zero_headers", Kind::Good,
     [] { return betweenZeros(chunk("idx1", idx1Entry("01wb", 4, 10))); }},
    {"avi_unknown_chunk_leaves_the_zero_headers", Kind::Claimed,
     [] { return betweenZeros(chunk("abcd", Bytes(3))); }},
    {"avi_chunk_of_size_0_leaves_the_zero_headers", Kind::Claimed,
     [] {
         return betweenZeros(join({chunk("abcd", {}), Bytes(1)}));
     }},
};

const SampleSet kLists = {
    {"avi_vprp_of_a_picture_is_skipped", Kind::Good,
     [] { return vprpIn(videoList("XVID", 64, 48, shortIndexInVprp())); }},
    {"avi_vprp_of_a_sound_is_not_recognised", Kind::Claimed,
     [] { return vprpIn(audioList(1, 1, 8000, 8000, shortIndexInVprp())); }},
    {"avi_opendml_audio_longs_per_entry_2_only_warns", Kind::Good,
     [] {
         const Bytes index = join({superIndex("02wb", {}, 2), chunk("JUNK", Bytes(64))});
         return avi(
             join({avih(40000), audioList(1, 1, 8000, 8000), audioList(1, 1, 8000, 8000, index)}),
             volPayload(1), 3);
     }},
    {"avi_two_hdrl_lists_with_the_same_opendml_index", Kind::Good,
     [] {
         const auto hdrl = [](std::uint64_t at) {
             const Bytes index = join({superIndex("00dc", {{at, 48}}), chunk("JUNK", Bytes(64))});
             return list("hdrl", join({avih(40000), videoList("XVID", 64, 48, index)}));
         };
         const std::uint64_t at = 12 + 2 * hdrl(0).size();
         return riff("AVI ",
                     join({hdrl(at), hdrl(at), standardIndex("00dc", 0, {{8, 4000}, {8, 8000}})}));
     }},
};

const SampleSet kCut = {
    {"avi_opendml_last_entry_cut_by_the_file_counts_with_zeros", Kind::Good,
     [] {
         return cutOdml({1000, 5000}, 2);
     }},
    {"avi_opendml_last_entry_without_its_size_holds_nothing", Kind::Good,
     [] {
         return cutOdml({1000, 5000}, 4);
     }},
    {"avi_opendml_only_entry_cut_keeps_its_offset", Kind::Good, [] { return cutOdml({1000}, 1); }},
    {"avi_opendml_only_entry_cut_in_its_offset", Kind::Good, [] { return cutOdml({1000}, 6); }},
    {"avi_idx1_offset_of_the_movi_word_is_relative", Kind::Good,
     [] {
         // The picture lies as far behind the type word as that lies behind the file's start.
         const Bytes all = join({avih(40000), videoList("XVID", 64, 48)});
         const std::uint32_t movi = moviTypeAt(all);
         return aviWithIndex(all, join({Bytes(movi - 4), chunk("00dc", volPayload(2))}),
                             chunk("idx1", idx1Entry("00dc", movi, 64)));
     }},
};

const SampleSet kLarge = {
    {"avi_video_bit_rate_beyond_32_bits", Kind::Good,
     [] {
         // A millisecond of 2^29 - 1 bytes.
         return aviWithIndex(join({avih(1000), videoList("XVID", 64, 48)}),
                             chunk("00dc", volPayload(2)),
                             chunk("idx1", idx1Entry("00dc", 4, 0x1FFFFFFF)));
     }},
    {"avi_audio_bit_rate_beyond_32_bits", Kind::Good,
     [] {
         return avi(join({avih(40000), audioList(1, 2, 44100, 0x20000001)}), volPayload(1), 3);
     }},
};

}  // namespace
}  // namespace probe_test
