// ASF files: streams, their timing, texts of every type, headers that are cut.
#include "build_asf.h"

namespace probe_test {
namespace {

using namespace asf;

const SampleSet kAsfSamples = {
    {"asf_length_beyond_32_bits_of_seconds", Kind::Good,
     [] {
         return file({fileProperties(0x7FFFFFFFFFFFFFFF / 10000), audioStream(1)});
     }},
    {"asf_audio_with_all_texts", Kind::Good,
     [] {
         return file(
             {fileProperties(83'999), audioStream(1), contentDescription(u"제목 Title", u"Author"),
              extendedContent(
                  {attribute(u"WM/AlbumTitle", u"Album"), attribute(u"WM/Genre", u"Genre"),
                   attribute(u"WM/TrackNumber", u"12"), attribute(u"WM/Composer", u"Composer"),
                   attribute(u"WM/Year", u"2011"), attribute(u"WM/Mood", u"quiet")})});
     }},
    {"asf_author_comes_before_album_artist", Kind::Good,
     [] {
         return file({audioStream(1), contentDescription(u"", u"Author"),
                      extendedContent({attribute(u"WM/AlbumArtist", u"Artist")})});
     }},
    {"asf_author_behind_album_artist_wins_too", Kind::Good,
     [] {
         return file({audioStream(1), extendedContent({attribute(u"WM/AlbumArtist", u"Artist")}),
                      contentDescription(u"", u"Author")});
     }},
    {"asf_album_artist_without_author", Kind::Good,
     [] {
         return file({audioStream(1), contentDescription(u"T", u""),
                      extendedContent({attribute(u"WM/AlbumArtist", u"Artist")})});
     }},
    {"asf_lowest_audio_stream_is_described", Kind::Good,
     [] {
         return file({audioStream(2, 0x160, 1), audioStream(1, 0x161, 2), audioStream(3)});
     }},
    {"asf_lowest_video_stream_is_described", Kind::Good,
     [] {
         return file({videoStream(9, "WMV2", 160, 120), videoStream(5, "WMV3", 320, 240),
                      headerExtension(Builder()
                                          .bytes(extendedStream(9, 900, 90))
                                          .bytes(extendedStream(5, 500'000, 333'667))
                                          .take())});
     }},
    {"asf_video_shows_no_texts", Kind::Good,
     [] {
         return file({fileProperties(5000), audioStream(1), videoStream(2),
                      contentDescription(u"Title", u"Author")});
     }},
    {"asf_video_without_a_code_keeps_the_texts", Kind::Good,
     [] {
         return file({videoStream(2, {"\0\0\0\0", 4}), contentDescription(u"Title", u"Author")});
     }},
    {"asf_audio_without_a_format_tag", Kind::Good,
     [] {
         return file({fileProperties(1000), audioStream(1, 0)});
     }},
    {"asf_track_number_of_32_bits", Kind::Good,
     [] {
         return file(
             {extendedContent({attribute(u"WM/TrackNumber", 3, Builder().le32(7).take())})});
     }},
    {"asf_track_number_of_64_bits", Kind::Good,
     [] {
         return file({extendedContent(
             {attribute(u"WM/TrackNumber", 4, Builder().le64(0x1'FFFF'FFFFull).take())})});
     }},
    {"asf_track_number_of_16_bits", Kind::Good,
     [] {
         return file(
             {extendedContent({attribute(u"WM/TrackNumber", 5, Builder().le16(0).take())})});
     }},
    {"asf_track_number_as_a_boolean_is_passed_over", Kind::Good,
     [] {
         return file(
             {extendedContent({attribute(u"WM/TrackNumber", 2, Builder().le32(1).take())})});
     }},
    {"asf_track_number_shorter_than_its_type_is_passed_over", Kind::Good,
     [] {
         return file({extendedContent({attribute(u"WM/TrackNumber", 3, Builder().le16(9).take()),
                                       attribute(u"WM/Year", u"1999")})});
     }},
    {"asf_genre_as_a_number_is_passed_over", Kind::Good,
     [] { return file({extendedContent({attribute(u"WM/Genre", 3, Builder().le32(7).take())})}); }},
    {"asf_empty_value_leaves_the_text", Kind::Good,
     [] {
         return file(
             {extendedContent({attribute(u"WM/Genre", u"Rock"), attribute(u"WM/Genre", u"")})});
     }},
    {"asf_last_of_equal_attributes_wins", Kind::Good,
     [] {
         return file(
             {extendedContent({attribute(u"WM/Genre", u"Rock"), attribute(u"WM/Genre", u"Jazz")})});
     }},
    {"asf_long_title_is_cut_to_127_characters", Kind::Good,
     [] {
         return file({contentDescription(std::u16string(126, u'x') + u"\xD83C\xDFB5 tail", u"A")});
     }},
    {"asf_title_of_an_odd_length", Kind::Good,
     [] {
         return file({object(kContentDescription,
                             Builder().le16(3).le16(0).fill(6).text("A").u8(0).text("B").take())});
     }},
    {"asf_title_of_zeros_still_sets_its_flag", Kind::Good,
     [] { return file({contentDescription(std::u16string_view(u"\0", 1), u"")}); }},
    {"asf_unterminated_name_ends_at_its_length", Kind::Good,
     [] {
         return file({extendedContent({Builder()
                                           .le16(14)
                                           .bytes(utf16(u"WM/Year"))
                                           .le16(0)
                                           .le16(8)
                                           .bytes(utf16(u"1987"))
                                           .take()})});
     }},
    {"asf_name_of_32_bytes_is_passed_over", Kind::Good,
     [] {
         return file({extendedContent(
             {attribute(u"WM/Year56789ABCD", u"No"), attribute(u"WM/Year", u"Yes")})});
     }},
    {"asf_extension_of_less_than_24_bytes_is_skipped", Kind::Good,
     [] {
         return file({videoStream(1),
                      object(kHeaderExtension, Builder().fill(18).le32(23).fill(23).take()),
                      fileProperties(4000)});
     }},
    {"asf_inner_object_of_size_0_ends_the_inner_walk", Kind::Good,
     [] {
         return file({videoStream(1),
                      headerExtension(Builder()
                                          .bytes(objectOfSize(kUnknown, 0, {}))
                                          .bytes(extendedStream(1, 1000, 400'000))
                                          .take()),
                      fileProperties(4000)});
     }},
    {"asf_stream_number_128_has_no_timing", Kind::Good,
     [] {
         return file({headerExtension(extendedStream(128, 1000, 400'000)), videoStream(0)});
     }},
    {"asf_count_of_objects_ends_the_walk", Kind::Good,
     [] {
         return file({audioStream(1), fileProperties(9000)}, 1);
     }},
    {"asf_object_of_size_0_is_acted_on_and_ends_the_walk", Kind::Good,
     [] {
         return file({objectOfSize(kFileProperties, 0, Builder().fill(40).le64(30'000'000).take()),
                      audioStream(1)});
     }},
    {"asf_object_smaller_than_its_header_is_followed", Kind::Good,
     [] {
         // The last byte of the first object's size, 0, is the first of the next one's GUID.
         return file({objectOfSize(kUnknown, 23, {}), Builder().fill(15, 7).le64(24).take(),
                      fileProperties(6000)});
     }},
    {"asf_object_beyond_the_header_ends_the_walk", Kind::Good,
     [] {
         return file(
             {fileProperties(2000), objectOfSize(kUnknown, 1ull << 40, {}), audioStream(1)});
     }},
    {"asf_cut_wave_format_is_not_taken", Kind::Good,
     [] {
         const Bytes stream = audioStream(1);
         const auto kept =
             static_cast<std::uint32_t>(30 + fileProperties(0).size() + stream.size() - 1);
         return file({fileProperties(2000), stream}, 0, kept);
     }},
    {"asf_cut_bitmap_info_is_not_taken", Kind::Good,
     [] {
         const auto kept = static_cast<std::uint32_t>(30 + videoStream(1).size() - 1);
         return file({videoStream(1)}, 0, kept);
     }},
    {"asf_text_cut_by_the_header_is_not_taken", Kind::Good,
     [] {
         const Bytes content = contentDescription(u"Title", u"Author");
         return file({content}, 0, static_cast<std::uint32_t>(30 + content.size() - 4));
     }},
    {"asf_header_of_10_bytes_is_empty", Kind::Good, [] { return file({audioStream(1)}, 0, 10); }},
    {"asf_header_larger_than_the_file", Kind::Claimed,
     [] { return file({audioStream(1)}, 0, 100'000); }},
    {"asf_256_bytes_are_claimed", Kind::Claimed,
     [] {
         Bytes bytes = file({audioStream(1)}, 0, 0x7FFFFFFF);
         bytes.resize(256);
         return bytes;
     }},
    {"asf_255_bytes_are_refused", Kind::Refused,
     [] {
         Bytes bytes = file({audioStream(1)});
         bytes.resize(255);
         return bytes;
     }},
};

}  // namespace
}  // namespace probe_test
