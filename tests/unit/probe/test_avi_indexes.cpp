// Where the indexes of an AVI file end, and what of them is read.
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "build_riff.h"
#include "probing.h"

namespace probe_test {
namespace {

using Entries = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

constexpr std::uint32_t kPace = 1000;  // microseconds a picture
constexpr std::size_t kEntry = 8;      // of a standard index: offset and size

struct Indexed {
    Bytes bytes;
    std::size_t index = 0;  // where the standard index begins
};

// Two pictures, and one standard index that ends the file. The offset of its first entry is put
// in: that of the second picture.
Indexed withStandardIndex(Entries entries, std::uint32_t count, std::size_t between = 0) {
    Indexed made;
    for (int pass = 0; pass < 2; ++pass) {
        const Bytes headers = join(
            {avih(kPace),
             videoList("XVID", 64, 48,
                       join({superIndex("00dc", {{made.index, 32}}), chunk("JUNK", Bytes(64))}))});
        const Bytes pictures = join({chunk("00dc", volPayload(3)), chunk("00dc", volPayload(5))});
        const std::uint32_t movi = moviTypeAt(headers) + 4;
        if (!entries.empty()) {
            entries[0].first = movi + static_cast<std::uint32_t>(pictures.size() / 2) + 8;
        }
        made.index = movi + pictures.size() + 8 + between;
        made.bytes = aviWithIndex(headers,
                                  join({pictures, chunk("JUNK", Bytes(between)),
                                        standardIndex("00dc", 0, entries, count)}),
                                  {});
    }
    return made;
}

// Bits a second of so many pictures that hold `bytes` bytes together.
std::uint32_t rateOf(std::uint64_t bytes, std::uint32_t count) {
    return static_cast<std::uint32_t>(bytes * 8 / (count * kPace / 1000) * 1000);
}

TEST(AviStandardIndex, OfManyBlocksCountsEveryEntry) {
    // More than two blocks of 65,536 bytes; no two neighbours alike.
    Entries entries;
    std::uint32_t bytes = 0;
    for (std::uint32_t i = 0; i < 20'000; ++i) {
        const std::uint32_t size = i % 7 * 0x1001 + 5;
        entries.emplace_back(0x01020304, size | (i % 3 == 0 ? 0x80000000 : 0));
        bytes += size;
    }
    const Outcome outcome = probeBytes(withStandardIndex(entries, 20'000).bytes);
    EXPECT_EQ(outcome.info->videoBitRate, rateOf(bytes, 20'000));
    EXPECT_EQ(outcome.info->durationSeconds, 20u);
    EXPECT_EQ(outcome.info->pixelAspectX, 33u) << "the first entry leads to the first picture";
}

// What the file does not hold counts as 0, and is not read however much the index declares. The
// first entry's offset is there, or the picture could not be found.
TEST(AviStandardIndex, EndsWithTheFile) {
    const Entries entries = {{0, 0x11111}, {7, 0x22222}, {7, 0x33333}, {7, 0x44444}};
    for (const std::uint32_t count : {4u, 5u, 1'000'000u}) {
        for (std::size_t cut = 0; cut <= 4 * kEntry - 4; ++cut) {
            const Bytes bytes = withoutLast(withStandardIndex(entries, count).bytes, cut);
            std::uint32_t held = 0;
            for (std::size_t i = 0; i < 4; ++i) {
                const std::size_t size = i * kEntry + 4, end = 4 * kEntry - cut;
                for (std::size_t byte = 0; byte < 4 && size + byte < end; ++byte) {
                    held += entries[i].second & 0xFFu << 8 * byte;
                }
            }
            const Outcome outcome = probeBytes(bytes);
            EXPECT_EQ(outcome.info->containerType, 1u) << count << ' ' << cut;
            if (count <= 5) {
                EXPECT_EQ(outcome.info->frameTimeMicroseconds, kPace) << count << ' ' << cut;
                EXPECT_EQ(outcome.info->videoBitRate, rateOf(held, count)) << cut;
            }
            EXPECT_EQ(outcome.info->durationSeconds, count / 1000) << cut;
        }
    }
}

TEST(AviStandardIndex, ItsHeaderIsReadOnce) {
    // Far behind what is at hand: the walk's own reads, then header and entry.
    const Indexed none = withStandardIndex({{0, 64}}, 0, 100'000);
    const Indexed one = withStandardIndex({{0, 64}}, 1, 100'000);
    TestFile without(none.bytes), with(one.bytes);
    probeFile(without);
    probeFile(with);
    EXPECT_EQ(with.reads, without.reads + 1) << "the entry alone";
}

TEST(AviStandardIndex, ItsHeaderOrEntryThatCannotBeReadFails) {
    const Indexed made = withStandardIndex({{0, 64}}, 1, 100'000);
    ASSERT_EQ(probeBytes(made.bytes).info->containerType, 1u);
    for (const std::size_t at : {made.index + 31, made.index + 32}) {
        TestFile file(made.bytes);
        file.badFrom = at;
        file.badTo = at + 1;
        EXPECT_EQ(probeFile(file).info->containerType, 0u) << at;
    }
}

TEST(AviStandardIndex, OfSoundThatCannotBeReadFails) {
    Bytes bytes;
    std::size_t at = 0;
    for (int pass = 0; pass < 2; ++pass) {
        const Bytes super = join({superIndex("01wb", {{at, 32}}), chunk("JUNK", Bytes(64))});
        const Bytes headers =
            join({avih(40000), videoList("XVID", 64, 48), audioList(1, 2, 8000, 32000, super)});
        at = moviTypeAt(headers) + 4 + 8 + 50'000;
        bytes = aviWithIndex(headers,
                             join({chunk("JUNK", Bytes(50'000)), standardIndex("01wb", 0, {{1, 2}}),
                                   chunk("JUNK", Bytes(50'000))}),
                             {});
    }
    ASSERT_EQ(probeBytes(bytes).info->containerType, 1u);
    TestFile file(bytes);
    file.badFrom = at;
    file.badTo = at + 32;
    EXPECT_EQ(probeFile(file).info->containerType, 0u);
}

}  // namespace
}  // namespace probe_test
