// The sums over the sample tables of an MP4 file, against sums done one entry at a time.
#include <gtest/gtest.h>

#include <vector>

#include "build_mp4.h"
#include "probing.h"

namespace probe_test {
namespace {

using Words = std::vector<std::uint32_t>;

Bytes tableOf(std::string_view type, std::size_t rows, const Words& words) {
    Builder b;
    b.be32(0);
    if (type == "stsz") {
        b.be32(0);
    }
    b.be32(rows);
    for (const std::uint32_t word : words) {
        b.be32(word);
    }
    return box(type, b.take());
}

// One picture track of these sizes, which lasts 4,000,000 seconds, in `chunks` chunks.
Bytes fileOf(const Words& sizes, const Words& runs, std::uint32_t chunks) {
    const Bytes stbl =
        join({stsd(1, visualEntry("mp4v", 64, 48)), table("stts", 1, {1, 4'000'000}),
              tableOf("stsz", sizes.size(), sizes), tableOf("stsc", runs.size() / 3, runs),
              tableOf("stco", chunks, Words(chunks, 100))});
    return join(
        {ftyp("isom", "isom"), box("moov", track("vide", 1, stbl)), box("free", Bytes(300))});
}

TEST(Mp4Tables, SizesOfEveryLengthAreAddedUp) {
    for (const std::size_t count : {1u, 3u, 4u, 7u, 1023u, 1024u, 1025u, 1027u, 20001u, 40003u}) {
        Words sizes;
        std::uint64_t sum = 0;
        for (std::size_t i = 0; i < count; ++i) {
            // Each byte of a number runs through its values at a pace of its own.
            const auto n = static_cast<std::uint32_t>(i);
            sizes.push_back(((n * 7) << 24) | ((255 - n % 256) << 16) | ((n * 13 & 255) << 8) |
                            (n & 255));
            sum += sizes.back();
        }
        const Outcome outcome =
            probeBytes(fileOf(sizes, {1, static_cast<std::uint32_t>(count), 1}, 1));
        ASSERT_EQ(outcome.info->status, probe::kOk) << count;
        EXPECT_EQ(outcome.info->videoBitRate,
                  static_cast<std::uint32_t>(sum * 8 / 4'000'000'000 * 1000))
            << count;
    }
}

TEST(Mp4Tables, SizesOfAllOnesAreAddedUp) {
    const Words sizes(30'000, 0xFFFFFFFF);
    const Outcome outcome = probeBytes(fileOf(sizes, {1, 30'000, 1}, 1));
    const std::uint64_t sum = 30'000 * std::uint64_t{0xFFFFFFFF};
    EXPECT_EQ(outcome.info->videoBitRate,
              static_cast<std::uint32_t>(sum * 8 / 4'000'000'000 * 1000));
}

TEST(Mp4Tables, ValuesBeyond32BitsBecomeTheHighest) {
    // One picture of 400 days and one of 2,000,000,000 bytes in a millisecond.
    const auto file = [](std::uint32_t timescale, std::uint32_t ticks, std::uint32_t bytes) {
        const Bytes stbl =
            join({stsd(1, visualEntry("mp4v", 64, 48)), table("stts", 1, {1, ticks}),
                  stsz(bytes, 1), table("stsc", 1, {1, 1, 1}), table("stco", 1, {100})});
        return join({ftyp("isom", "isom"), box("moov", track("vide", timescale, stbl)),
                     box("free", Bytes(300))});
    };
    const Outcome slow = probeBytes(file(1, 400 * 86'400, 1000));
    EXPECT_EQ(slow.info->durationSeconds, 400u * 86'400);
    EXPECT_EQ(slow.info->frameTimeMicroseconds, 0xFFFFFFFFu);
    const Outcome fast = probeBytes(file(1000, 1, 2'000'000'000));
    EXPECT_EQ(fast.info->videoBitRate, 0xFFFFFFFFu);
    EXPECT_EQ(fast.info->frameTimeMicroseconds, 1000u);
}

TEST(Mp4Tables, APlayTimeBeyond32BitsBecomesTheHighest) {
    // Three entries of 2^31 frames that last a second each.
    const Bytes stbl = join({stsd(1, audioEntry("mp4a", 2, 44100)),
                             table("stts", 3, {1u << 31, 1, 1u << 31, 1, 1u << 31, 1}), stsz(1, 1),
                             table("stsc", 1, {1, 1, 1}), table("stco", 1, {100})});
    const Outcome outcome = probeBytes(
        join({ftyp("isom", "isom"), box("moov", track("soun", 1, stbl)), box("free", Bytes(300))}));
    EXPECT_EQ(outcome.info->durationSeconds, 0xFFFFFFFFu);
}

struct RunCase {
    const char* name;
    std::uint32_t samples;
    std::uint32_t chunks;
    Words runs;  // first chunk, samples per chunk, description
    bool good;
};

class Runs : public testing::TestWithParam<RunCase> {};

TEST_P(Runs, HoldTheSamplesOrFail) {
    const RunCase& one = GetParam();
    const Outcome outcome = probeBytes(fileOf(Words(one.samples, 1), one.runs, one.chunks));
    EXPECT_EQ(outcome.info->status, one.good ? probe::kOk : probe::kNotParsed);
    EXPECT_EQ(outcome.lines, one.good ? "" : "[ERROR] MP4Demux SetSampleOffset-VIDEO\n");
}

INSTANTIATE_TEST_SUITE_P(
    Mp4Tables, Runs,
    testing::Values(
        RunCase{"exactly", 9, 4, {1, 2, 1, 4, 3, 1}, true},
        RunCase{"one_short", 10, 4, {1, 2, 1, 4, 3, 1}, false},
        RunCase{"second_run_begins_behind_the_chunks", 8, 4, {1, 2, 1, 9, 3, 1}, true},
        RunCase{"runs_behind_the_chunks_hold_nothing", 9, 4, {1, 2, 1, 9, 3, 1, 12, 3, 1}, false},
        RunCase{"chunks_before_the_first_run_hold_nothing", 3, 2, {2, 2, 1}, false},
        RunCase{"same_first_chunk_twice", 1, 4, {1, 2, 1, 1, 3, 1}, false},
        RunCase{"falling", 1, 4, {1, 2, 1, 3, 3, 1, 2, 3, 1}, false},
        RunCase{"falling_behind_the_chunks", 1, 4, {1, 9, 1, 7, 3, 1, 6, 3, 1}, false},
        RunCase{"first_chunk_0", 1, 4, {0, 2, 1}, false},
        RunCase{"largest_numbers", 5, 2, {1, 0xFFFFFFFF, 1, 0xFFFFFFFF, 1, 1}, true}),
    [](const auto& one) { return std::string(one.param.name); });

}  // namespace
}  // namespace probe_test
