// Ogg files with a Vorbis stream: comments, the last page, packets that are cut.
#include "build_ogg.h"

namespace probe_test {
namespace {

using namespace ogg;

Bytes withComments(std::initializer_list<std::string_view> texts) {
    return file(identification(), comments(texts), 44100 * 7);
}

// An identification packet of which so many bytes are there, a comment packet right behind them,
// and another one in the next page.
Bytes cutIdentification(std::size_t bytes) {
    const Bytes whole = identification();
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(bytes));
    return file(Builder().bytes(cut).bytes(comments({"TITLE=near"})).take(),
                comments({"TITLE=far"}), 44100 * 7);
}

// A file whose one comment ends with byte `end`.
Bytes withCommentUpTo(std::size_t end) {
    // A page's header; the packet's type and "vorbis", the vendor's length and its one letter, the
    // count and the comment's length.
    const std::size_t at = page(identification()).size() + 28 + 7 + 4 + 1 + 4 + 4;
    const std::string text = "TITLE=" + std::string(end - at - 6, 'y');
    return withComments({text});
}

// A file with one page more, of 5 s, of which `bytes` bytes are there behind its time.
Bytes withLastPage(std::size_t bytes) {
    return Builder()
        .bytes(file(identification(), comments({}), 44100 * 3))
        .text("OggS")
        .u8(0)
        .u8(4)
        .le64(44100 * 5)
        .fill(bytes)
        .take();
}

const SampleSet kOggSamples = {
    {"ogg_vorbis_with_five_tags", Kind::Good,
     [] {
         return withComments({"TITLE=\xEC\xA0\x9C\xEB\xAA\xA9", "ARTIST=Artist", "ALBUM=Album",
                              "TRACKNUMBER=3", "GENRE=Genre", "DATE=2011"});
     }},
    {"ogg_keys_in_any_letter_case", Kind::Good,
     [] {
         return withComments({"title=Abc", "Artist=Def", "tRaCkNuMbEr=4"});
     }},
    {"ogg_comment_without_equals_is_skipped", Kind::Good,
     [] {
         return withComments({"Title:Abc", "ALBUM", "=x", ""});
     }},
    {"ogg_second_empty_title_clears_the_first", Kind::Good,
     [] {
         return withComments({"TITLE=Abc", "TITLE="});
     }},
    {"ogg_title_of_200_characters_is_cut", Kind::Good,
     [] {
         static const std::string title = "TITLE=" + std::string(200, 'x');
         return withComments({title});
     }},
    {"ogg_malformed_utf8_is_replaced", Kind::Good,
     [] {
         return withComments(
             {"TITLE=a\xFF"
              "b"});
     }},
    {"ogg_comment_across_byte_2048_ends_the_walk", Kind::Good,
     [] {
         static const std::string picture = "PICTURE=" + std::string(3000, 'p');
         return file(identification(), comments({"TITLE=Abc", picture, "ALBUM=No"}), 44100 * 7);
     }},
    {"ogg_comment_that_ends_at_byte_2048_counts", Kind::Good, [] { return withCommentUpTo(2048); }},
    {"ogg_comment_that_ends_at_byte_2049_does_not", Kind::Good,
     [] { return withCommentUpTo(2049); }},
    {"ogg_count_beyond_the_comments", Kind::Good,
     [] { return file(identification(), comments({"TITLE=Abc"}, "v", 0xFFFFFFFF), 44100 * 7); }},
    {"ogg_vendor_text_beyond_byte_2048", Kind::Good,
     [] {
         static const std::string vendor(2500, 'v');
         return file(identification(), comments({"TITLE=Abc"}, vendor), 44100 * 7);
     }},
    {"ogg_vendor_length_of_4_gib", Kind::Good,
     [] {
         return file(identification(),
                     Builder().u8(3).text("vorbis").le32(0xFFFFFFFF).le32(1).take(), 44100 * 7);
     }},
    {"ogg_without_a_comment_packet", Kind::Good,
     [] { return file(identification(), Bytes(40, 1), 44100 * 7); }},
    {"ogg_comment_packet_behind_byte_1984_is_not_found", Kind::Good,
     [] {
         return Builder()
             .bytes(page(identification()))
             .padTo(1984)
             .bytes(comments({"TITLE=x"}))
             .fill(100)
             .bytes(page({}, 44100))
             .take();
     }},
    {"ogg_comment_packet_at_byte_1983_is_found", Kind::Good,
     [] {
         return Builder()
             .bytes(page(identification()))
             .padTo(1983)
             .bytes(comments({"TITLE=x"}))
             .fill(100)
             .bytes(page({}, 44100))
             .take();
     }},
    {"ogg_comment_magic_in_the_identification_is_none", Kind::Good,
     [] { return cutIdentification(27); }},
    {"ogg_comment_magic_28_bytes_behind_is_one", Kind::Good, [] { return cutIdentification(28); }},
    {"ogg_file_of_5000_bytes_is_searched_whole", Kind::Good,
     [] {
         return Builder()
             .bytes(page(identification(), 0))
             .bytes(page(comments({}), 44100 * 9))
             .padTo(5000)
             .take();
     }},
    {"ogg_last_page_before_the_last_8192_bytes", Kind::Good,
     [] {
         return Builder()
             .bytes(page(identification(), 5))
             .bytes(page(comments({}), 44100 * 9))
             .fill(8192, 0x55)
             .take();
     }},
    {"ogg_last_page_with_26_bytes_left_is_found", Kind::Good, [] { return withLastPage(12); }},
    {"ogg_last_page_with_25_bytes_left_is_not", Kind::Good, [] { return withLastPage(11); }},
    {"ogg_granule_above_2_to_the_32_loses_its_upper_half", Kind::Good,
     [] { return file(identification(), comments({}), 0x1'0000'0000ull + 44100 * 2); }},
    {"ogg_granule_of_31_bits_set_is_huge", Kind::Good,
     [] { return file(identification(), comments({}), 0x80000000u); }},
    {"ogg_sample_rate_of_0", Kind::Good,
     [] { return file(identification(0, 1), comments({}), 44100); }},
    {"ogg_segment_table_of_255_entries", Kind::Good,
     [] {
         return Builder()
             .bytes(page(identification(32000), 0, 255))
             .bytes(page(comments({"TITLE=x"})))
             .fill(2000)
             .bytes(page({}, 64000))
             .take();
     }},
    {"ogg_of_another_codec", Kind::Claimed,
     [] { return file(Builder().text("OpusHead").fill(11).take(), comments({}), 48000); }},
    {"ogg_256_bytes_are_claimed", Kind::Claimed,
     [] {
         Bytes bytes = file(identification(), comments({}), 1);
         bytes.resize(256);
         return bytes;
     }},
    {"ogg_2047_bytes_fail", Kind::Claimed,
     [] {
         Bytes bytes = file(identification(), comments({"TITLE=x"}), 1);
         bytes.resize(2047);
         return bytes;
     }},
    {"ogg_2048_bytes_are_read", Kind::Good,
     [] {
         Bytes bytes = file(identification(), comments({"TITLE=x"}), 1);
         bytes.resize(2048);
         return bytes;
     }},
    {"ogg_255_bytes_are_refused", Kind::Refused,
     [] {
         Bytes bytes = file(identification(), comments({}), 1);
         bytes.resize(255);
         return bytes;
     }},
};

}  // namespace
}  // namespace probe_test
