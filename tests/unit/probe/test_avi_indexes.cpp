// Where the indexes of an AVI file end, and what of them is read.
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
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

// Two pictures, and one standard index with nothing or a chunk behind it. The offset of its first
// entry is put in: that of the second picture.
Indexed withStandardIndex(Entries entries, std::uint32_t count, std::size_t between = 0,
                          const Bytes& behind = {}, std::string_view id = "00dc") {
    Indexed made;
    // Twice: first to learn where the index lies.
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
        made.bytes = aviWithIndex(
            headers,
            join({pictures, chunk("JUNK", Bytes(between)), standardIndex(id, 0, entries, count)}),
            behind);
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

// Its last block as well is no longer than what is left of it.
TEST(AviStandardIndex, OfManyBlocksEndsWithItsCount) {
    const Bytes behind = chunk("JUNK", Bytes(100'000, 0x11));
    for (const std::uint32_t count : {8191u, 8192u, 8193u, 20'000u}) {
        const Entries entries(count, {7, 100});
        const Outcome outcome = probeBytes(withStandardIndex(entries, count, 0, behind).bytes);
        EXPECT_EQ(outcome.info->videoBitRate, rateOf(std::uint64_t{count} * 100, count)) << count;
    }
}

TEST(AviStandardIndex, IsOfPicturesByTheLastTwoLettersOfItsName) {
    const Entries entries = {{7, 5000}};
    const auto rateFor = [&entries](std::string_view id) {
        return probeBytes(withStandardIndex(entries, 1, 0, {}, id).bytes).info->videoBitRate;
    };
    for (const std::string_view id : {"00dc", "00db", "07dc", "xxdb"}) {
        EXPECT_EQ(rateFor(id), 5000u * 8 * 1000) << id;
    }
    for (const std::string_view id : {"00dd", "00dC", "00wb", "00tx", "dc00",
                                      "00\xE4"
                                      "c",
                                      "00d\xE3", "00Dc", "00d\xE2"}) {
        EXPECT_EQ(rateFor(id), 0u) << id;
    }
}

// A super index leads anywhere. Behind the file's end stand zeros, an index of no entries; an
// offset of 32 one bits is what a seek that fails answers with.
TEST(AviStandardIndex, MayBeginAnywhere) {
    struct Case {
        std::uint64_t offset;
        std::uint32_t containerType;
    };
    for (const Case& one :
         {Case{0x7FFFFFFE, 1}, Case{0x7FFFFFFF, 1}, Case{0xFFFFFFFE, 1}, Case{0xFFFFFFFF, 0},
          Case{0x1'7FFFFFFF, 1}, Case{0x1'FFFFFFFF, 0}, Case{0x7FFFFFFF'FFFFFFFE, 1},
          // At the second byte of the file stands a count of more than memory holds.
          Case{1, 0}}) {
        const Bytes super =
            join({superIndex("00dc", {{one.offset, 32}}), chunk("JUNK", Bytes(64))});
        const Bytes bytes =
            aviWithIndex(join({avih(kPace), videoList("XVID", 64, 48, super)}), Bytes(64), {});
        EXPECT_EQ(probeBytes(bytes).info->containerType, one.containerType) << one.offset;
    }
}

// Of a super index the entries that the header list holds are followed, to the last one, and no
// more: another one would lead to the file's start, where no index is.
TEST(AviStandardIndex, AsManyAsTheHeaderListHolds) {
    for (std::size_t held = 14; held <= 18; ++held) {
        for (const std::uint32_t more : {0u, 1u, 100u}) {
            std::vector<SuperEntry> entries(held, SuperEntry{0x7FFF0000, 32});
            const auto count = static_cast<std::uint32_t>(held) + more;
            Bytes bytes;
            for (int pass = 0; pass < 2; ++pass) {
                const Bytes super = superIndex("00dc", entries, 4, count);
                const Bytes headers = join({avih(kPace), videoList("XVID", 64, 48, super)});
                entries.back().offset = moviTypeAt(headers) + 4;
                bytes = aviWithIndex(headers, standardIndex("00wb", 0, {}, 5000), {});
            }
            const Outcome outcome = probeBytes(bytes);
            EXPECT_EQ(outcome.info->containerType, 1u) << held << ' ' << more;
            EXPECT_EQ(outcome.info->durationSeconds, 5u) << held << ' ' << more;
        }
    }
}

TEST(AviStandardIndex, ItsHeaderIsReadOnce) {
    // Far behind what is at hand: the walk's own reads, then header and entry.
    const Bytes indexed = withStandardIndex({{0, 64}}, 1, 100'000).bytes;
    Bytes plain = indexed;
    constexpr std::string_view kSuperIndex = "indx";
    const auto at = std::search(plain.begin(), plain.end(), kSuperIndex.begin(), kSuperIndex.end());
    ASSERT_NE(at, plain.end());
    *at = 'x';
    TestFile without(plain), with(indexed);
    probeFile(without);
    probeFile(with);
    EXPECT_EQ(with.reads, without.reads + 2);
}

TEST(AviStandardIndex, ItsHeaderOrEntryThatCannotBeReadFails) {
    const Indexed made = withStandardIndex({{0, 64}}, 1, 100'000);
    ASSERT_EQ(probeBytes(made.bytes).info->containerType, 1u);
    for (const std::size_t at : {made.index + 31, made.index + 32}) {
        EXPECT_EQ(probeWithBad(made.bytes, at).info->containerType, 0u) << at;
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
    EXPECT_EQ(probeWithBad(bytes, at, 32).info->containerType, 0u);
}

// An idx1 of these entries behind a picture, with `behind` after it; where the idx1's entries
// begin.
Indexed withIdx1(std::uint32_t entries, std::size_t before, const Bytes& behind,
                 std::uint32_t claimed = 0) {
    const Bytes headers = join({avih(kPace), videoList("XVID", 64, 48)});
    Builder index;
    for (std::uint32_t i = 0; i < entries; ++i) {
        index.bytes(idx1Entry("00dc", 4, 100));
    }
    Builder body;
    body.text("idx1").le32(claimed != 0 ? claimed : index.size()).bytes(index.view());
    const Bytes movi = join({chunk("00dc", volPayload(3)), chunk("JUNK", Bytes(before))});
    Indexed made;
    made.index = moviTypeAt(headers) + 4 + movi.size() + 8;
    made.bytes = aviWithIndex(headers, movi, join({body.view(), behind}));
    return made;
}

TEST(AviIdx1, OfManyBlocksEndsWithItsSize) {
    Builder more;
    more.fill(8);  // so that what follows stands where entries would
    for (int i = 0; i < 9000; ++i) {
        more.bytes(idx1Entry("00dc", 4, 70'000));
    }
    const Bytes behind = chunk("JUNK", more.take());
    for (const std::uint32_t count : {4095u, 4096u, 4097u, 9000u}) {
        const Outcome outcome = probeBytes(withIdx1(count, 0, behind).bytes);
        EXPECT_EQ(outcome.info->videoBitRate, rateOf(std::uint64_t{count} * 100, count)) << count;
        EXPECT_EQ(outcome.info->durationSeconds, count / 1000) << count;
    }
}

// A file that turns out shorter than its size ends the index where it ends.
TEST(AviIdx1, EndsWhereTheFileDoes) {
    const Indexed made = withIdx1(1200, 0, {});
    for (const std::size_t missing : {0u, 1u, 15u, 16u, 17u, 3200u}) {
        const Bytes bytes = withoutLast(made.bytes, missing);
        TestFile file(bytes);
        file.claimedSize = made.bytes.size();
        const Outcome outcome = probeFile(file);
        EXPECT_EQ(outcome.info->containerType, 1u) << missing;
        const std::uint32_t held = 1200 - (static_cast<std::uint32_t>(missing) + 15) / 16;
        EXPECT_EQ(outcome.info->videoBitRate, rateOf(std::uint64_t{held} * 100, held)) << missing;
    }
}

// The file's end cuts its last entry, which begins a sector that cannot be read.
TEST(AviIdx1, ACutEntryThatCannotBeReadFails) {
    constexpr std::size_t kSector = 512;
    const std::size_t begin = withIdx1(8, 0, {}).index + 8 * 16 - 16;
    const std::size_t before = kSector - begin % kSector;
    Indexed made = withIdx1(8, before, {}, 8 * 16);
    made.bytes.resize(made.index + 7 * 16 + 5);
    ASSERT_EQ((made.index + 7 * 16) % kSector, 0u);
    ASSERT_EQ(probeBytes(made.bytes).info->containerType, 1u);
    EXPECT_EQ(probeWithBad(made.bytes, made.index + 7 * 16).info->containerType, 0u);
}

// Where the entries count from is read of the first one, even where there is none.
TEST(AviIdx1, AFirstOffsetThatCannotBeReadFails) {
    constexpr std::size_t kSector = 512;
    const Bytes behind = chunk("JUNK", Bytes(3000));
    const std::size_t before = kSector - (withIdx1(0, 0, behind).index + 8) % kSector;
    const Indexed made = withIdx1(0, before, behind);
    ASSERT_EQ((made.index + 8) % kSector, 0u);
    ASSERT_EQ(probeBytes(made.bytes).info->containerType, 1u);
    EXPECT_EQ(probeWithBad(made.bytes, made.index + 8).info->containerType, 0u);
}

}  // namespace
}  // namespace probe_test
