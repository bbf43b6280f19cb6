// Ogg Vorbis: header packets and the last page.
#include "build_ogg.h"
#include "expectations.h"

namespace probe_test {
namespace {

using R = probe::MediaRecord;

TEST(Ogg, DescribesVorbis) {
    const char* const name = "ogg_vorbis_with_five_tags";
    expectFields(std::to_array<FieldCase>({
        {name, &R::containerType, probe::kContainerOgg},
        {name, &R::audioFormatTag, 0x566F},
        {name, &R::audioChannels, 2},
        {name, &R::audioSampleRate, 44100},
        {name, &R::audioBitRate, 112'000},
        {name, &R::durationSeconds, 7},
        {name, &R::hasTitle, 1},
        {name, &R::hasYear, 0},
    }));
    expectTexts(std::to_array<TextCase>({
        {name, &R::title, u"제목"},
        {name, &R::artist, u"Artist"},
        {name, &R::album, u"Album"},
        {name, &R::track, u"3"},
        {name, &R::genre, u"Genre"},
    }));
}

TEST(Ogg, Comments) {
    static const std::u16string cut(127, u'x');
    expectTexts(std::to_array<TextCase>({
        {"ogg_keys_in_any_letter_case", &R::title, u"Abc"},
        {"ogg_keys_in_any_letter_case", &R::artist, u"Def"},
        {"ogg_keys_in_any_letter_case", &R::track, u"4"},
        {"ogg_comment_without_equals_is_skipped", &R::title, u""},
        {"ogg_second_empty_title_clears_the_first", &R::title, u""},
        {"ogg_title_of_200_characters_is_cut", &R::title, cut},
        {"ogg_malformed_utf8_is_replaced", &R::title,
         u"a\xFFFD"
         u"b"},
        {"ogg_comment_across_byte_2048_ends_the_walk", &R::title, u"Abc"},
        {"ogg_comment_across_byte_2048_ends_the_walk", &R::album, u""},
        {"ogg_count_beyond_the_comments", &R::title, u"Abc"},
        {"ogg_vendor_text_beyond_byte_2048", &R::title, u""},
        {"ogg_comment_packet_behind_byte_1984_is_not_found", &R::title, u""},
        {"ogg_comment_packet_at_byte_1983_is_found", &R::title, u"x"},
        {"ogg_comment_magic_in_the_identification_is_none", &R::title, u"far"},
        {"ogg_comment_magic_28_bytes_behind_is_one", &R::title, u"near"},
        {"ogg_segment_table_of_255_entries", &R::title, u"x"},
    }));
    expectFields(std::to_array<FieldCase>({
        {"ogg_second_empty_title_clears_the_first", &R::hasTitle, 0},
        {"ogg_comment_that_ends_at_byte_2048_counts", &R::hasTitle, 1},
        {"ogg_comment_that_ends_at_byte_2049_does_not", &R::hasTitle, 0},
        {"ogg_without_a_comment_packet", &R::durationSeconds, 7},
        {"ogg_vendor_length_of_4_gib", &R::durationSeconds, 7},
    }));
}

TEST(Ogg, LastPage) {
    expectFields(std::to_array<FieldCase>({
        {"ogg_file_of_5000_bytes_is_searched_whole", &R::durationSeconds, 9},
        {"ogg_last_page_before_the_last_8192_bytes", &R::durationSeconds, 0},
        {"ogg_last_page_with_26_bytes_left_is_found", &R::durationSeconds, 5},
        {"ogg_last_page_with_25_bytes_left_is_not", &R::durationSeconds, 3},
        {"ogg_granule_above_2_to_the_32_loses_its_upper_half", &R::durationSeconds, 2},
        {"ogg_granule_of_31_bits_set_is_huge", &R::durationSeconds,
         static_cast<std::uint32_t>(0xFFFFFFFF80000000u / 44100)},
        {"ogg_sample_rate_of_0", &R::durationSeconds, 0},
        {"ogg_sample_rate_of_0", &R::containerType, probe::kContainerOgg},
        {"ogg_segment_table_of_255_entries", &R::durationSeconds, 2},
    }));
}

TEST(Ogg, TheLastPageBeginsInTheLast8192Bytes) {
    for (const std::size_t behind : {8192u, 8193u}) {
        const Bytes last = ogg::page({}, 44100 * 9);
        const Bytes bytes = Builder()
                                .bytes(ogg::page(ogg::identification()))
                                .fill(10'000, 0x55)
                                .bytes(last)
                                .fill(behind - last.size(), 'O')
                                .take();
        EXPECT_EQ(probeBytes(bytes).info->durationSeconds, behind == 8192 ? 9u : 0u) << behind;
    }
}

TEST(Ogg, OnlyTheCountedCommentsAreRead) {
    for (const std::uint32_t count : {1u, 2u}) {
        const Bytes second = ogg::comments({"TITLE=a", "ALBUM=b"}, "v", count);
        const Outcome outcome = probeBytes(ogg::file(ogg::identification(), second, 44100));
        EXPECT_EQ(outcome.info->hasTitle, 1u);
        EXPECT_EQ(outcome.info->hasAlbum, count - 1);
    }
}

TEST(Ogg, ATypeOf3AloneIsNoCommentPacket) {
    const Bytes bytes = Builder()
                            .bytes(ogg::page(ogg::identification()))
                            .fill(200, 3)
                            .bytes(ogg::page(ogg::comments({"TITLE=a"})))
                            .fill(3000, 0x55)
                            .take();
    EXPECT_EQ(probeBytes(bytes).info->hasTitle, 1u);
}

TEST(Ogg, WhatIsNotVorbisIsClaimedAllTheSame) {
    expectStatus(std::to_array<StatusCase>({
        {"ogg_of_another_codec", 1, probe::kNotParsed},
        {"ogg_256_bytes_are_claimed", 1, probe::kNotParsed},
        {"ogg_2047_bytes_fail", 1, probe::kNotParsed},
        {"ogg_2048_bytes_are_read", 1, probe::kOk},
        {"ogg_255_bytes_are_refused", 0, probe::kNotParsed},
    }));
    expectFields(std::to_array<FieldCase>({
        {"ogg_of_another_codec", &R::containerType, 0},
        {"ogg_2047_bytes_fail", &R::hasTitle, 0},
        {"ogg_2047_bytes_fail", &R::fileSize, 2047},
    }));
}

TEST(Ogg, AFailedReadOfTheEndKeepsTheTexts) {
    const Bytes bytes =
        Builder().bytes(sample("ogg_vorbis_with_five_tags").build()).fill(100'000, 0x55).take();
    TestFile whole(bytes);
    TestFile failing(bytes);
    failing.failAtRead = probeFile(whole).reads;
    const Outcome outcome = probeFile(failing);
    EXPECT_EQ(outcome.claimed, 1);
    EXPECT_EQ(outcome.info->status, probe::kNotParsed);
    EXPECT_EQ(outcome.info->hasTitle, 1u);
    EXPECT_EQ(outcome.info->containerType, 0u);
    EXPECT_LE(whole.bytesRead, 4096u + 8192u);
}

}  // namespace
}  // namespace probe_test
