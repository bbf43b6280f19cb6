// AVI files: what hostile ones cost, and the values of the samples beside the plain ones.
#include "build_riff.h"
#include "expectations.h"
#include "probe/riff/riff.h"

namespace probe_test {
namespace {

using R = probe::MediaRecord;

constexpr std::uint32_t kHighest = 0xFFFFFFFF;

// What every file may cost, whatever it holds.
std::uint64_t budget(const Bytes& bytes) {
    return 4 * std::uint64_t{bytes.size()} + (1 << 20);
}

Bytes indexedHdrl(const std::vector<SuperEntry>& entries) {
    return list("hdrl",
                join({avih(40000),
                      videoList("XVID", 64, 48,
                                join({superIndex("00dc", entries), chunk("JUNK", Bytes(64))}))}));
}

TEST(Avi, AHeaderListThatComesAgainDoesNotMultiplyTheIndex) {
    constexpr std::size_t kLists = 500;
    const std::uint64_t indexAt = 12 + kLists * indexedHdrl({{0, 0}}).size();
    const std::vector<std::pair<std::uint32_t, std::uint32_t>> entries((1 << 20) / 8);
    Builder all;
    for (std::size_t i = 0; i < kLists; ++i) {
        all.bytes(indexedHdrl({{indexAt, 0}}));
    }
    const Bytes bytes = riff("AVI ", join({all.view(), standardIndex("00dc", 0, entries)}));
    const Outcome outcome = probeBytes(bytes);
    EXPECT_LE(outcome.bytesRead, budget(bytes));
    EXPECT_LE(outcome.reads, 1000u);
    EXPECT_EQ(outcome.claimed, 1);
    EXPECT_EQ(outcome.info->status, probe::kNotParsed);
}

TEST(Avi, ScatteredStandardIndexesCostLittleMoreThanTheirHeaders) {
    constexpr std::uint64_t kFile = 2 << 20;
    std::vector<SuperEntry> entries;
    for (std::uint64_t i = 0; i < 20'000; ++i) {
        entries.push_back({i * 7919 * 4096 % (kFile - 8192), 0});
    }
    const Bytes hdrl = indexedHdrl(entries);
    const Bytes bytes = riff("AVI ", join({hdrl, chunk("JUNK", Bytes(kFile - hdrl.size()))}));
    const Outcome outcome = probeBytes(bytes);
    EXPECT_LE(outcome.bytesRead, budget(bytes));
    EXPECT_LE(outcome.reads, bytes.size() / 256);
}

TEST(Avi, SuperIndexesThatOverlapCostNoMore) {
    // Nine streams, each of whose indexes declares all entries up to the end of the header list.
    // Everything in front of the entries is padded to words of eight bytes.
    constexpr std::uint64_t kEntries = 100'000;
    const auto stream = [](std::string_view type, const Bytes& format) {
        return list("strl", join({strh(type), chunk("strf", format),
                                  superIndex("00dc", {}, 4, kEntries), chunk("JUNK", Bytes(68))}));
    };
    Builder children;
    children.bytes(avih(40000)).bytes(stream("vids", bitmapFormat("XVID", 64, 48)));
    for (int i = 0; i < 8; ++i) {
        children.bytes(stream("auds", join({waveFormat(1, 2, 8000, 8000), Bytes(6)})));
    }
    Builder entries;
    entries.le32(0);
    for (std::uint64_t i = 0; i < 2 * kEntries; ++i) {
        entries.le64(4096 + i * 7919 * 512 % 1'000'000);
    }
    children.bytes(chunk("JUNK", entries.view()));
    const Bytes bytes = riff("AVI ", list("hdrl", children.view()));
    const Outcome outcome = probeBytes(bytes);
    EXPECT_LE(outcome.bytesRead, budget(bytes));
    EXPECT_LE(outcome.reads, bytes.size() / 256);
}

TEST(Avi, StreamListsThatLeadFarBehindTheHeldBytesCostNoMore) {
    // Lists of 64 bytes whose stream header claims to reach 3,125 lists on, where the type of that
    // list's stream header is taken for the format.
    Builder lists;
    for (int i = 0; i < 20'000; ++i) {
        Builder one;
        one.text("strh").le32(200'000).text("vids").le32(40).le32(40).fill(32);
        lists.bytes(list("strl", one.view()));
    }
    const Bytes bytes = riff("AVI ", list("hdrl", join({chunk("JUNK", Bytes(1 << 20)), lists.view(),
                                                        chunk("JUNK", Bytes(400'000, 0x28))})));
    const Outcome outcome = probeBytes(bytes);
    EXPECT_LE(outcome.bytesRead, budget(bytes));
    EXPECT_LE(outcome.reads, 1000u);
    EXPECT_EQ(outcome.claimed, 1);
}

TEST(Avi, WhatIsReadOfALargeHeaderListIsCounted) {
    const Bytes padding = chunk("JUNK", Bytes(100));
    Builder all;
    all.bytes(avih(40000)).bytes(videoList("XVID", 64, 48));
    while (all.size() < (2 << 20)) {
        all.bytes(padding);
    }
    const Bytes bytes = avi(all.view(), volPayload(2), 3);
    TestFile file(bytes);
    probe::ReadWindow window(file);
    probe::MediaInfo info;
    EXPECT_EQ(probe::RiffRecognise(info, window), 1);
    EXPECT_EQ(info.status, probe::kOk);
    EXPECT_GT(file.bytesRead, bytes.size() - (64 << 10));
    EXPECT_EQ(window.counts().bytes, file.bytesRead);
    EXPECT_EQ(window.counts().reads, file.reads);
}

TEST(Avi, TheCountOfZeroHeadersBeginsAgain) {
    expectStatus(std::to_array<StatusCase>({
        {"avi_junk_resets_the_zero_headers", 1, probe::kOk},
        {"avi_list_resets_the_zero_headers", 1, probe::kOk},
        {"avi_riff_resets_the_zero_headers", 1, probe::kOk},
        {"avi_idx1_resets_the_zero_headers", 1, probe::kOk},
        {"avi_unknown_chunk_leaves_the_zero_headers", 1, probe::kNotParsed},
        {"avi_chunk_of_size_0_leaves_the_zero_headers", 1, probe::kNotParsed},
    }));
}

TEST(Avi, PictureProperties) {
    expectStatus(std::to_array<StatusCase>({
        {"avi_vprp_of_a_picture_is_skipped", 1, probe::kOk},
        {"avi_vprp_of_a_sound_is_not_recognised", 1, probe::kNotParsed},
    }));
}

TEST(Avi, TheLineAboutASoundIndexNamesItsSlot) {
    const Outcome outcome =
        probeBytes(sample("avi_opendml_audio_longs_per_entry_2_only_warns").build());
    EXPECT_EQ(outcome.lines, "AVIINDEX_CHUNK_AUDIO[1].wLongsPerEntry is 2\n");
    EXPECT_EQ(outcome.info->status, probe::kOk);
}

TEST(Avi, IndexEntries) {
    expectFields(std::to_array<FieldCase>({
        {"avi_opendml_last_entry_cut_by_the_file_counts_with_zeros", &R::videoBitRate,
         (1000 + 5000) * 8 / 80 * 1000},
        {"avi_opendml_last_entry_without_its_size_holds_nothing", &R::videoBitRate,
         1000 * 8 / 80 * 1000},
        {"avi_opendml_only_entry_cut_keeps_its_offset", &R::videoBitRate, 1000 * 8 / 40 * 1000},
        {"avi_opendml_only_entry_cut_keeps_its_offset", &R::pixelAspectX, 11},
        {"avi_opendml_only_entry_cut_in_its_offset", &R::videoBitRate, 0},
        {"avi_opendml_only_entry_cut_in_its_offset", &R::pixelAspectX, 11},
        {"avi_two_hdrl_lists_with_the_same_opendml_index", &R::videoBitRate,
         (4000 + 8000) * 8 / 80 * 1000},
        {"avi_idx1_offset_of_the_movi_word_is_relative", &R::pixelAspectX, 11},
    }));
}

TEST(Avi, ValuesBeyond32BitsBecomeTheHighest) {
    expectFields(std::to_array<FieldCase>({
        {"avi_video_bit_rate_beyond_32_bits", &R::videoBitRate, kHighest},
        {"avi_audio_bit_rate_beyond_32_bits", &R::audioBitRate, kHighest},
    }));
    // A million pictures of 71 minutes each, declared by an index that the file does not hold.
    const Bytes hdrl =
        list("hdrl", join({avih(0xFFFFFFFF), videoList("XVID", 64, 48,
                                                       join({superIndex("00dc", {{200'000, 0}}),
                                                             chunk("JUNK", Bytes(64))}))}));
    Bytes bytes = riff("AVI ", join({hdrl, chunk("JUNK", Bytes(4'300'000))}));
    const Bytes index = standardIndex("00dc", 300'000, {}, 1'050'000);
    std::ranges::copy(index, bytes.begin() + 200'000);
    const Outcome outcome = probeBytes(bytes);
    EXPECT_EQ(outcome.info->status, probe::kOk);
    EXPECT_EQ(outcome.info->durationSeconds, kHighest);
    EXPECT_EQ(outcome.info->frameTimeMicroseconds, 0xFFFFFFFFu);
}

TEST(Wave, APlayTimeBeyond32BitsBecomesTheHighest) {
    const Bytes bytes = sample("wave_bit_rate_wraps_at_32_bits").build();
    TestFile file(bytes);
    file.claimedSize = std::uint64_t{5} << 30;
    const Outcome outcome = probeFile(file);
    EXPECT_EQ(outcome.info->audioBitRate, 8u);
    EXPECT_EQ(outcome.info->durationSeconds, kHighest);
}

}  // namespace
}  // namespace probe_test
