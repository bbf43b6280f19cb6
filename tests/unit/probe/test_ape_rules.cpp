// The tag that an APE file ends with, at its edges.
#include <gtest/gtest.h>

#include <string>

#include "build_audio.h"
#include "probing.h"

namespace probe_test {
namespace {

TEST(ApeRules, AMillisecondHasABitRate) {
    const auto rateOf = [](std::uint32_t blocks) {
        return probeBytes(audio::ape({.finalFrameBlocks = blocks, .totalFrames = 1}))
            .info->audioBitRate;
    };
    EXPECT_EQ(rateOf(44), 0u);
    EXPECT_EQ(rateOf(45), 500u * 8000) << "500 bytes in a millisecond";
}

TEST(ApeRules, OnlyTheCountedItemsAreRead) {
    for (std::uint32_t count = 0; count <= 3; ++count) {
        Builder tag;
        tag.bytes(audio::apeTag({{"Title", "T"}, {"Artist", "A"}, {"Album", "B"}}));
        tag.patchLe32(tag.size() - 16, count);
        const Outcome outcome = probeBytes(audio::apeWith(tag.take()));
        EXPECT_EQ(outcome.info->hasTitle, count >= 1 ? 1u : 0u);
        EXPECT_EQ(outcome.info->hasArtist, count >= 2 ? 1u : 0u);
        EXPECT_EQ(outcome.info->hasAlbum, count >= 3 ? 1u : 0u);
        EXPECT_EQ(outcome.info->status, probe::kOk);
    }
}

// The items end where the footer begins; one that reaches further is none, nor is what follows it.
TEST(ApeRules, AnItemThatReachesIntoTheFooterEndsThem) {
    const Bytes tag = audio::apeTag({{"Genre", "G"}, {"Title", "T"}});
    constexpr std::size_t kBehindGenre = 1 + 4 + 4 + 6 + 1;  // the value, and the other item
    for (const std::size_t size :
         {std::size_t{1}, kBehindGenre, kBehindGenre + 1, kBehindGenre + 32, std::size_t{5000}}) {
        Builder patched;
        patched.bytes(tag).patchLe32(0, size);
        const Outcome outcome = probeBytes(audio::apeWith(patched.take()));
        EXPECT_EQ(outcome.info->hasGenre, size <= kBehindGenre ? 1u : 0u) << size;
        EXPECT_EQ(outcome.info->hasTitle, size == 1 ? 1u : 0u) << size;
    }
}

// However much of the value or of other items there is to be had before the footer.
TEST(ApeRules, ALongItemThatReachesIntoTheFooterIsNone) {
    const std::string longText(1000, 'x');
    const Bytes tag = audio::apeTag({{"Genre", ""}, {"Title", "T"}, {"Album", longText}});
    const std::size_t behindGenre = tag.size() - 32 - (4 + 4 + 6);
    for (const std::size_t more : {std::size_t{0}, std::size_t{1}, std::size_t{32}}) {
        Builder patched;
        patched.bytes(tag).patchLe32(0, behindGenre + more);
        const Outcome outcome = probeBytes(audio::apeWith(patched.take()));
        EXPECT_EQ(outcome.info->hasGenre, more == 0 ? 1u : 0u) << more;
        EXPECT_EQ(outcome.info->hasTitle, 0u) << more;
        EXPECT_EQ(outcome.info->hasAlbum, 0u) << more;
    }
}

TEST(ApeRules, ATagIsKnownByAllOfItsName) {
    const Bytes tag = audio::apeTag({{"Title", "T"}});
    for (std::size_t letter = 0; letter <= 8; ++letter) {
        Bytes other = tag;
        other[tag.size() - 32 + letter] ^= letter < 8 ? 1 : 0;
        EXPECT_EQ(probeBytes(audio::apeWith(other)).info->hasTitle, letter < 8 ? 0u : 1u) << letter;
    }
}

TEST(ApeRules, ATagMayBeAsLargeAsTheFile) {
    const Bytes whole = audio::apeWith(audio::apeTag({{"Title", "T"}}));
    for (const std::size_t more : {0u, 1u}) {
        Builder bytes;
        bytes.bytes(whole).patchLe32(whole.size() - 20, whole.size() + more);
        EXPECT_EQ(probeBytes(bytes.take()).info->status, more == 0 ? probe::kOk : probe::kFail);
    }
}

}  // namespace
}  // namespace probe_test
