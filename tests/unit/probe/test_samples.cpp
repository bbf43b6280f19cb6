// What holds for every sample: its kind, its golden dump, and the standing sweeps.
#include <gtest/gtest.h>

#include <set>
#include <span>

#include "golden.h"
#include "probing.h"

namespace probe_test {
namespace {

using probe::MediaInfo;
using probe::Result;

// A budget that every probe keeps, whatever the file: a few passes over it, in which a read of less
// than a sector counts as one.
constexpr std::uint64_t kPasses = 4;
constexpr std::uint64_t kFixedBytes = 16 * 65536;

std::string faultOf(const Outcome& outcome, std::uint64_t fileBytes) {
    const MediaInfo& info = *outcome.info;
    if (info.status != probe::kOk && info.status != probe::kNotParsed &&
        info.status != probe::kFail && info.status != probe::kOutOfMemory) {
        return "status " + std::to_string(info.status);
    }
    for (const auto* text :
         {info.title, info.artist, info.album, info.track, info.genre, info.composer, info.year}) {
        if (text[probe::kTextLength - 1] != u'\0') {
            return "a text without its end";
        }
    }
    if (info.fileSizeHigh != 0) {
        return "fileSizeHigh";
    }
    if (outcome.cost > kPasses * fileBytes + kFixedBytes) {
        return std::to_string(outcome.bytesRead) + " bytes read in " +
               std::to_string(outcome.reads) + " reads";
    }
    return {};
}

class EverySample : public testing::TestWithParam<std::string> {};

TEST_P(EverySample, IsOfItsKindAndGivesItsGoldenDump) {
    const Sample& one = sample(GetParam());
    const Outcome outcome = probeBytes(one.build());
    EXPECT_EQ(outcome.claimed, one.kind == Kind::Refused ? 0 : 1);
    if (one.kind == Kind::Good) {
        EXPECT_EQ(outcome.info->status, probe::kOk);
        EXPECT_NE(outcome.info->containerType, 0u);
    }
    EXPECT_EQ(compareWithGolden(one.name, dump(outcome)), "");
}

// Every prefix of a small file; of a larger one the first and last 300 and steps between.
TEST_P(EverySample, EveryPrefixEnds) {
    const Bytes whole = sample(GetParam()).build();
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        if (whole.size() > 3000 && length > 300 && length + 300 < whole.size() &&
            length % 97 != 0) {
            continue;
        }
        if (whole.size() > 100000 && length > 300 && length + 50 < whole.size() &&
            length % 4999 != 0) {
            continue;
        }
        const Bytes bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_EQ(faultOf(probeBytes(bytes), length), "") << "prefix of " << length;
    }
}

TEST_P(EverySample, EveryFailingReadEnds) {
    const Bytes bytes = sample(GetParam()).build();
    const std::uint64_t reads = probeBytes(bytes).reads;
    for (std::uint64_t failing = 1; failing <= reads && failing <= 200; ++failing) {
        TestFile file(bytes);
        file.failAtRead = failing;
        EXPECT_EQ(faultOf(probeFile(file), bytes.size()), "") << "read " << failing;
    }
}

TEST_P(EverySample, ShortReadsEnd) {
    const Bytes bytes = sample(GetParam()).build();
    for (const std::size_t longest : {0u, 1u, 8u, 15u, 64u, 255u, 256u, 1000u, 5000u}) {
        TestFile file(bytes);
        file.longestRead = longest;
        EXPECT_EQ(faultOf(probeFile(file), bytes.size()), "") << "reads of " << longest;
    }
}

// The file says that it is larger than it is, up to beyond 4 GiB.
TEST_P(EverySample, ATooLargeSizeEnds) {
    const Bytes bytes = sample(GetParam()).build();
    for (const std::uint64_t size : {std::uint64_t{bytes.size()} + 100000, std::uint64_t{1} << 31,
                                     (std::uint64_t{1} << 32) + 300}) {
        TestFile file(bytes);
        file.claimedSize = size;
        EXPECT_EQ(faultOf(probeFile(file), bytes.size()), "") << "size " << size;
    }
}

// Every aligned and unaligned 32-bit place of the head and the tail set to extremes, which takes
// in every size and count field; both byte orders. What makes a sample large comes many times, and
// takes its time at every place: there the head alone will do.
TEST_P(EverySample, ExtremeFieldsEnd) {
    Bytes bytes = sample(GetParam()).build();
    const std::size_t swept = bytes.size() > 100000 ? 64 : bytes.size() > 30000 ? 120 : 700;
    constexpr std::uint8_t kValues[][4] = {{0xFF, 0xFF, 0xFF, 0xFF},
                                           {0x7F, 0xFF, 0xFF, 0xFF},
                                           {0xFF, 0xFF, 0xFF, 0x7F},
                                           {0, 0, 0, 0},
                                           {0, 0, 0, 1},
                                           {1, 0, 0, 0},
                                           {0, 0, 0, 7},
                                           {7, 0, 0, 0}};
    // What 32 bits change is where large sizes wrap; a program for them is emulated, and slow.
    constexpr std::size_t kAsked = sizeof(void*) == 4 ? 3 : std::size(kValues);
    for (std::size_t at = 0; at + 4 <= bytes.size(); ++at) {
        if (at > swept && at + swept / 2 < bytes.size()) {
            at = bytes.size() - swept / 2;
        }
        const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        const Bytes original(place, place + 4);
        for (const auto& value : std::span(kValues).first(kAsked)) {
            std::copy(std::begin(value), std::end(value), place);
            ASSERT_EQ(faultOf(probeBytes(bytes), bytes.size()), "")
                << "at " << at << " byte " << static_cast<int>(value[0]);
        }
        std::copy(original.begin(), original.end(), place);
    }
}

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const Sample& one : samples()) {
        all.push_back(one.name);
    }
    return all;
}

INSTANTIATE_TEST_SUITE_P(Probe, EverySample, testing::ValuesIn(names()),
                         [](const auto& one) { return one.param; });

TEST(Samples, AreManyAndHaveNamesOfTheirOwn) {
    std::set<std::string> seen;
    for (const Sample& one : samples()) {
        EXPECT_TRUE(seen.insert(one.name).second) << one.name;
    }
    EXPECT_GE(seen.size(), 100u);
}

}  // namespace
}  // namespace probe_test
