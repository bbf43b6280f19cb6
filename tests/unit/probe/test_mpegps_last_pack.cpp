// The search for the last pack of a program stream: how far it goes, and what it prints.
#include "pack_file.h"

namespace probe_test {
namespace {

// From the end in stretches of 4 KiB that double up to 64 KiB, each with the clock's bytes of the
// one behind it.
constexpr std::uint64_t kFirstStep = 4096 - kClockBytes;
constexpr std::uint64_t kLongestStep = 65536 - kClockBytes;
constexpr std::uint64_t kPackBytes = 14;  // of an MPEG-2 pack header without stuffing

TEST(MpegPsLastPack, BeginsBehindTheFirstStartCode) {
    for (const std::uint64_t at : {3u, 4u}) {
        PackFile file(100, [](std::uint64_t) { return kNone; });
        file.over[at] = ps::pack2(900);
        EXPECT_EQ(measure(file).duration, at < 4 ? 0 : 10 * kMillisecond) << at;
        EXPECT_EQ(file.looks, (std::vector<Look>{{4, 96}})) << at;
    }
}

TEST(MpegPsLastPack, IsLookedForOver2MiB) {
    constexpr std::uint64_t kEnd = 5 << 20;
    PackFile file(kEnd, [](std::uint64_t) { return kNone; });
    EXPECT_EQ(measure(file).duration, 0);
    std::vector<Look> looks = {{kEnd - kFirstStep, kFirstStep}};
    for (std::uint64_t step = 2 * kFirstStep, limit = kEnd - kFirstStep; kEnd - limit < 2 << 20;
         step = std::min(step * 2, kLongestStep)) {
        limit -= step;
        looks.push_back({limit, step + kClockBytes});
    }
    EXPECT_EQ(file.looks, looks);
    // The last of them begins here; a pack in front of it is not found.
    for (const std::uint64_t at : {looks.back().offset - 1, looks.back().offset}) {
        file.over = {{at, ps::pack2(900)}};
        EXPECT_EQ(measure(file).duration, at < looks.back().offset ? 0 : 10 * kMillisecond);
    }
}

TEST(MpegPsLastPack, MayLieAcrossTwoLooks) {
    constexpr std::uint64_t kEnd = 1 << 17;
    for (std::uint64_t at = kEnd - kFirstStep - 20; at < kEnd - kFirstStep + 20; ++at) {
        PackFile file(kEnd, [](std::uint64_t) { return kNone; });
        file.over[kPackEvery] = ps::pack2(90);
        file.over[at] = ps::pack2(900);
        EXPECT_EQ(measure(file).duration, 10 * kMillisecond) << kEnd - at;
    }
}

TEST(MpegPsLastPack, IsTheLastOfSeveralInALook) {
    PackFile file(1 << 17, [](std::uint64_t) { return kNone; });
    for (std::uint64_t i = 1; i <= 5; ++i) {
        file.over[(1 << 17) - 300 + i * kPackBytes] = ps::pack2(i * 900);
    }
    EXPECT_EQ(measure(file).duration, 50 * kMillisecond);
}

Bytes damagedPack() {
    return ps::withoutMarker(ps::pack2(900));
}

TEST(MpegPsLastPack, ADamagedOneBehindItPrintsOneLineWhereverItLies) {
    constexpr std::uint64_t kEnd = 1 << 17;
    constexpr const char* kLine = "ERROR: GetSCR ERROR\n";
    for (std::uint64_t at = kEnd - kFirstStep - 20; at < kEnd - kFirstStep + 20; ++at) {
        PackFile file(kEnd, [](std::uint64_t) { return kNone; });
        file.over[at - kPackBytes] = ps::pack2(1800);
        file.over[at] = damagedPack();
        const Measured measured = measure(file);
        EXPECT_EQ(measured.duration, 20 * kMillisecond) << kEnd - at;
        EXPECT_EQ(measured.lines, kLine) << kEnd - at;
        EXPECT_EQ(measure(file, {.packsReadTo = at}).lines, kLine) << kEnd - at;
        EXPECT_EQ(measure(file, {.packsReadTo = at + 1}).lines, "")
            << "the walk has told of it: " << kEnd - at;
        file.over[at + kPackBytes] = ps::pack2(2700);
        EXPECT_EQ(measure(file).lines, "") << "a good one follows: " << kEnd - at;
    }
}

TEST(MpegPsLastPack, ADamagedOneAtTheEndPrintsWithItsWholeClock) {
    for (const std::uint64_t missing : {0u, 1u}) {
        PackFile file((1 << 17) - missing, [](std::uint64_t) { return kNone; });
        file.over[kPackEvery] = ps::pack2(900);
        file.over[(1 << 17) - kClockBytes] = damagedPack();
        EXPECT_EQ(measure(file).lines, missing == 0 ? "ERROR: GetSCR ERROR\n" : "") << missing;
    }
}

}  // namespace
}  // namespace probe_test
