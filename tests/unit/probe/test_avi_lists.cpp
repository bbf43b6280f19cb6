// What the header lists of an AVI file hold, and where they and what stands in them end.
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "build_riff.h"
#include "probing.h"

namespace probe_test {
namespace {

constexpr std::uint32_t kPace = 0x03020100;  // microseconds a picture, each byte another

// A header list, four pictures and their idx1.
Bytes fourPictures(const Bytes& headers) {
    return avi(headers, volPayload(3), 4);
}

std::uint32_t paceOf(const Bytes& headers) {
    return probeBytes(fourPictures(headers)).info->frameTimeMicroseconds;
}

// The main header behind words of zeros, which some writers fill up with.
TEST(AviLists, WordsOfZerosArePassedOver) {
    for (std::size_t words = 0; words <= 3; ++words) {
        const Bytes headers = join({Bytes(4 * words), avih(kPace), videoList("XVID", 64, 48)});
        const Outcome outcome = probeBytes(fourPictures(headers));
        EXPECT_EQ(outcome.info->frameTimeMicroseconds, kPace) << words;
        EXPECT_EQ(outcome.info->videoWidth, 64u) << words;
    }
}

// A list may end within a number: what is behind its end is no part of it.
TEST(AviLists, ANumberThatTheListsEndCutsIsFilledWithZeros) {
    constexpr std::uint32_t kBehindNumber = 4 + 8 + 4;
    for (std::uint32_t missing = 0; missing <= 3; ++missing) {
        Builder bytes;
        bytes.bytes(fourPictures(join({avih(kPace), videoList("XVID", 64, 48)})));
        const Bytes whole = bytes.view();
        // The rest of the list becomes a chunk that is passed over.
        const std::uint32_t size = kBehindNumber - missing;
        const std::uint32_t rest = whole[16] | whole[17] << 8;
        bytes.patchLe32(16, size);
        Bytes cut = bytes.take();
        const Bytes junk = Builder().text("JUNK").le32(rest - size - 8).take();
        ASSERT_GT(rest, size + 8);
        std::copy(junk.begin(), junk.end(), cut.begin() + 20 + size);
        // Where the size of that chunk stands over the number's last bytes, those are the chunk's.
        EXPECT_EQ(probeBytes(cut).info->frameTimeMicroseconds, kPace & (0xFFFFFFFFu >> 8 * missing))
            << missing;
    }
}

// The children of a stream list are walked by their sizes: nothing in them is a child.
TEST(AviLists, WhatAChildHoldsIsNoChild) {
    const Bytes damaged = chunk("indx", Bytes(39));
    ASSERT_EQ(paceOf(join({avih(kPace), videoList("XVID", 64, 48, chunk("JUNK", Bytes(80)))})),
              kPace);
    ASSERT_EQ(paceOf(join({avih(kPace),
                           videoList("XVID", 64, 48, join({damaged, chunk("JUNK", Bytes(80))}))})),
              0u);
    for (const char* name : {"strn", "strd", "JUNK", "vprp"}) {
        for (const std::size_t before : {0u, 250u, 600u, 70'000u}) {
            const Bytes child = chunk(name, join({Bytes(before), damaged, Bytes(80)}));
            const Bytes video = videoList("XVID", 64, 48, join({child, chunk("JUNK", Bytes(80))}));
            EXPECT_EQ(paceOf(join({avih(kPace), video})), kPace) << name << ' ' << before;
        }
    }
}

TEST(AviLists, CodecDataBehindTheFormatIsNoChild) {
    const Bytes damaged = chunk("indx", Bytes(39));
    for (const std::size_t behind : {0u, 80u}) {
        const Bytes format = join({bitmapFormat("XVID", 64, 48), Bytes(8), damaged, Bytes(behind)});
        const Bytes children =
            join({strh("vids"), chunk("strf", format), chunk("JUNK", Bytes(80))});
        EXPECT_EQ(paceOf(join({avih(kPace), list("strl", children)})), kPace) << behind;
    }
}

// Streams beyond the eight of sound and the one of pictures are walked for their faults alone.
TEST(AviLists, EightStreamsOfSoundAreKept) {
    for (const std::size_t count : {7u, 8u, 9u, 20u}) {
        Builder headers;
        headers.bytes(avih(kPace)).bytes(videoList("XVID", 64, 48));
        headers.bytes(videoList("DX50", 128, 96));
        for (std::size_t i = 0; i < count; ++i) {
            headers.bytes(audioList(static_cast<std::uint16_t>(0x55 + i), 2, 44100, 16000,
                                    chunk("JUNK", Bytes(64))));
        }
        const Outcome outcome = probeBytes(fourPictures(headers.take()));
        EXPECT_EQ(outcome.info->audioFormatTag, 0x55u) << count;
        EXPECT_EQ(outcome.info->videoWidth, 64u) << count;
    }
}

// Lost, the walk goes on one byte behind each header of zeros, over so many of them and no more;
// each chunk begins to count again. Behind the last of them is less than a header.
TEST(AviLists, ZerosAreWalkedOverAsFarAs4096Headers) {
    const Bytes known[] = {{}, chunk("JUNK", Bytes(16)), chunk("idx1", {}), list("INFO", {})};
    for (const Bytes& before : known) {
        for (const std::size_t headers : {4095u, 4096u, 4097u}) {
            const Outcome outcome =
                probeBytes(riff("AVI ", join({before, Bytes(9 * headers + 8)})));
            EXPECT_EQ(outcome.info->containerType, headers <= 4096 ? 1u : 0u)
                << before.size() << ' ' << headers;
        }
    }
}

}  // namespace
}  // namespace probe_test
