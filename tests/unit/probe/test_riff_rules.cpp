// Single rules of AVI and WAVE, at their edges.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "build_riff.h"
#include "probing.h"

namespace probe_test {
namespace {

Bytes withIndexOf(const Bytes& headers, std::initializer_list<Bytes> entries) {
    return aviWithIndex(headers, chunk("00dc", volPayload(3)), chunk("idx1", join(entries)));
}

Bytes twoStreams() {
    return join({avih(40000), videoList("XVID", 64, 48), audioList(1, 2, 8000, 32000)});
}

TEST(AviRules, EveryPictureOfTheFirstTwoStreamsCounts) {
    for (const char* id : {"00dc", "00db", "01dc", "01db", "02dc", "10dc", "00dd", "00wb", "00eb",
                           "0Adc", "01pc", "11db", "00d\xE3"}) {
        const bool counts = std::string_view("00dc 00db 01dc 01db").find(id) != std::string::npos;
        const Outcome outcome = probeBytes(
            withIndexOf(twoStreams(), {idx1Entry("00dc", 4, 1000), idx1Entry(id, 80, 3000)}));
        EXPECT_EQ(outcome.info->videoBitRate,
                  counts ? 4000u * 8 / 80 * 1000 : 1000u * 8 / 40 * 1000)
            << id;
    }
}

TEST(AviRules, AHeaderListOf12BytesHoldsNothing) {
    for (const std::uint32_t size : {12u, 13u}) {
        // The list declares so few bytes; what stands behind them is read all the same.
        Builder builder;
        builder.text("LIST").le32(size).text("hdrl").text("junk").le32(0);
        Bytes body = builder.take();
        body.resize(8 + size);
        const Bytes bytes = riff("AVI ", join({body, Bytes(300, 'x')}));
        const Outcome outcome = probeBytes(bytes);
        const bool looked = outcome.lines.find("neither avih") != std::string::npos;
        EXPECT_EQ(looked, size == 13) << size;
    }
}

TEST(AviRules, TheHeaderWalkEndsWithFewerThan9Bytes) {
    for (const std::size_t left : {8u, 9u}) {
        Builder odd;
        odd.text("junk").le32(0).fill(left - 8);
        const Bytes bytes = aviWithIndex(join({avih(40000), odd.take()}), Bytes(300, 0), {});
        const Outcome outcome = probeBytes(bytes);
        EXPECT_EQ(outcome.lines.find("neither avih") != std::string::npos, left == 9) << left;
    }
}

TEST(AviRules, TheTopLevelWalkEndsWith8Bytes) {
    for (const std::size_t left : {8u, 9u}) {
        Builder odd;
        odd.text("LOST").le32(1).fill(left - 8);
        const Bytes bytes = aviWithIndex(twoStreams(), Bytes(300, 0), odd.take());
        EXPECT_EQ(probeBytes(bytes).lines, left == 9 ? "ERROR: Unknown Chunk ID =4C4F5354 \n" : "")
            << left;
    }
}

// A sound list whose super index leads to a standard index with that many entries.
Bytes soundWithIndex(std::uint64_t indexAt) {
    return audioList(1, 2, 8000, 32000,
                     join({superIndex("01wb", {{indexAt, 32}}), chunk("JUNK", Bytes(64))}));
}

TEST(AviRules, TheEighthSoundListHasASlotAndTheNinthNone) {
    for (const unsigned number : {7u, 8u, 9u}) {
        std::uint64_t indexAt = 0;
        Bytes bytes;
        for (int pass = 0; pass < 2; ++pass) {
            Bytes headers = join({avih(40000), videoList("XVID", 64, 48)});
            for (unsigned i = 1; i <= 9; ++i) {
                headers = join({headers, i == number ? soundWithIndex(indexAt)
                                                     : audioList(1, 2, 8000, 32000)});
            }
            indexAt = moviTypeAt(headers) + 4;
            bytes = aviWithIndex(headers, standardIndex("01wb", 0, {}, 0x7FFFFFF0), {});
        }
        const Outcome outcome = probeBytes(bytes);
        EXPECT_EQ(outcome.info->containerType, number <= 8 ? 0u : 1u) << number;
        EXPECT_EQ(outcome.lines, number <= 8 ? "ERROR: indx) audio index alloc fail\n" : "");
    }
}

// Two standard indexes; `count` is what the super index declares, in front of which so many bytes
// stand that are no chunk.
Outcome probeTwoIndexes(std::uint32_t count, std::size_t before = 0) {
    std::uint64_t first = 0, second = 0;
    Bytes bytes;
    for (int pass = 0; pass < 2; ++pass) {
        const Bytes headers = join(
            {avih(40000), videoList("XVID", 64, 48,
                                    join({Bytes(before, 0x7F),
                                          superIndex("00dc", {{first, 40}, {second, 40}}, 4, count),
                                          chunk("JUNK", Bytes(64, 0x7F))}))});
        const std::uint32_t movi = moviTypeAt(headers);
        const Bytes one = chunk("00dc", volPayload(3)), two = chunk("00dc", volPayload(5));
        const auto oneAt = static_cast<std::uint32_t>(movi + 4 + 8);
        const auto twoAt = static_cast<std::uint32_t>(oneAt + one.size());
        const Bytes indexOne = standardIndex("00dc", 0, {{twoAt, 64}});
        const Bytes indexTwo = standardIndex("00dc", 0, {{oneAt, 640}});
        first = movi + 4 + one.size() + two.size();
        second = first + indexOne.size();
        bytes = aviWithIndex(headers, join({one, two, indexOne, indexTwo}), {});
    }
    return probeBytes(bytes);
}

TEST(AviRules, OfTwoStandardIndexesTheFirstOffsetIsTheFirstPicture) {
    const Outcome both = probeTwoIndexes(2);
    EXPECT_EQ(both.info->videoBitRate, (64u + 640u) * 8 / 80 * 1000);
    EXPECT_EQ(both.info->pixelAspectX, 33u) << "the second picture, to which the first index leads";
    EXPECT_EQ(probeTwoIndexes(1).info->videoBitRate, 64u * 8 / 40 * 1000);
}

TEST(AviRules, ASuperIndexHoldsNoMoreThanItsList) {
    // Behind the two entries stands a chunk that leads far behind the file as entries, to indexes
    // of nothing. What would stand behind the list would lead to the file's start.
    for (const std::uint32_t count : {3u, 1'000'000u, (1u << 27) - 1}) {
        EXPECT_EQ(probeTwoIndexes(count).info->containerType, 1u) << count;
        EXPECT_EQ(probeTwoIndexes(count).info->videoBitRate, (64u + 640u) * 8 / 80 * 1000) << count;
    }
    EXPECT_EQ(probeTwoIndexes(1u << 27).info->containerType, 1u) << "1 GiB of table: no entry";
    EXPECT_EQ(probeTwoIndexes(1u << 27).info->frameTimeMicroseconds, 0u);
}

TEST(AviRules, WhatIsNoChunkIsPassedOverByteByByte) {
    for (const std::size_t before : {1u, 2u, 3u, 7u, 8u}) {
        EXPECT_EQ(probeTwoIndexes(2, before).info->videoBitRate, (64u + 640u) * 8 / 80 * 1000)
            << before;
    }
}

// OpenDML 1.02: the top bit of a size marks a picture that is no key frame.
TEST(AviRules, ASizeInAStandardIndexHas31Bits) {
    std::uint64_t indexAt = 0;
    Bytes bytes;
    for (int pass = 0; pass < 2; ++pass) {
        const Bytes headers = join({avih(1000), videoList("XVID", 64, 48,
                                                          join({superIndex("00dc", {{indexAt, 48}}),
                                                                chunk("JUNK", Bytes(64))}))});
        const Bytes picture = chunk("00dc", volPayload(3));
        const std::uint32_t at = moviTypeAt(headers) + 4;
        indexAt = at + picture.size();
        bytes = aviWithIndex(
            headers,
            join({picture,
                  standardIndex("00dc", 0, {{at + 8, 1001}, {at + 8, 0x80000000u | 1001}})}),
            {});
    }
    EXPECT_EQ(probeBytes(bytes).info->videoBitRate, 2002u * 8 / 2 * 1000);
}

TEST(AviRules, AnIndexOfManyBlocksHasOneFirstPicture) {
    const Bytes first = chunk("00dc", volPayload(3)), other = chunk("00dc", volPayload(5));
    Builder entries;
    for (unsigned i = 0; i < 9000; ++i) {  // more than two of 64 KiB
        entries.bytes(
            idx1Entry("00dc", i == 0 ? 4 : static_cast<std::uint32_t>(4 + first.size()), 100));
    }
    const Bytes bytes =
        aviWithIndex(twoStreams(), join({first, other}), chunk("idx1", entries.view()));
    const Outcome outcome = probeBytes(bytes);
    EXPECT_EQ(outcome.info->durationSeconds, 9000u / 25);
    EXPECT_EQ(outcome.info->pixelAspectX, 11u);
    EXPECT_EQ(outcome.info->videoBitRate, 900'000u * 8 / 360'000 * 1000);
}

TEST(AviRules, AnIndexEndsWithItsChunk) {
    const Bytes index = chunk("idx1", idx1Entry("00dc", 4, 1000));
    const Bytes behind = idx1Entry("00dc", 4, 8);  // as a chunk: 16 bytes of no meaning follow
    const Bytes bytes =
        aviWithIndex(twoStreams(), chunk("00dc", volPayload(3)), join({index, behind, Bytes(64)}));
    EXPECT_EQ(probeBytes(bytes).info->videoBitRate, 1000u * 8 / 40 * 1000);
}

TEST(AviRules, ThePlayTimeEndsWithItsLastWholeSecond) {
    for (const std::uint32_t microseconds : {99'995'000u, 100'000'000u}) {
        const Bytes headers = join({avih(microseconds), videoList("XVID", 64, 48)});
        EXPECT_EQ(
            probeBytes(withIndexOf(headers, {idx1Entry("00dc", 4, 1000)})).info->durationSeconds,
            microseconds / 1'000'000)
            << microseconds;
    }
}

TEST(AviRules, APictureOf8BytesIsLookedAt) {
    for (const std::size_t size : {7u, 8u, 9u}) {
        Bytes payload = volPayload(3);
        payload.resize(size);
        const Bytes bytes = aviWithIndex(twoStreams(), chunk("00dc", payload),
                                         chunk("idx1", idx1Entry("00dc", 4, 8)));
        EXPECT_EQ(probeBytes(bytes).info->pixelAspectX, size < 8 ? 0u : 11u) << size;
    }
}

TEST(AviRules, FormatsHaveTheirSmallestSizes) {
    const auto sound = [](std::size_t bytes) {
        Bytes format = waveFormat(0x55, 2, 44'100, 16'000);
        format.resize(bytes);
        const Bytes headers = join(
            {avih(40000), videoList("XVID", 64, 48),
             list("strl", join({strh("auds"), chunk("strf", format), chunk("JUNK", Bytes(64))}))});
        return probeBytes(withIndexOf(headers, {idx1Entry("00dc", 4, 1000)})).info->audioFormatTag;
    };
    EXPECT_EQ(sound(16), 0x55u);
    EXPECT_EQ(sound(15), 0u);
    const auto picture = [](std::uint32_t declared, std::size_t bytes) {
        Bytes format = bitmapFormat("XVID", 64, 48, declared);
        format.resize(bytes);
        const Bytes headers = join(
            {avih(40000),
             list("strl", join({strh("vids"), chunk("strf", format), chunk("JUNK", Bytes(64))}))});
        return probeBytes(withIndexOf(headers, {idx1Entry("00dc", 4, 1000)})).info->videoWidth;
    };
    EXPECT_EQ(picture(40, 40), 64u);
    EXPECT_EQ(picture(39, 40), 0u);
    EXPECT_EQ(picture(40, 39), 0u);
}

TEST(AviRules, AnIndexCutInItsFirstEntry) {
    for (const std::size_t held : {4u, 8u, 12u, 15u}) {
        const Bytes whole = withIndexOf(twoStreams(), {idx1Entry("00dc", 4, 0x01010101)});
        const Bytes bytes = withoutLast(whole, 16 - held);
        const Outcome outcome = probeBytes(bytes);
        // Without its offset the picture begins at "movi", whose next four letters are a size of
        // more than 1 GiB.
        const bool found = held >= 12;
        EXPECT_EQ(outcome.info->containerType, found ? 1u : 0u) << held;
        EXPECT_EQ(outcome.info->frameTimeMicroseconds, found ? 40000u : 0u) << held;
        EXPECT_EQ(outcome.info->videoBitRate, held == 15 ? 0x10101u * 8 / 40 * 1000 : 0u) << held;
    }
}

TEST(AviRules, OffsetsCountFromTheFirstMoviList) {
    // The second list's first picture stands where the first one's does in its own.
    const Bytes bytes = aviWithIndex(twoStreams(), chunk("00dc", volPayload(3)),
                                     join({list("movi", chunk("00dc", volPayload(5))),
                                           chunk("idx1", idx1Entry("00dc", 4, 64))}));
    const Bytes single = withIndexOf(twoStreams(), {idx1Entry("00dc", 4, 64)});
    EXPECT_NE(probeBytes(single).info->pixelAspectX, 0u);
    EXPECT_EQ(probeBytes(bytes).info->pixelAspectX, probeBytes(single).info->pixelAspectX);
}

// An AVI whose pictures (00dc) or sound (01wb) have a super index that leads to a standard index of
// so many entries.
Outcome probeWithIndex(std::string_view id, std::uint32_t count) {
    const bool isPicture = id == "00dc";
    Bytes bytes;
    std::uint64_t at = 0;
    for (int pass = 0; pass < 2; ++pass) {
        const Bytes super = join({superIndex(id, {{at, 32}}), chunk("JUNK", Bytes(64))});
        const Bytes headers =
            join({avih(40000), videoList("XVID", 64, 48, isPicture ? super : Bytes()),
                  audioList(1, 2, 8000, 32000, isPicture ? Bytes() : super)});
        bytes = aviWithIndex(headers, standardIndex(id, 0, {}, count), {});
        at = moviTypeAt(headers) + 4;
    }
    return probeBytes(bytes);
}

TEST(AviRules, ATableOfLessThan1GiBIsHad) {
    // Four bytes an entry; sound has one entry more.
    const std::uint32_t entries = 1u << 28;
    EXPECT_EQ(probeWithIndex("00dc", entries).lines, "ERROR: indx) video index alloc fail\n");
    EXPECT_EQ(probeWithIndex("00dc", entries - 1).lines, "");
    EXPECT_EQ(probeWithIndex("01wb", entries - 1).lines, "ERROR: indx) audio index alloc fail\n");
    EXPECT_EQ(probeWithIndex("01wb", entries - 2).lines, "");
}

TEST(AviRules, ASuperIndexThatTheFileCutsHasNoEntries) {
    // The file ends within the index's 24 bytes; its three entries would lead to the file's start.
    const Bytes index = superIndex("00dc", {{0, 32}, {0, 32}, {0, 32}});
    const Bytes whole =
        riff("AVI ", join({chunk("JUNK", Bytes(300)),
                           list("hdrl", join({avih(40000), videoList("XVID", 64, 48, index)}))}));
    const Bytes cut = withoutLast(whole, 3 * 16 + 4);
    EXPECT_EQ(probeBytes(cut).lines, "");
    EXPECT_NE(probeBytes(whole).lines, "") << "the file's start as an index of 1,414,744,396";
}

TEST(WaveRules, EveryLetterOfTheFormCounts) {
    const Bytes good = sample("wave_pcm_stereo").build();
    for (const std::size_t at : {0u, 1u, 2u, 3u, 8u, 9u, 10u, 11u}) {
        for (const int step : {-1, 1}) {
            Bytes bytes = good;
            bytes[at] = static_cast<std::uint8_t>(bytes[at] + step);
            EXPECT_EQ(probeBytes(bytes).info->containerType, 0u) << at << step;
        }
    }
}

TEST(WaveRules, TheFormatMayBeginFrom12To2023) {
    for (const std::size_t at : {12u, 13u, 2022u, 2023u, 2024u}) {
        Bytes bytes(2100, 0x20);
        const Bytes head = Builder().text("RIFF").le32(0).text("WAVE").take();
        const Bytes format = chunk("fmt ", waveFormat(0x11, 2, 8000, 1000));
        std::copy(head.begin(), head.end(), bytes.begin());
        std::copy(format.begin(), format.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
        const Outcome outcome = probeBytes(bytes);
        EXPECT_EQ(outcome.info->containerType, at <= 2023 ? 6u : 0u) << at;
        EXPECT_EQ(outcome.info->audioFormatTag, at <= 2023 ? 0x11u : 0u) << at;
        EXPECT_EQ(outcome.info->audioBitRate, at <= 2023 ? 8000u : 0u) << at;
    }
    // 2,048 bytes end twelve before what is looked at does; what is missing counts as 0.
    Bytes shortest(2048, 0x20);
    const Bytes head = Builder().text("RIFF").le32(0).text("WAVE").take();
    const Bytes format = chunk("fmt ", waveFormat(0x11, 2, 8000, 0x01010101));
    std::copy(head.begin(), head.end(), shortest.begin());
    std::copy(format.begin(), format.begin() + 2048 - 2023, shortest.begin() + 2023);
    EXPECT_EQ(probeBytes(shortest).info->audioSampleRate, 8000u);
    EXPECT_EQ(probeBytes(shortest).info->audioBitRate, 0x01010101u * 8);
    EXPECT_EQ(probeBytes(withoutLast(shortest, 1)).claimed, 0);
}

}  // namespace
}  // namespace probe_test
