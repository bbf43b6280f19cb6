// ASF headers.
#include <algorithm>

#include "build_asf.h"
#include "expectations.h"
#include "probe/asf/asf.h"

namespace probe_test {
namespace {

using R = probe::MediaRecord;

constexpr std::uint32_t kFourCcWmv3 = 0x574D5633;

TEST(Asf, DescribesStreamsAndTexts) {
    expectFields(std::to_array<FieldCase>({
        {"asf_audio_with_all_texts", &R::containerType, probe::kContainerAsf},
        {"asf_audio_with_all_texts", &R::durationSeconds, 83},
        {"asf_audio_with_all_texts", &R::audioFormatTag, 0x161},
        {"asf_audio_with_all_texts", &R::audioChannels, 2},
        {"asf_audio_with_all_texts", &R::audioSampleRate, 44100},
        {"asf_audio_with_all_texts", &R::audioBitRate, 128'000},
        {"asf_audio_with_all_texts", &R::videoFourCC, 0},
        {"asf_audio_with_all_texts", &R::hasTitle, 1},
        {"asf_audio_with_all_texts", &R::hasYear, 1},
        {"asf_audio_without_a_format_tag", &R::audioSampleRate, 0},
        {"asf_audio_without_a_format_tag", &R::durationSeconds, 1},
        {"asf_lowest_audio_stream_is_described", &R::audioFormatTag, 0x161},
        {"asf_lowest_audio_stream_is_described", &R::audioChannels, 2},
        {"asf_lowest_video_stream_is_described", &R::videoFourCC, kFourCcWmv3},
        {"asf_lowest_video_stream_is_described", &R::videoWidth, 320},
        {"asf_lowest_video_stream_is_described", &R::videoHeight, 240},
        {"asf_lowest_video_stream_is_described", &R::frameTimeMicroseconds, 33'366},
        {"asf_lowest_video_stream_is_described", &R::videoBitRate, 500'000},
        {"asf_video_shows_no_texts", &R::hasTitle, 0},
        {"asf_video_shows_no_texts", &R::videoFourCC, kFourCcWmv3},
        {"asf_video_without_a_code_keeps_the_texts", &R::videoFourCC, 0},
        {"asf_video_without_a_code_keeps_the_texts", &R::videoWidth, 0},
        {"asf_video_without_a_code_keeps_the_texts", &R::hasArtist, 1},
        {"asf_stream_number_128_has_no_timing", &R::videoBitRate, 0},
        {"asf_stream_number_128_has_no_timing", &R::videoFourCC, kFourCcWmv3},
    }));
    expectTexts(std::to_array<TextCase>({
        {"asf_audio_with_all_texts", &R::title, u"제목 Title"},
        {"asf_audio_with_all_texts", &R::artist, u"Author"},
        {"asf_audio_with_all_texts", &R::album, u"Album"},
        {"asf_audio_with_all_texts", &R::genre, u"Genre"},
        {"asf_audio_with_all_texts", &R::track, u"12"},
        {"asf_audio_with_all_texts", &R::composer, u"Composer"},
        {"asf_audio_with_all_texts", &R::year, u"2011"},
        {"asf_video_shows_no_texts", &R::title, u""},
    }));
}

TEST(Asf, TextsHaveTheirRules) {
    expectTexts(std::to_array<TextCase>({
        {"asf_author_comes_before_album_artist", &R::artist, u"Author"},
        {"asf_author_behind_album_artist_wins_too", &R::artist, u"Author"},
        {"asf_album_artist_without_author", &R::artist, u"Artist"},
        {"asf_track_number_of_32_bits", &R::track, u"7"},
        {"asf_track_number_of_64_bits", &R::track, u"4294967295"},
        {"asf_track_number_of_16_bits", &R::track, u"0"},
        {"asf_track_number_as_a_boolean_is_passed_over", &R::track, u""},
        {"asf_track_number_shorter_than_its_type_is_passed_over", &R::track, u""},
        {"asf_track_number_shorter_than_its_type_is_passed_over", &R::year, u"1999"},
        {"asf_genre_as_a_number_is_passed_over", &R::genre, u""},
        {"asf_empty_value_leaves_the_text", &R::genre, u"Rock"},
        {"asf_last_of_equal_attributes_wins", &R::genre, u"Jazz"},
        {"asf_title_of_an_odd_length", &R::title, u"AB"},
        {"asf_unterminated_name_ends_at_its_length", &R::year, u"1987"},
        {"asf_name_of_32_bytes_is_passed_over", &R::year, u"Yes"},
        {"asf_text_cut_by_the_header_is_not_taken", &R::title, u"Title"},
        {"asf_text_cut_by_the_header_is_not_taken", &R::artist, u""},
    }));
    expectFields(std::to_array<FieldCase>({
        {"asf_title_of_zeros_still_sets_its_flag", &R::hasTitle, 1},
        {"asf_track_number_as_a_boolean_is_passed_over", &R::hasTrack, 0},
        {"asf_empty_value_leaves_the_text", &R::hasGenre, 1},
    }));
}

TEST(Asf, ACutTitleEndsBeforeAHalfSurrogatePair) {
    const Outcome outcome = probeBytes(sample("asf_long_title_is_cut_to_127_characters").build());
    EXPECT_EQ(std::u16string_view(outcome.info->title), std::u16string(126, u'x'));
    EXPECT_EQ(outcome.info->hasTitle, 1u);
}

TEST(Asf, ATrackNumberHasTheLengthOfItsText) {
    const Bytes bytes = sample("asf_track_number_of_32_bits").build();
    TestFile file(bytes);
    probe::ReadWindow window(file);
    probe::AsfReader reader{.file = window, .fileSize = bytes.size()};
    reader.headerSize = static_cast<std::uint32_t>(bytes.size() - 300);
    EXPECT_EQ(probe::AsfReadHeader(reader), probe::kOk);
    EXPECT_EQ(reader.track.lengthBytes, 2u);
}

TEST(Asf, TheWalkFollowsTheSizes) {
    expectFields(std::to_array<FieldCase>({
        {"asf_extension_of_less_than_24_bytes_is_skipped", &R::durationSeconds, 4},
        {"asf_inner_object_of_size_0_ends_the_inner_walk", &R::durationSeconds, 4},
        {"asf_inner_object_of_size_0_ends_the_inner_walk", &R::videoBitRate, 0},
        {"asf_count_of_objects_ends_the_walk", &R::audioFormatTag, 0x161},
        {"asf_count_of_objects_ends_the_walk", &R::durationSeconds, 0},
        {"asf_object_of_size_0_is_acted_on_and_ends_the_walk", &R::durationSeconds, 3},
        {"asf_object_of_size_0_is_acted_on_and_ends_the_walk", &R::audioFormatTag, 0},
        {"asf_object_smaller_than_its_header_is_followed", &R::durationSeconds, 6},
        {"asf_object_beyond_the_header_ends_the_walk", &R::durationSeconds, 2},
        {"asf_object_beyond_the_header_ends_the_walk", &R::audioFormatTag, 0},
        {"asf_cut_wave_format_is_not_taken", &R::audioFormatTag, 0},
        {"asf_cut_wave_format_is_not_taken", &R::durationSeconds, 2},
        {"asf_cut_bitmap_info_is_not_taken", &R::videoFourCC, 0},
        {"asf_header_of_10_bytes_is_empty", &R::containerType, probe::kContainerAsf},
        {"asf_header_of_10_bytes_is_empty", &R::audioFormatTag, 0},
    }));
}

TEST(Asf, ADamagedHeaderLeavesTheSizeAlone) {
    expectStatus(std::to_array<StatusCase>({
        {"asf_header_larger_than_the_file", 1, probe::kNotParsed},
        {"asf_256_bytes_are_claimed", 1, probe::kNotParsed},
        {"asf_255_bytes_are_refused", 0, probe::kNotParsed},
    }));
    expectFields(std::to_array<FieldCase>({
        {"asf_header_larger_than_the_file", &R::containerType, 0},
        {"asf_256_bytes_are_claimed", &R::fileSize, 256},
    }));
}

TEST(Asf, ValuesBeyond32BitsBecomeTheHighest) {
    const Bytes play =
        asf::object(asf::kFileProperties, Builder().fill(40).le64(~0ull).fill(32).take());
    const Bytes sound = asf::streamProperties(
        asf::kAudioMedia, 1,
        Builder().le16(0x161).le16(2).le32(44100).le32(0x20000001).le16(4).le16(16).le16(0).take());
    Builder timing;
    timing.fill(16).le32(1).fill(28).le16(2).le16(0).le64(~0ull).le32(0);
    const Bytes extension = Builder()
                                .fill(18)
                                .le32(24 + timing.size())
                                .bytes(asf::object(asf::kExtendedStream, timing.view()))
                                .take();
    const Outcome outcome = probeBytes(asf::file(
        {play, sound, asf::videoStream(2), asf::object(asf::kHeaderExtension, extension)}));
    EXPECT_EQ(outcome.info->durationSeconds, 0xFFFFFFFFu);
    EXPECT_EQ(outcome.info->audioBitRate, 0xFFFFFFFFu);
    EXPECT_EQ(outcome.info->frameTimeMicroseconds, 0xFFFFFFFFu);
}

TEST(Asf, ObjectsInsideEachOtherCostOneLinearWalk) {
    // Objects of 26 bytes, each an attribute list that runs on through all that follow.
    Builder content;
    constexpr std::uint32_t kObjects = 40'000;
    for (std::uint32_t i = 0; i < kObjects; ++i) {
        content.bytes(asf::objectOfSize(asf::kExtendedContent, 26, {0xFF, 0xFF}));
    }
    const Bytes bytes = asf::file({content.view()}, kObjects);
    TestFile file(bytes);
    const Outcome outcome = probeFile(file);
    EXPECT_EQ(outcome.info->status, probe::kOk);
    EXPECT_LE(outcome.bytesRead, 2 * bytes.size());
}

TEST(Asf, ATrackNumberOf16BitsIsReadWhole) {
    for (const unsigned number : {0u, 7u, 256u, 65535u}) {
        const Bytes bytes = asf::file(
            {asf::audioStream(1), asf::extendedContent({asf::attribute(
                                      u"WM/TrackNumber", 5, Builder().le16(number).take())})});
        EXPECT_EQ(platform::toUtf8(probeBytes(bytes).info->track), std::to_string(number));
    }
}

TEST(Asf, ATextThatIsCutKeepsItsLastLetter) {
    for (const std::size_t length : {126u, 127u, 128u, 200u}) {
        const std::u16string text(length, u'\uAC00');
        const Bytes bytes = asf::file({asf::audioStream(1), asf::contentDescription(text, u"")});
        EXPECT_EQ(std::u16string(probeBytes(bytes).info->title), text.substr(0, 127)) << length;
    }
    // Whole, it keeps half of a pair that the file itself has left so.
    const std::u16string odd = u"a\xD800";
    const Bytes bytes = asf::file({asf::audioStream(1), asf::contentDescription(odd, u"")});
    EXPECT_EQ(std::u16string(probeBytes(bytes).info->title), odd);
}

// The play duration counts in units of 100 ns.
TEST(Asf, APlayTimeEndsWithItsLastWholeSecond) {
    for (const std::uint64_t units : {9'999'999u, 10'000'000u, 19'999'999u, 20'000'000u}) {
        const Bytes play =
            asf::object(asf::kFileProperties, Builder().fill(40).le64(units).fill(32).take());
        EXPECT_EQ(probeBytes(asf::file({play})).info->durationSeconds, units / 10'000'000) << units;
    }
}

TEST(Asf, AFileMayBeItsHeaderAlone) {
    const Bytes padding = asf::object(asf::kUnknown, Bytes(400));
    const Bytes whole = asf::file({padding, asf::audioStream(1)});
    const Bytes header = withoutLast(whole, 300);
    EXPECT_EQ(probeBytes(header).info->audioFormatTag, 0x161u);
    EXPECT_EQ(probeBytes(withoutLast(header, 1)).info->containerType, 0u);
}

TEST(Asf, AnInnerObjectHasTimingByItsGuidAndWhenItIsWhole) {
    const auto rateOf = [](const asf::Guid& guid, std::size_t missing) {
        Bytes inner = asf::extendedStream(2, 500'000, 400'000);
        std::ranges::copy(guid, inner.begin());
        const Bytes bytes = asf::file({asf::videoStream(2), asf::headerExtension(inner)});
        // The header ends so many bytes earlier; of the object four bytes are behind its fields.
        const auto size = static_cast<std::uint32_t>(bytes.size() - 300 - missing);
        return probeBytes(asf::file({asf::videoStream(2), asf::headerExtension(inner)}, 0, size))
            .info->videoBitRate;
    };
    EXPECT_EQ(rateOf(asf::kExtendedStream, 0), 500'000u);
    EXPECT_EQ(rateOf(asf::kUnknown, 0), 0u);
    EXPECT_EQ(rateOf(asf::kExtendedStream, 4), 500'000u);
    EXPECT_EQ(rateOf(asf::kExtendedStream, 5), 0u);
}

TEST(Asf, AHeaderThatCannotBeReadTellsNothing) {
    const Bytes bytes = asf::file({asf::object(asf::kUnknown, Bytes(20'000)), asf::audioStream(1)});
    ASSERT_EQ(probeBytes(bytes).info->audioFormatTag, 0x161u);
    const Outcome outcome = probeWithBad(bytes, 20'100);
    EXPECT_EQ(outcome.claimed, 1);
    EXPECT_EQ(outcome.info->containerType, 0u);
    EXPECT_EQ(outcome.info->status, probe::kNotParsed);
}

TEST(Asf, ATrackNumberIsAsLongAsItsTypeAtLeast) {
    struct Case {
        unsigned type;
        std::size_t bytes;
    };
    for (const Case& one : {Case{3, 4}, Case{4, 8}, Case{5, 2}}) {
        for (const std::size_t bytes : {one.bytes - 1, one.bytes, one.bytes + 1}) {
            const Bytes value = Builder().u8(9).padTo(bytes).take();
            const Bytes file = asf::file(
                {asf::audioStream(1),
                 asf::extendedContent({asf::attribute(u"WM/TrackNumber", one.type, value)}),
                 asf::fileProperties(1000)});
            EXPECT_EQ(probeBytes(file).info->hasTrack, bytes >= one.bytes ? 1u : 0u)
                << one.type << ' ' << bytes;
        }
    }
}

TEST(Asf, AStreamsNumberHasSevenBits) {
    for (const unsigned number : {1u, 2u, 4u, 8u, 16u, 32u, 64u, 127u}) {
        const Bytes bytes =
            asf::file({asf::videoStream(number),
                       asf::headerExtension(asf::extendedStream(number, 500'000, 400'000))});
        EXPECT_EQ(probeBytes(bytes).info->videoBitRate, 500'000u) << number;
        EXPECT_EQ(probeBytes(asf::file({asf::audioStream(number)})).info->audioChannels, 2u)
            << number;
    }
}

TEST(Asf, WhatFollowsACutTextIsNoHalfOfAPair) {
    for (const char16_t last : {u'\xD7FF', u'\xD800', u'\xD801', u'\xDBFF', u'\xDC00'}) {
        const std::u16string text = std::u16string(126, u'x') + last + u"yz";
        const Bytes bytes = asf::file({asf::audioStream(1), asf::contentDescription(text, u"")});
        const bool isHalf = last >= 0xD800 && last <= 0xDBFF;
        EXPECT_EQ(std::u16string(probeBytes(bytes).info->title), text.substr(0, isHalf ? 126 : 127))
            << static_cast<unsigned>(last);
    }
}

TEST(Asf, TextsThatNobodyWantsArePassedOver) {
    struct Case {
        std::size_t rights, description, rating;
    };
    for (const Case& one : {Case{0, 0, 0}, Case{8, 0, 0}, Case{0, 8, 0}, Case{0, 0, 8}}) {
        const Bytes texts = Builder()
                                .le16(2)
                                .le16(0)
                                .le16(one.rights)
                                .le16(one.description)
                                .le16(one.rating)
                                .bytes(asf::utf16(u"T"))
                                .fill(one.rights + one.description + one.rating, 0x41)
                                .take();
        const Outcome outcome = probeBytes(
            asf::file({asf::object(asf::kContentDescription, texts), asf::fileProperties(5000)}));
        EXPECT_EQ(std::u16string(outcome.info->title), u"T");
        EXPECT_EQ(outcome.info->durationSeconds, 5u);
    }
}

TEST(Asf, ANameOf31BytesIsRead) {
    for (const std::size_t length : {30u, 31u, 32u}) {
        const Bytes name = Builder().bytes(asf::utf16(u"WM/Year")).padTo(length).take();
        const Bytes year =
            Builder().le16(length).bytes(name).le16(0).le16(8).bytes(asf::utf16(u"1999")).take();
        EXPECT_EQ(probeBytes(asf::file({asf::audioStream(1), asf::extendedContent({year})}))
                      .info->hasYear,
                  length < 32 ? 1u : 0u)
            << length;
    }
}

TEST(Asf, WhatIsReadBeyondAnObjectUsesUpTheWalk) {
    // Two objects whose single attribute reaches to the header's end: what they cover is walked
    // again, and the steps end before the last object. Without that reach it is read.
    for (const unsigned reach : {0u, 1u}) {
        const Bytes carrier =
            Builder().bytes(asf::guid(asf::kExtendedContent)).le64(26).le16(1).take();
        const auto covering = [reach](std::size_t bytes) {
            // Name of no bytes, type 1, a value of that many bytes; as an object, an unknown one.
            return Builder().le16(0).le16(1).le16(reach * bytes).fill(10).le64(24).take();
        };
        const Bytes last = asf::fileProperties(5000);
        const Bytes bytes = asf::file({carrier, covering(18 + 26 + 24 + last.size()), carrier,
                                       covering(18 + last.size()), last});
        EXPECT_EQ(probeBytes(bytes).info->durationSeconds, reach == 0 ? 5u : 0u);
    }
}

TEST(Asf, AValueThatReachesBeyondTheHeaderEndsTheWalk) {
    const Bytes year = asf::attribute(u"WM/Year", u"2011");
    const auto hasYear = [&year](std::size_t length) {
        Bytes other = asf::attribute(u"Other", 0, {});
        other[other.size() - 2] = static_cast<std::uint8_t>(length);
        other[other.size() - 1] = static_cast<std::uint8_t>(length >> 8);
        const Bytes bytes = asf::file({asf::audioStream(1), asf::extendedContent({other, year})});
        return probeBytes(bytes).info->hasYear;
    };
    EXPECT_EQ(hasYear(0), 1u);
    EXPECT_EQ(hasYear(year.size()), 0u);
    EXPECT_EQ(hasYear(year.size() + 1), 0u);
    EXPECT_EQ(hasYear(0xFFFF), 0u);
}

TEST(Asf, OfAFlagsWordSevenBitsAreTheNumber) {
    // Stream 3 with all other flags set, and stream 4: the lower number is described.
    const auto stream = [](unsigned flags, unsigned channels) {
        return asf::audioStream(flags, 0x161, channels);
    };
    const Bytes bytes = asf::file({stream(4, 6), stream(0x7F83, 2), stream(5, 1)});
    EXPECT_EQ(probeBytes(bytes).info->audioChannels, 2u);
    // 127 and 126, the largest numbers.
    const Bytes large = asf::file({stream(127, 6), stream(126, 2)});
    EXPECT_EQ(probeBytes(large).info->audioChannels, 2u);
}

TEST(Asf, OfTwoStreamsWithOneNumberTheFirstIsDescribed) {
    const Bytes sound = asf::file({asf::audioStream(2, 0x161, 2), asf::audioStream(2, 0x162, 6)});
    EXPECT_EQ(probeBytes(sound).info->audioFormatTag, 0x161u);
    const Bytes video =
        asf::file({asf::videoStream(2, "WMV3", 640), asf::videoStream(2, "WVC1", 320)});
    EXPECT_EQ(probeBytes(video).info->videoWidth, 640u);
}

TEST(Asf, NamesOf32BytesArePassedOver) {
    using namespace std::string_view_literals;
    // With its terminator the name has 30 bytes; one more zero makes it 32.
    const auto artistOf = [](std::u16string_view name) {
        const Outcome outcome = probeBytes(asf::file(
            {asf::audioStream(1), asf::extendedContent({asf::attribute(name, u"Artist"),
                                                        asf::attribute(u"WM/Year", u"2011")})}));
        EXPECT_EQ(platform::toUtf8(outcome.info->year), "2011");
        return platform::toUtf8(outcome.info->artist);
    };
    EXPECT_EQ(artistOf(u"WM/AlbumArtist"), "Artist");
    EXPECT_EQ(artistOf(u"WM/AlbumArtist\0"sv), "");
}

}  // namespace
}  // namespace probe_test
