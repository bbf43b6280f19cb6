// Single rules of program streams: clocks bit by bit, sequence headers, where a walk begins and
// ends.
#include <algorithm>
#include <array>
#include <vector>

#include "build_audio.h"
#include "build_mpegps.h"
#include "expectations.h"
#include "probe/codec/mpeg_video.h"
#include "probe/mpegps/audio.h"
#include "probe/mpegps/pack.h"

namespace probe_test {
namespace {

using R = probe::MediaRecord;

probe::PackClock clockOf(const Bytes& pack) {
    return probe::packClock(std::span(pack).subspan<4, probe::kPackClockBytes>());
}

TEST(MpegPsClock, EveryBitOfMpeg1Counts) {
    for (unsigned bit = 0; bit < 33; ++bit) {
        const std::uint64_t ticks = std::uint64_t{1} << bit;
        const probe::PackClock clock = clockOf(ps::pack1(ticks));
        EXPECT_TRUE(clock.isMpeg1);
        EXPECT_EQ(clock.time, static_cast<std::int64_t>(ticks * 1000 / 9)) << bit;
    }
}

TEST(MpegPsClock, EveryBitOfMpeg2Counts) {
    for (unsigned bit = 0; bit < 33; ++bit) {
        const std::uint64_t ticks = std::uint64_t{1} << bit;
        const probe::PackClock clock = clockOf(ps::pack2(ticks));
        EXPECT_FALSE(clock.isMpeg1);
        EXPECT_EQ(clock.time, static_cast<std::int64_t>(ticks * 300 * 10 / 27)) << bit;
    }
    for (unsigned bit = 0; bit < 9; ++bit) {
        const std::uint64_t extension = 1u << bit;
        // Of 1,007 ticks the last unit of 100 ns is all but full.
        EXPECT_EQ(clockOf(ps::pack2(1007, static_cast<unsigned>(extension))).time,
                  static_cast<std::int64_t>((1007 * 300 + extension) * 10 / 27))
            << bit;
    }
}

// A header without one of its markers has no clock; any other bit may be anything.
TEST(MpegPsClock, EveryMarkerBitIsAskedFor) {
    struct Kind {
        Bytes pack;
        unsigned bits;
        std::vector<unsigned> markers;  // counted from the most significant bit
    };
    for (const Kind& kind : {Kind{ps::pack1(0x155555555), 40, {0, 1, 2, 3, 7, 23, 39}},
                             Kind{ps::pack2(0x155555555), 48, {0, 1, 5, 21, 37, 47}}}) {
        for (unsigned bit = 0; bit < kind.bits; ++bit) {
            Bytes pack = kind.pack;
            pack[4 + bit / 8] = static_cast<std::uint8_t>(pack[4 + bit / 8] ^ (0x80 >> bit % 8));
            const bool isMarker = std::ranges::find(kind.markers, bit) != kind.markers.end();
            EXPECT_EQ(clockOf(pack).time == probe::kNoClock, isMarker) << kind.bits << ' ' << bit;
        }
    }
}

probe::VideoSequence read(const Bytes& stream, bool wanted = true) {
    probe::SequenceFinder finder;
    finder.feed(stream);
    probe::VideoSequence sequence;
    EXPECT_EQ(finder.read(sequence), wanted);
    return sequence;
}

// A sequence header with one, both or none of its quantiser matrices.
Bytes headerWith(bool intra, bool other) {
    Bytes header = ps::sequence({.width = 720, .height = 576});
    header.back() = static_cast<std::uint8_t>(header.back() | (intra ? 2 : 0));
    Builder builder;
    if (!intra) {
        header.back() = static_cast<std::uint8_t>(header.back() | (other ? 1 : 0));
        builder.bytes(header);
    } else {
        // The second flag stands behind the first matrix, so that its bytes lie across borders.
        builder.bytes(header).fill(63, 0x20).u8(0x20 | (other ? 1 : 0));
    }
    return builder.fill(other ? 64 : 0, 0x20).take();
}

TEST(MpegVideo, MatricesStandBeforeTheExtension) {
    for (const bool intra : {false, true}) {
        for (const bool other : {false, true}) {
            const Bytes stream =
                Builder().bytes(headerWith(intra, other)).bytes(ps::extension(1, 2, 1)).take();
            const probe::VideoSequence found = read(stream);
            EXPECT_EQ(found.width, 4096u + 720u) << intra << other;
            EXPECT_EQ(found.height, 2 * 4096u + 576u) << intra << other;
            EXPECT_EQ(found.bitRate, ((1u << 18) + 2500) * 400) << intra << other;
            const Bytes without = Builder().bytes(headerWith(intra, other)).be32(0x100).take();
            EXPECT_EQ(read(without).width, 720u) << intra << other;
        }
    }
}

TEST(MpegVideo, EveryBitOfTheExtensionCounts) {
    const Bytes header = ps::sequence({});
    const auto with = [&header](const Bytes& extension) {
        return read(Builder().bytes(header).bytes(extension).take());
    };
    for (unsigned bit = 0; bit < 2; ++bit) {
        EXPECT_EQ(with(ps::extension(1u << bit)).width, (0x1000u << bit) + 352);
        EXPECT_EQ(with(ps::extension(0, 1u << bit)).height, (0x1000u << bit) + 288);
    }
    for (unsigned bit = 0; bit < 12; ++bit) {
        const std::uint64_t rate = ((std::uint64_t{1} << (18 + bit)) + 2500) * 400;
        EXPECT_EQ(with(ps::extension(0, 0, 1u << bit)).bitRate,
                  std::min<std::uint64_t>(rate, 0xFFFFFFFF))
            << bit;
    }
    for (unsigned numerator = 0; numerator < 4; ++numerator) {
        for (unsigned denominator = 0; denominator < 32; ++denominator) {
            EXPECT_EQ(with(ps::extension(0, 0, 0, numerator, denominator)).frameTime,
                      400000 * (denominator + 1) / (numerator + 1));
        }
    }
    Bytes other = ps::extension(1, 1, 1, 1, 1);
    other[4] = static_cast<std::uint8_t>(0x20 | (other[4] & 0x0F));  // a display extension
    EXPECT_EQ(with(other).width, 352u);
    Bytes cut = ps::extension(1, 1, 1, 1, 1);
    cut.pop_back();
    EXPECT_EQ(with(cut).width, 352u) << "an extension that is cut says nothing";
}

// ITU-T H.262 Table 6-4, in units of 100 ns.
TEST(MpegVideo, EveryFrameRateHasItsTime) {
    constexpr auto kTimes = std::to_array<std::uint32_t>(
        {0, 417083, 416667, 400000, 333667, 333333, 200000, 166833, 166667, 0, 0, 0, 0, 0, 0, 0});
    for (unsigned code = 0; code < kTimes.size(); ++code) {
        EXPECT_EQ(read(ps::sequence({.rate = code})).frameTime, kTimes[code]) << code;
    }
}

TEST(MpegVideo, AHeaderOf8BytesIsEnough) {
    const Bytes header = ps::sequence({.width = 1000, .height = 500, .aspect = 9, .rate = 8});
    ASSERT_EQ(header.size(), 4u + 8u);
    const probe::VideoSequence found = read(header);
    EXPECT_EQ(found.width, 1000u);
    EXPECT_EQ(found.height, 500u);
    EXPECT_EQ(found.aspect, 9u);
    EXPECT_EQ(found.frameTime, 166667u);
    EXPECT_EQ(found.bitRate, 2500u * 400);
    read(withoutLast(header, 1), false);
    read({}, false);
}

TEST(MpegVideo, IsFedInPiecesOfAnySize) {
    const Bytes stream = Builder()
                             .fill(5, 0)
                             .bytes(headerWith(true, true))
                             .bytes(ps::extension(1))
                             .bytes(ps::pictures())
                             .take();
    for (std::size_t piece = 1; piece <= 20; ++piece) {
        probe::SequenceFinder finder;
        for (std::size_t at = 0; at < stream.size(); at += piece) {
            EXPECT_EQ(finder.complete(), at >= 5 + 4 + 8 + 128 + 10);
            finder.feed(std::span(stream).subspan(at, std::min(piece, stream.size() - at)));
        }
        probe::VideoSequence sequence;
        ASSERT_TRUE(finder.read(sequence));
        EXPECT_EQ(sequence.width, 4096u + 720u) << piece;
    }
}

// A stream of packs a tenth of a second apart, each with a picture packet; the first carries the
// sequence header and two frames of sound.
Bytes stretch(std::uint64_t from, unsigned packs, bool isMpeg1 = false, std::size_t bytes = 2000) {
    Builder builder;
    for (unsigned i = 0; i < packs; ++i) {
        const std::uint64_t ticks = (from + i * 9000) & 0x1FFFFFFFF;
        Builder video;
        if (i == 0) {
            video.bytes(ps::sequence({}));
        }
        video.bytes(ps::pictures(bytes));
        builder.bytes(isMpeg1 ? ps::pack1(ticks) : ps::pack2(ticks));
        builder.bytes(isMpeg1 ? ps::packet1(0xE0, video.view()) : ps::packet2(0xE0, video.view()));
        if (i == 0) {
            const Bytes sound = audio::frames(2, {.layer = 2, .bitRate = 8});
            builder.bytes(isMpeg1 ? ps::packet1(0xC0, sound) : ps::packet2(0xC0, sound));
        }
    }
    return builder.take();
}

TEST(MpegPsDuration, OfAnMpeg1ClockBeyondThreeHours) {
    // 32 bits of a 90 kHz clock are 13 h 15 min; 30 bits are 3 h 19 min.
    for (const std::uint64_t from : {(1ull << 30) - 900'000, (1ull << 32) - 900'000, 0ull}) {
        const Bytes bytes = stretch(from, 201, true);
        const Outcome outcome = probeBytes(bytes);
        EXPECT_EQ(outcome.info->containerType, probe::kContainerMpeg1System);
        EXPECT_EQ(outcome.info->durationSeconds, 20u) << from;
    }
}

TEST(MpegPsDuration, OfRecordingsJoinedTogether) {
    // Three of 30, 20 and 25 s, each with a clock of its own: 29.9 + 19.9 + 24.9 s.
    const Bytes bytes = Builder()
                            .bytes(stretch(90'000'000, 300))
                            .bytes(stretch(0, 200))
                            .bytes(stretch(900'000, 250))
                            .take();
    EXPECT_EQ(probeBytes(bytes).info->durationSeconds, 74u);
}

TEST(MpegPsDuration, SeesALastPackWhoseClockIsWhole) {
    const Bytes stream = stretch(0, 200);
    const auto withEnd = [&stream](std::size_t behind) {
        const Bytes pack = ps::pack2(90'000 * 50);
        return probeBytes(Builder()
                              .bytes(stream)
                              .bytes(Bytes(pack.begin(),
                                           pack.begin() + 4 + static_cast<std::ptrdiff_t>(behind)))
                              .take())
            .info->durationSeconds;
    };
    EXPECT_EQ(withEnd(6), 50u) << "start code and clock are the last ten bytes";
    EXPECT_EQ(withEnd(5), 19u);
    EXPECT_EQ(withEnd(0), 19u);
}

TEST(MpegPs, SoundThatBeginsBehind256KiB) {
    const auto with = [](unsigned listed, std::size_t before) {
        Builder builder;
        builder.bytes(ps::pack2(0)).bytes(ps::systemHeader({0xE0, listed}));
        builder.bytes(
            ps::packet2(0xE0, Builder().bytes(ps::sequence({})).bytes(ps::pictures()).take()));
        while (builder.size() < before) {
            builder.bytes(ps::packet2(0xE0, ps::pictures(4000)));
        }
        builder.bytes(ps::packet2(0xC0, audio::frames(2, {.layer = 2, .bitRate = 8})));
        return probeBytes(ps::file(builder.take())).info->audioFormatTag;
    };
    // Private stream 1, the first and the last of sound, and what stands for all of sound.
    for (const unsigned sound : {0xBDu, 0xC0u, 0xDFu, 0xB8u}) {
        EXPECT_EQ(with(sound, 0x40000 + 5000), 0x50u) << "announced: it is looked for on " << sound;
    }
    for (const unsigned other : {0xE0u, 0xBCu, 0xB9u, 0xBEu, 0xEFu}) {
        EXPECT_EQ(with(other, 0x40000 - 9000), 0x50u) << "not announced, there all the same";
        EXPECT_EQ(with(other, 0x40000 + 5000), 0u) << "not announced, and too late: " << other;
    }
}

TEST(MpegPs, APacketBeforeTheFirstPack) {
    // Claimed by a pack in its first 256 bytes; what stands in front of it describes nothing.
    const Bytes video = Builder().bytes(ps::sequence({.width = 99})).bytes(ps::pictures(30)).take();
    const Bytes bytes =
        ps::file(Builder()
                     .bytes(ps::packet2(0xE0, video))
                     .bytes(ps::pack2(0))
                     .bytes(ps::packet2(
                         0xE0, Builder().bytes(ps::sequence({})).bytes(ps::pictures()).take()))
                     .take());
    EXPECT_EQ(probeBytes(bytes).info->videoWidth, 352u);
}

TEST(MpegPs, TheFirstPackMayStandAt252) {
    for (const std::size_t at : {0u, 1u, 251u, 252u, 253u}) {
        const Bytes bytes =
            ps::file(Builder()
                         .fill(at, 0x44)
                         .bytes(ps::pack2(0))
                         .bytes(ps::packet2(
                             0xE0, Builder().bytes(ps::sequence({})).bytes(ps::pictures()).take()))
                         .take());
        EXPECT_EQ(probeBytes(bytes).claimed, at <= 252 ? 1 : 0) << at;
    }
}

TEST(MpegPs, OnlyAVideoCdIsSearchedBehind256Bytes) {
    const Bytes stream =
        Builder()
            .fill(1000, 0x11)
            .bytes(ps::pack2(0))
            .bytes(
                ps::packet2(0xE0, Builder().bytes(ps::sequence({})).bytes(ps::pictures()).take()))
            .take();
    const auto claimed = [&stream](std::string_view name, std::string_view form) {
        return probeBytes(ps::file(Builder().text(name).le32(0).text(form).bytes(stream).take()))
            .claimed;
    };
    EXPECT_EQ(claimed("RIFF", "CDXA"), 1);
    EXPECT_EQ(claimed("RIFF", "CDXB"), 0);
    EXPECT_EQ(claimed("RIFX", "CDXA"), 0);
}

TEST(MpegPs, AFrameHeaderMayBeAPacketsWholePayload) {
    const Bytes header = {0xFF, 0xFD, 0x80, 0x00};  // layer II, 128 kbit/s
    probe::PacketAudio audio;
    EXPECT_EQ(probe::readPacketAudio(0xC0, header, audio), probe::AudioFound::Likely);
    EXPECT_EQ(audio.layer, 2u);
    EXPECT_EQ(probe::readPacketAudio(0xC0, std::span(header).first(3), audio),
              probe::AudioFound::No);
}

// ISO/IEC 11172-1 2.4.3.3: '0010' before one time stamp, '0011' before two, of five bytes each.
TEST(MpegPs, TimeStampsOfMpeg1StandBeforeThePayload) {
    Bytes sound = audio::frame({.layer = 2, .bitRate = 8});
    sound.resize(400);  // its next frame would lie in the next packet
    for (const unsigned stamps : {2u, 3u}) {
        const Bytes packet = Builder()
                                 .be32(0x1C0)
                                 .be16((stamps - 1) * 5 + sound.size())
                                 .u8(stamps << 4 | 1)
                                 .fill((stamps - 1) * 5 - 1, 0x01)
                                 .bytes(sound)
                                 .take();
        const Bytes video = Builder().bytes(ps::sequence({})).bytes(ps::pictures()).take();
        const Bytes bytes = ps::file(Builder()
                                         .bytes(ps::pack1(0))
                                         .bytes(ps::packet1(0xE0, video))
                                         .bytes(packet)
                                         .bytes(packet)
                                         .take());
        EXPECT_EQ(probeBytes(bytes).info->audioFormatTag, 0x50u) << stamps;
    }
}

// ISO/IEC 11172-1 2.4.3.3: up to 16 bytes of stuffing, the size of a buffer behind '01', and one of
// the three kinds of time stamps. A sequence header that goes on behind them tells where they end.
TEST(MpegPs, EveryHeaderOfAnMpeg1PacketEndsWhereItsPayloadBegins) {
    const Bytes stamps[] = {{0x0F}, Bytes(5, 0x21), Bytes(10, 0x31)};
    const Bytes video =
        Builder().bytes(ps::sequence({.width = 0x5A5})).bytes(ps::pictures(40)).take();
    const auto split = video.begin() + 5;  // within the width
    for (std::size_t stuffing = 0; stuffing <= 16; ++stuffing) {
        for (const unsigned buffer : {0u, 0x4020u, 0x7FFFu, 0x6000u}) {
            for (const Bytes& stamp : stamps) {
                Builder second;
                second.fill(stuffing, 0xFF);
                if (buffer != 0) {
                    second.be16(buffer);
                }
                second.bytes(stamp).bytes(Bytes(split, video.end()));
                const Bytes bytes =
                    ps::file(Builder()
                                 .bytes(ps::pack1(0))
                                 .bytes(ps::packet1(0xE0, Bytes(video.begin(), split)))
                                 .be32(0x1E0)
                                 .be16(second.size())
                                 .bytes(second.view())
                                 .take());
                EXPECT_EQ(probeBytes(bytes).info->videoWidth, 0x5A5u)
                    << stuffing << ' ' << buffer << ' ' << stamp.size();
            }
        }
    }
}

TEST(MpegPs, VideoHas16StreamsAndSound32) {
    for (unsigned stream = 0xC0; stream <= 0xF0; ++stream) {
        const Bytes video = Builder().bytes(ps::sequence({})).bytes(ps::pictures()).take();
        const Bytes sound = audio::frames(2, {.layer = 2, .bitRate = 8});
        const bool isVideo = stream >= 0xE0 && stream <= 0xEF;
        const Bytes bytes = ps::file(Builder()
                                         .bytes(ps::pack2(0))
                                         .bytes(ps::packet2(stream, video))
                                         .bytes(ps::packet2(stream, sound))
                                         .take());
        const Outcome outcome = probeBytes(bytes);
        EXPECT_EQ(outcome.info->videoWidth, isVideo ? 352u : 0u) << stream;
        const Bytes both = ps::file(Builder()
                                        .bytes(ps::pack2(0))
                                        .bytes(ps::packet2(0xE5, video))
                                        .bytes(ps::packet2(stream, sound))
                                        .take());
        EXPECT_EQ(probeBytes(both).info->audioFormatTag, stream <= 0xDF ? 0x50u : 0u) << stream;
    }
}

// Packs of 2,000 bytes 3 ms apart, with a leap of the clock before one of them.
std::uint32_t secondsWithLeap(std::uint64_t leapMilliseconds) {
    Builder builder;
    for (unsigned i = 0; i < 400; ++i) {
        const std::uint64_t ticks = i * 270 + (i < 215 ? 0 : leapMilliseconds * 90);
        builder.bytes(ps::pack2(ticks))
            .bytes(ps::packet2(0xE0, Builder()
                                         .bytes(i == 0 ? ps::sequence({}) : Bytes())
                                         .bytes(ps::pictures(1970))
                                         .take()));
    }
    return probeBytes(builder.take()).info->durationSeconds;
}

TEST(MpegPsDuration, ALeapOfTenSecondsIsTime) {
    EXPECT_EQ(secondsWithLeap(0), 1u);
    EXPECT_EQ(secondsWithLeap(10'000), 11u);
    EXPECT_EQ(secondsWithLeap(13'000), 1u) << "another recording";
}

TEST(MpegPsDuration, AClockThatRunsBackUnseenIsFound) {
    // 45 s, then 45 s that begin 5 s before the first ones end: between the places looked at, ten
    // seconds apart, the clock never seems to run back.
    const Bytes bytes = Builder().bytes(stretch(0, 450)).bytes(stretch(40 * 90'000, 450)).take();
    EXPECT_EQ(probeBytes(bytes).info->durationSeconds, 89u);
}

TEST(MpegPs, AVideoCdShorterThanItSaysEnds) {
    const Bytes bytes = Builder().text("RIFF").le32(0).text("CDXA").fill(0x30000, 0x11).take();
    TestFile file(bytes);
    file.claimedSize = 0x200000;
    const Outcome outcome = probeFile(file);
    EXPECT_EQ(outcome.claimed, 0);
    EXPECT_EQ(outcome.info->status, probe::kNotParsed);
    EXPECT_LE(outcome.reads, 20u);
}

}  // namespace
}  // namespace probe_test
