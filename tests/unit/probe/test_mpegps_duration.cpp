// The play time of a program stream by itself, to its unit of 100 ns, and where it looks at the
// file.
#include <array>

#include "pack_file.h"

namespace probe_test {
namespace {

constexpr std::uint64_t kShort = 0x8000;   // over which the pace is measured
constexpr std::uint64_t kFound = 0x40000;  // how far a pack is looked for

// A file of nine stretches of `stretch` packs and the last pack, so that each of the eight places
// is a pack; its last bytes are those of the last clock.
PackFile nineStretches(std::uint64_t stretch, Clock clock) {
    return {9 * stretch * kPackEvery + kClockBytes, std::move(clock)};
}

std::int64_t durationOf(std::uint64_t stretch, Clock clock) {
    PackFile file = nineStretches(stretch, std::move(clock));
    const Measured measured = measure(file);
    EXPECT_EQ(measured.result, probe::kOk);
    EXPECT_EQ(measured.lines, "");
    return measured.duration;
}

std::int64_t evenClock(std::uint64_t pack) {
    return static_cast<std::int64_t>(pack);
}

TEST(MpegPsPlayTime, IsNoneWithoutAFirstClock) {
    PackFile file(1 << 20, evenClock);
    EXPECT_EQ(measure(file, {.time = probe::kNoClock}).duration, 0);
    EXPECT_EQ(file.looks, std::vector<Look>());
}

TEST(MpegPsPlayTime, IsTheLastClockMinusTheFirst) {
    EXPECT_EQ(durationOf(3, evenClock), 27 * kMillisecond);
    EXPECT_EQ(durationOf(64, evenClock), 9 * 64 * kMillisecond);
    PackFile file = nineStretches(64, evenClock);
    EXPECT_EQ(measure(file, {.time = 7 * kMillisecond}).duration, (9 * 64 - 7) * kMillisecond);
}

// Eight places in equal steps; behind each the pace of the clock over 32 KiB.
std::vector<Look> placesOf(std::uint64_t stretch) {
    const std::uint64_t end = 9 * stretch * kPackEvery + kClockBytes;
    std::vector<Look> looks = {{end - 4086, 4086}};
    for (std::uint64_t i = 1; i <= 8; ++i) {
        looks.push_back({i * stretch * kPackEvery, 4096});
        looks.push_back({i * stretch * kPackEvery + kShort, 4096});
    }
    return looks;
}

TEST(MpegPsPlayTime, LooksAtEightPlacesAndShortlyBehindEach) {
    PackFile file = nineStretches(64, evenClock);
    measure(file);
    EXPECT_EQ(file.looks, placesOf(64));
}

TEST(MpegPsPlayTime, ThePlacesCountFromTheFirstPack) {
    // The first pack with a clock is the tenth, so the stretches are of 63 packs.
    PackFile file(9 * 64 * kPackEvery + kClockBytes, evenClock);
    EXPECT_EQ(measure(file, {.offset = 9 * kPackEvery, .time = 9 * kMillisecond}).duration,
              (9 * 64 - 9) * kMillisecond);
    ASSERT_EQ(file.looks.size(), 17u);
    for (std::size_t i = 1; i <= 8; ++i) {
        EXPECT_EQ(file.looks[2 * i - 1].offset, (9 + 63 * i) * kPackEvery) << i;
    }
}

TEST(MpegPsPlayTime, StretchesBelow64KiBHaveNoPlaces) {
    PackFile enough = nineStretches(32, evenClock);
    measure(enough);
    EXPECT_EQ(enough.looks.size(), 1u + 16u);
    PackFile less(9 * 32 * kPackEvery + kClockBytes - 1, [](std::uint64_t pack) {
        return pack < 9 * 32 ? static_cast<std::int64_t>(pack) : kNone;
    });
    measure(less);
    EXPECT_EQ(less.looks.size(), 1u);
}

// The packs of the third and fourth stretches, and one on either side.
constexpr std::uint64_t kFrom = 3 * 64 - 1, kTo = 5 * 64 + 1;

// A new start loses the gap in front of it alone, wherever it lies.
TEST(MpegPsPlayTime, AClockThatStartsAgainLosesOneGap) {
    constexpr std::uint64_t kPacks = 9 * 64;
    for (std::uint64_t from = kFrom; from <= kTo; ++from) {
        const auto clock = [from](std::uint64_t pack) {
            return static_cast<std::int64_t>(pack < from ? 5000 + pack : pack - from);
        };
        PackFile file = nineStretches(64, clock);
        EXPECT_EQ(measure(file, {.time = 5000 * kMillisecond}).duration,
                  static_cast<std::int64_t>(kPacks - 1) * kMillisecond)
            << from;
    }
}

TEST(MpegPsPlayTime, AClockThatLeapsFarLosesOneGap) {
    constexpr std::uint64_t kPacks = 9 * 64;
    for (std::uint64_t from = kFrom; from <= kTo; ++from) {
        EXPECT_EQ(
            durationOf(64,
                       [from](std::uint64_t pack) {
                           return static_cast<std::int64_t>(pack + (pack < from ? 0 : 3'600'000));
                       }),
            static_cast<std::int64_t>(kPacks - 1) * kMillisecond)
            << from;
    }
}

// Ten seconds and eight times what the bytes let expect are still time.
TEST(MpegPsPlayTime, ALeapIsTimeUpToTenSecondsAndEightTimesThePace) {
    constexpr std::int64_t kMost = 10'000 + 7 * 64;  // beyond the 64 ms of the stretch
    for (const std::int64_t leap : {kMost - 1, kMost, kMost + 1}) {
        const auto clock = [leap](std::uint64_t pack) {
            return static_cast<std::int64_t>(pack) + (pack <= 3 * 64 + 32 ? 0 : leap);
        };
        EXPECT_EQ(durationOf(64, clock), (9 * 64 + (leap <= kMost ? leap : -1)) * kMillisecond)
            << leap;
    }
}

TEST(MpegPsPlayTime, TwoLeapsAreTimeIfEachOfThemIs) {
    // Together they are beyond the limit, so the stretch is halved; each half is sound.
    const auto clock = [](std::uint64_t pack) {
        return static_cast<std::int64_t>(pack) + (pack > 3 * 64 + 10 ? 6000 : 0) +
               (pack > 3 * 64 + 50 ? 6000 : 0);
    };
    EXPECT_EQ(durationOf(64, clock), (9 * 64 + 12'000) * kMillisecond);
}

TEST(MpegPsPlayTime, AClockThatStandsStillIsNotBroken) {
    EXPECT_EQ(durationOf(64, [](std::uint64_t) { return 5; }), 5 * kMillisecond);
    const auto standing = [](std::uint64_t pack) { return pack < 64 ? 5 : 5 + 64; };
    PackFile file = nineStretches(64, standing);
    measure(file, {.time = 5 * kMillisecond});
    EXPECT_EQ(file.looks.size(), 17u) << "nothing is searched";
}

// A stretch of nothing but new starts takes as long as its bytes let expect, without its last gap.
TEST(MpegPsPlayTime, AStretchOfNewStartsTakesItsPace) {
    const auto clock = [](std::uint64_t pack) {
        const bool runsBack = pack > 4 * 64 + 20 && pack < 5 * 64;
        return static_cast<std::int64_t>(runsBack        ? 5000 - 2 * pack
                                         : pack < 5 * 64 ? 9000 + pack
                                                         : pack);
    };
    PackFile file = nineStretches(64, clock);
    EXPECT_EQ(measure(file, {.time = 9000 * kMillisecond}).duration, (9 * 64 - 1) * kMillisecond);
}

// The clock of nine stretches of 64 packs, each with a pace of its own in milliseconds for a pack,
// over the packs that the pace is measured by and on to the stretch's end.
Clock withPaces(std::array<std::int64_t, 9> paces) {
    return [paces](std::uint64_t pack) {
        std::int64_t time = 0;
        for (std::size_t i = 0; i < 9; ++i) {
            time += paces[i] *
                    std::clamp<std::int64_t>(
                        static_cast<std::int64_t>(pack) - 64 * static_cast<std::int64_t>(i), 0, 64);
        }
        return time;
    };
}

// How long a leap in the last stretch may be, in milliseconds, to be time: that tells the pace.
std::int64_t longestLeap(std::array<std::int64_t, 9> paces) {
    const auto isTime = [&paces](std::int64_t leap) {
        const Clock even = withPaces(paces);
        const auto clock = [&even, leap](std::uint64_t pack) {
            return even(pack) + (pack < 8 * 64 + 40 ? 0 : leap);
        };
        return durationOf(64, clock) == (even(9 * 64) + leap) * kMillisecond;
    };
    std::int64_t least = 0, most = 10'000'000;
    while (most - least > 1) {
        const std::int64_t leap = (least + most) / 2;
        (isTime(leap) ? least : most) = leap;
    }
    return least;
}

// Beyond the last stretch's own 64 packs: ten seconds and eight times as long as the pace lets
// expect, less what the stretch takes anyway.
std::int64_t leapAt(std::int64_t pace, std::int64_t own) {
    return 10'000 + 8 * 64 * pace - 64 * own;
}

TEST(MpegPsPlayTime, ThePaceIsTheMedianOfTheEight) {
    EXPECT_EQ(longestLeap({1, 1, 1, 1, 1, 1, 1, 1, 1}), leapAt(1, 1));
    // The upper one of the two in the middle: 11, 12, 13, 14, 15, 16, 17, 18.
    EXPECT_EQ(longestLeap({10, 15, 11, 16, 12, 17, 13, 18, 14}), leapAt(15, 14));
    EXPECT_EQ(longestLeap({10, 14, 18, 13, 17, 12, 16, 11, 15}), leapAt(15, 15));
}

TEST(MpegPsPlayTime, ASlowPaceIsOneToo) {
    // A millisecond for 32 KiB: a third of a unit of time for a byte.
    EXPECT_EQ(durationOf(64,
                         [](std::uint64_t pack) {
                             return static_cast<std::int64_t>(pack) / 16 +
                                    (pack < 8 * 64 + 40 ? 0 : 3'600'000);
                         }),
              9 * 4 * kMillisecond);
}

TEST(MpegPsPlayTime, AStandingClockHasNoPace) {
    // No packs in three stretches, two that stand still, three that run: no four paces.
    const Clock even = withPaces({1, 0, 0, 0, 0, 0, 1, 1, 1});
    const auto clock = [&even](std::uint64_t pack) {
        return pack >= 64 && pack < 4 * 64 ? kNone
                                           : even(pack) + (pack < 8 * 64 + 40 ? 0 : 3'600'000);
    };
    EXPECT_EQ(durationOf(64, clock), (4 * 64 + 3'600'000) * kMillisecond) << "any leap is time";
}

TEST(MpegPsPlayTime, APaceNeedsFourPlaces) {
    EXPECT_EQ(longestLeap({1, 0, 0, 0, 0, 1, 1, 1, 1}), leapAt(1, 1));
    EXPECT_EQ(longestLeap({1, 0, 0, 0, 0, 0, 1, 1, 1}), 9'999'999) << "any leap is time";
}

// What the pace lets expect is no more than a turn of the clock: 2 to the 33rd of 90 kHz.
TEST(MpegPsPlayTime, AtMostOneTurnOfTheClockIsExpected) {
    constexpr std::int64_t kEach = 60'000;  // for each of the first packs behind a place
    static constexpr std::int64_t kStretch = 6400, kQuick = 20;
    const auto clock = [](std::uint64_t pack) {
        const std::int64_t stretch = static_cast<std::int64_t>(pack) / kStretch;
        const std::int64_t in = static_cast<std::int64_t>(pack) % kStretch;
        const std::int64_t time =
            (stretch < 5 ? stretch : stretch - 5) * kQuick * kEach + std::min(in, kQuick) * kEach;
        return stretch == 4 && in > kQuick ? kStretch - in : time;
    };
    // Every halving of the fifth stretch is broken on both sides. Its halves of 3,200 packs and of
    // 1,600 count a turn each; the smaller ones their minutes, down to the gap in front of the last
    // pack.
    constexpr std::int64_t kTurn = (std::int64_t{1} << 33) * 1000 / 9;
    constexpr std::int64_t kSmaller = kStretch - 3200 - 1600 - 1;
    EXPECT_EQ(durationOf(kStretch, clock),
              2 * kTurn + (kSmaller + 8 * kQuick) * kEach * kMillisecond);
}

// A stretch that took less than three fifths of what its pace lets expect is halved, if that is a
// second or more.
TEST(MpegPsPlayTime, AStretchThatTookTooLittleIsLookedAt) {
    struct Case {
        const char* name;
        std::int64_t pace;       // milliseconds for a pack
        std::int64_t backwards;  // milliseconds lost before the fourth stretch's last 40 packs
        bool isHalved;
    };
    constexpr Case kCases[] = {
        {"three fifths of a second", 10, 400, false},
        {"less than that", 10, 401, true},
        {"of less than a second", 9, 500, false},
    };
    for (const Case& one : kCases) {
        PackFile file = nineStretches(100, [&one](std::uint64_t pack) {
            return static_cast<std::int64_t>(pack) * one.pace - (pack > 360 ? one.backwards : 0);
        });
        EXPECT_EQ(measure(file).duration, (900 * one.pace - one.backwards) * kMillisecond)
            << one.name;
        ASSERT_EQ(file.looks.size(), 17u + (one.isHalved ? 1 : 0)) << one.name;
        if (one.isHalved) {
            EXPECT_EQ(file.looks.back().offset, (300 + 50) * kPackEvery + 1) << "behind the half";
        }
    }
}

// In a half it may be seen that the clock runs back.
TEST(MpegPsPlayTime, HalvingFindsAClockThatRunsBack) {
    for (const std::uint64_t from : {310u, 340u, 350u, 351u, 352u, 360u, 390u}) {
        EXPECT_EQ(durationOf(100,
                             [from](std::uint64_t pack) {
                                 return static_cast<std::int64_t>(pack * 10) -
                                        (pack >= from ? 520 : 0);
                             }),
                  (9000 - 10) * kMillisecond)
            << from;
    }
}

// The pace is that of the short stretches, but each long one takes a tenth of it.
Clock slowBehind(std::uint64_t stretch, std::uint64_t onlyIn) {
    return [stretch, onlyIn](std::uint64_t pack) {
        std::uint64_t time = 0;
        for (std::uint64_t i = 0; i < 9 && i * stretch < pack; ++i) {
            const std::uint64_t in = std::min(pack - i * stretch, stretch);
            const std::uint64_t quick =
                onlyIn == 9 || onlyIn == i ? std::min<std::uint64_t>(in, 20) : in;
            time += quick + (in - quick) / 10;
        }
        return static_cast<std::int64_t>(time);
    };
}

TEST(MpegPsPlayTime, AStretchIsHalvedSixTimes) {
    constexpr std::uint64_t kStretch = 64'000;
    const Clock clock = slowBehind(kStretch, 3);
    PackFile file = nineStretches(kStretch, clock);
    EXPECT_EQ(measure(file).duration, clock(9 * kStretch) * kMillisecond);
    ASSERT_EQ(file.looks.size(), 17u + 63u);
    std::vector<std::uint64_t> parts;
    for (const Look& look : std::span(file.looks).subspan(17)) {
        parts.push_back((look.offset / kPackEvery - 3 * kStretch) / 1000);
    }
    std::ranges::sort(parts);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        EXPECT_EQ(parts[i], i + 1);
    }
}

TEST(MpegPsPlayTime, TheHalvingsArePaidFrom2MiB) {
    PackFile file = nineStretches(64'000, slowBehind(64'000, 9));
    measure(file);
    EXPECT_EQ(file.looks.size(), 17u + (2u << 20) / 4096u) << "not nine times 63";
}

// Or up to the next place.
TEST(MpegPsPlayTime, APackIsLookedForOver256KiB) {
    struct Case {
        std::uint64_t stretch;  // packs
        std::uint64_t most;     // bytes
    };
    for (const Case& one : {Case{256, kFound}, Case{64, 64 * kPackEvery}}) {
        const std::uint64_t place = 4 * one.stretch;
        // A clock an hour ahead, in a hole, spoils the sum where it is found.
        const auto isFound = [&one, place](std::uint64_t at) {
            PackFile file = nineStretches(one.stretch, [&one, place](std::uint64_t pack) {
                return pack >= place && pack < place + one.stretch ? kNone : evenClock(pack);
            });
            file.over[place * kPackEvery + at] = ps::pack2(3600 * 90'000);
            return measure(file).duration !=
                   static_cast<std::int64_t>(9 * one.stretch) * kMillisecond;
        };
        EXPECT_TRUE(isFound(0));
        EXPECT_TRUE(isFound(one.most - kClockBytes));
        EXPECT_FALSE(isFound(one.most - kClockBytes + 1));
        // Its bytes may lie across two looks, of 4 and 8 KiB.
        for (std::uint64_t at = 4096 - 20; at <= 4096 + 20; ++at) {
            EXPECT_TRUE(isFound(at)) << at;
        }
    }
}

TEST(MpegPsPlayTime, ThePaceIsTakenFrom32To64KiB) {
    constexpr std::uint64_t kPlace = 4 * 64;
    // Three other places have a pace; with this one they are enough.
    const Clock paces = withPaces({1, 0, 0, 0, 1, 0, 1, 1, 1});
    const auto isMeasured = [&paces](std::uint64_t at) {
        const std::int64_t time = paces(kPlace) + 1;
        PackFile file = nineStretches(64, [&paces](std::uint64_t pack) {
            const bool isHole = pack > kPlace && pack < kPlace + 64;
            return isHole ? kNone : paces(pack) + (pack < 9 * 64 ? 0 : 3'600'000);
        });
        file.over[kPlace * kPackEvery + at] = ps::pack2(static_cast<std::uint64_t>(time) * 90);
        return measure(file).duration < 3'600'000 * kMillisecond;
    };
    EXPECT_FALSE(isMeasured(kShort - 1));
    EXPECT_TRUE(isMeasured(kShort));
    EXPECT_TRUE(isMeasured(2 * kShort - kClockBytes));
    EXPECT_FALSE(isMeasured(2 * kShort - kClockBytes + 1));
}

// Two MiB for the places, and as much again for the stretches between them.
TEST(MpegPsPlayTime, TheSearchIsPaidFrom2MiB) {
    constexpr std::uint64_t kEnd = std::uint64_t{1} << 30;
    PackFile file(kEnd, [](std::uint64_t) { return kNone; });
    file.over[kEnd - 100] = ps::pack2(900);
    EXPECT_EQ(measure(file).duration, 10 * kMillisecond);
    std::uint64_t bytes = 0;
    for (const Look& look : std::span(file.looks).subspan(1)) {
        EXPECT_LT(bytes, 2u << 20) << "nothing is read beyond the budget";
        bytes += look.bytes;
    }
    EXPECT_GE(bytes, 2u << 20);
}

TEST(MpegPsPlayTime, AFailedReadFailsIt) {
    PackFile whole = nineStretches(64, evenClock);
    measure(whole);
    for (std::size_t look = 1; look <= whole.looks.size(); ++look) {
        PackFile file = nineStretches(64, evenClock);
        file.failFrom = look;
        EXPECT_EQ(measure(file).result, probe::kFail) << look;
    }
}

}  // namespace
}  // namespace probe_test
