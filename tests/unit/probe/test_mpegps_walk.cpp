// The walk over packs and packets by itself: what each start code begins and where that ends, how
// much of the file is needed, and what a read that fails at one place leads to.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "build_audio.h"
#include "build_mpegps.h"
#include "probe/mpegps/audio.h"
#include "probe/mpegps/walk.h"
#include "probing.h"

namespace probe_test {
namespace {

constexpr std::size_t kWalk = 0x200000;       // how far the walk goes from the first pack
constexpr std::size_t kSilent = 0x40000;      // the same when no sound is announced and none came
constexpr std::int64_t kSecond = 10'000'000;  // of the clock, units of 100 ns
constexpr std::size_t kSector = 512;
constexpr std::size_t kPacketHead = 6;  // start code and length

struct Walk {
    explicit Walk(const Bytes& bytes, std::uint64_t firstPack = 0) : file(bytes), window(file) {
        EXPECT_TRUE(window.size(reader.end));
        reader.firstPack = firstPack;
    }
    // The bytes from `bad` to the end of their sector, or up to `badTo`, cannot be read.
    probe::Result go(std::uint64_t bad = 0, std::uint64_t badTo = 0) {
        file.badFrom = bad;
        file.badTo = badTo != 0 ? badTo : bad != 0 ? bad / kSector * kSector + kSector : 0;
        return probe::walkMpegPs(reader);
    }
    std::uint32_t width() const {
        probe::VideoSequence found;
        return reader.sequence.read(found) ? found.width : 0;
    }

    TestFile file;
    probe::ReadWindow window;
    probe::MpegPsReader reader{.file = window};
};

// A packet whose data hold just this, header included.
Bytes rawPacket(unsigned stream, const Bytes& data) {
    return Builder().be24(1).u8(stream).be16(data.size()).bytes(data).take();
}

// Fills up to this size with packets of padding.
void padWithPackets(Builder& builder, std::size_t size) {
    while (builder.size() + 60'000 < size) {
        builder.bytes(rawPacket(0xBE, Bytes(50'000, 0xFF)));
    }
    builder.bytes(rawPacket(0xBE, Bytes(size - builder.size() - kPacketHead, 0xFF)));
}

Bytes soundFrames() {
    return audio::frames(2, {.layer = 2, .bitRate = 8});
}
constexpr std::ptrdiff_t kMiddle = 5;  // within a sequence header's width
Bytes firstHalf(const Bytes& bytes) {
    return Bytes(bytes.begin(), bytes.begin() + kMiddle);
}
Bytes secondHalf(const Bytes& bytes) {
    return Bytes(bytes.begin() + kMiddle, bytes.end());
}

// The width that a sequence header tells whose halves stand in two packets around `between`; the
// header of the second packet is `header`.
std::uint32_t widthAcross(const Bytes& between, const Bytes& header = {0x0F}) {
    const Bytes video = ps::sequence({.width = 0x5A5});
    const Bytes rest = Builder().bytes(header).bytes(secondHalf(video)).take();
    const Bytes bytes = Builder()
                            .bytes(ps::pack1(0))
                            .bytes(ps::packet1(0xE0, firstHalf(video)))
                            .bytes(between)
                            .bytes(rawPacket(0xE0, rest))
                            .take();
    Walk walk(bytes);
    EXPECT_EQ(walk.go(), probe::kOk);
    return walk.width();
}

// ISO/IEC 13818-1 2.5.3 and 2.4.3.7: B9 ends the stream and is four bytes long, BA is a pack; what
// lies above them has a length, what lies below them belongs to the coded pictures.
TEST(MpegPsWalk, EveryStartCodeEndsWhereItShould) {
    const Bytes hidden = Builder().u8(0x80).be16(0).bytes(ps::pack2(90'000)).take();
    for (unsigned code = 0; code <= 0xFF; ++code) {
        if (code == 0xBA) {
            continue;
        }
        const Bytes bytes =
            Builder().bytes(rawPacket(code, hidden)).bytes(ps::pack2(180'000)).take();
        Walk walk(bytes);
        EXPECT_EQ(walk.go(), probe::kOk) << code;
        EXPECT_EQ(walk.reader.firstClock.time, code <= 0xB9 ? kSecond : 2 * kSecond) << code;
    }
    const Bytes video = ps::packet2(0xE0, ps::sequence({}));
    const Bytes ended = Builder().be32(0x1B9).bytes(video).take();
    Walk walk(ended);
    EXPECT_EQ(walk.go(), probe::kOk);
    EXPECT_EQ(walk.width(), 352u) << "what stands right behind the end code";
}

TEST(MpegPsWalk, StuffingBehindAPackIsNotLookedAt) {
    for (unsigned stuffing = 0; stuffing < 8; ++stuffing) {
        Bytes pack = ps::pack2(0, 0, stuffing);
        const Bytes hidden = {0, 0, 1, 0xF0, 0xFF, 0xFF, 0};  // a packet of 65,535 bytes
        std::copy_n(hidden.begin(), stuffing, pack.begin() + 14);
        const Bytes bytes = Builder().bytes(pack).bytes(ps::packet2(0xE0, ps::sequence({}))).take();
        Walk walk(bytes);
        EXPECT_EQ(walk.go(), probe::kOk);
        EXPECT_EQ(walk.width(), 352u) << stuffing;
    }
    Bytes pack = ps::pack1(0);
    pack.back() = 0;  // no start code begins in a pack header
    const Bytes bytes = Builder()
                            .bytes(pack)
                            .be16(1)
                            .u8(0xF0)
                            .be16(0xFFFF)
                            .bytes(ps::packet1(0xE0, ps::sequence({})))
                            .take();
    Walk walk(bytes);
    EXPECT_EQ(walk.go(), probe::kOk);
    EXPECT_EQ(walk.width(), 352u);
}

TEST(MpegPsWalk, APackThatTheEndCutsHasNoClock) {
    const Bytes pack = ps::pack2(90'000);
    for (std::size_t cut = 4; cut <= 14; ++cut) {
        const Bytes bytes(pack.begin(), pack.begin() + static_cast<std::ptrdiff_t>(cut));
        Walk walk(bytes);
        EXPECT_EQ(walk.go(), probe::kOk);
        EXPECT_EQ(walk.reader.firstClock.time, cut < 14 ? probe::kNoClock : kSecond) << cut;
    }
}

TEST(MpegPsWalk, APacketThatTheEndCutsBeforeItsLengthIsNone) {
    const Bytes packet = rawPacket(0xE3, {});
    for (std::size_t cut = 4; cut <= 6; ++cut) {
        const Bytes bytes(packet.begin(), packet.begin() + static_cast<std::ptrdiff_t>(cut));
        Walk walk(bytes);
        EXPECT_EQ(walk.go(), probe::kOk);
        EXPECT_EQ(walk.reader.videoStream, cut < 6 ? 0 : 0xE3) << cut;
    }
}

// The file is read in pieces of 4,096 bytes at first; a start code may lie across two of them.
TEST(MpegPsWalk, AStartCodeMayStandAnywhere) {
    const Bytes code = ps::packet2(0xE0, ps::sequence({}));
    for (std::size_t at = 4080; at <= 4100; ++at) {
        const Bytes searched =
            Builder().bytes(ps::pack2(0)).padTo(at, 0x55).bytes(code).fill(100, 0x55).take();
        Walk search(searched);
        EXPECT_EQ(search.go(), probe::kOk);
        EXPECT_EQ(search.width(), 352u) << "searched for: " << at;
        const Bytes told = Builder()
                               .bytes(rawPacket(0xBE, Bytes(at - kPacketHead, 0xFF)))
                               .bytes(code)
                               .fill(100, 0x55)
                               .take();
        Walk step(told);
        EXPECT_EQ(step.go(), probe::kOk);
        EXPECT_EQ(step.width(), 352u) << "stepped to: " << at;
    }
}

TEST(MpegPsWalk, APacketWithoutALengthEndsAtTheNextStartCode) {
    const Bytes video = ps::sequence({.width = 0x5A5});
    const auto unbounded = [](const Bytes& payload) {
        return Builder().be32(0x1E0).be16(0).u8(0x0F).bytes(payload).take();
    };
    const Bytes bytes = Builder()
                            .bytes(ps::pack1(0))
                            .bytes(unbounded(firstHalf(video)))
                            .bytes(unbounded(secondHalf(video)))
                            .take();
    Walk walk(bytes);
    EXPECT_EQ(walk.go(), probe::kOk);
    EXPECT_EQ(walk.width(), 0x5A5u);
    const Bytes last = Builder().bytes(ps::pack1(0)).bytes(unbounded(video)).take();
    Walk toTheEnd(last);
    EXPECT_EQ(toTheEnd.go(), probe::kOk);
    EXPECT_EQ(toTheEnd.width(), 0x5A5u);
}

TEST(MpegPsWalk, APacketOfNothingButItsHeaderIsPassedOver) {
    for (const Bytes& data :
         {Bytes{}, Bytes{0x0F}, Bytes{0x40, 0x20, 0x0F}, Bytes{0xFF, 0x0F}, Bytes{0xFF, 0xFF},
          Bytes(5, 0xFF), Bytes(16, 0xFF), Bytes(5, 0x21), Bytes(10, 0x31), Bytes{0x80, 0, 0},
          Bytes{0x81, 0, 2, 0xFF, 0xFF}, Bytes{0x80, 0, 9, 0x44, 0x44},
          Builder().fill(16, 0xFF).be24(0x40200F).take()}) {
        EXPECT_EQ(widthAcross(rawPacket(0xE0, data)), 0x5A5u) << testing::PrintToString(data);
    }
}

TEST(MpegPsWalk, TheFirstTwoBitsTellAHeaderOfMpeg2) {
    for (unsigned first = 0x80; first <= 0xBF; ++first) {
        const Bytes header = {static_cast<std::uint8_t>(first), 0, 1, 0x77};
        EXPECT_EQ(widthAcross({}, header), 0x5A5u) << first;
    }
}

// ISO/IEC 11172-1 2.4.3.3: no more than 16 bytes of stuffing.
TEST(MpegPsWalk, TheSeventeenthByteIsNoStuffing) {
    EXPECT_EQ(widthAcross({}, Bytes(17, 0xFF)), 0x5A5u);
}

// The system header's list ends where its length does, or at the first number without its top bit.
TEST(MpegPsWalk, ASystemHeaderListsItsStreams) {
    struct Row {
        Bytes entries, behind;
        bool noSound;
    };
    const Row rows[] = {
        {{}, {0xE0, 0xC0, 0x20}, false},
        {{0xE0, 0xC0, 0x20}, {}, true},
        {{0xE0, 0xC0, 0x20}, {0xC0, 0xC0, 0x20}, true},
        {{0xE0, 0xC0, 0x20, 0xC0}, {0xC0, 0x20}, true},
        {{0xE0, 0xC0, 0x20, 0xC0, 0xC0}, {0x20}, true},
        {{0xE0, 0xC0, 0x20, 0xC0, 0xC0, 0x20}, {}, false},
        {{0xE0, 0xC0, 0x20, 0x7F, 0xC0, 0x20, 0xC0, 0xC0, 0x20}, {}, true},
        {{0x80, 0xC0, 0x20}, {}, true},
        {{0x7F, 0xC0, 0x20}, {}, false},
    };
    for (const Row& row : rows) {
        const Bytes list = Builder().fill(6, 0x21).bytes(row.entries).take();
        const Bytes bytes =
            Builder().bytes(ps::pack2(0)).bytes(rawPacket(0xBB, list)).bytes(row.behind).take();
        Walk walk(bytes);
        EXPECT_FALSE(walk.reader.announcesNoSound);
        EXPECT_EQ(walk.go(), probe::kOk);
        EXPECT_EQ(walk.reader.announcesNoSound, row.noSound) << testing::PrintToString(row.entries);
    }
}

struct Sound {
    bool isListed = false;   // by a system header
    bool isHeaded = true;    // there is a system header
    bool isHeardOf = false;  // a packet of sound that nothing can be made of comes first
    std::size_t front = 0;   // bytes in front of the first pack
};

// The tag of a sound packet that follows when `before` bytes were walked over.
std::uint32_t soundBehind(std::size_t before, const Sound& sound) {
    Builder builder;
    builder.fill(sound.front, 0x55).bytes(ps::pack2(0));
    if (sound.isHeaded) {
        builder.bytes(ps::systemHeader({0xE0, sound.isListed ? 0xC0u : 0xBEu}));
    }
    builder.bytes(ps::packet2(
        0xE0,
        Builder().bytes(ps::sequence({})).bytes(ps::extension()).bytes(ps::pictures()).take()));
    if (sound.isHeardOf) {
        builder.bytes(ps::packet2(0xC0, Bytes(40, 0x11)));
    }
    padWithPackets(builder, sound.front + before);
    const Bytes bytes = builder.bytes(ps::packet2(0xC0, soundFrames())).fill(5000, 0x55).take();
    Walk walk(bytes, sound.front);
    EXPECT_EQ(walk.go(), probe::kOk);
    return walk.reader.audio.formatTag;
}

TEST(MpegPsWalk, SoundThatNobodyAnnouncesIsLookedForOver256KiB) {
    for (const std::size_t front : {0u, 100u}) {
        EXPECT_EQ(soundBehind(kSilent - 1, {.front = front}), 0x50u);
        EXPECT_EQ(soundBehind(kSilent, {.front = front}), 0u);
        EXPECT_EQ(soundBehind(kSilent, {.isListed = true, .front = front}), 0x50u);
        EXPECT_EQ(soundBehind(kSilent, {.isHeaded = false, .front = front}), 0x50u);
        EXPECT_EQ(soundBehind(kSilent, {.isHeardOf = true, .front = front}), 0x50u);
    }
}

// Frames whose next one lies in another packet: two alike are enough, or the last that came.
TEST(MpegPsWalk, TwoLikelyFramesMustBeAlikeInLayerAndRate) {
    const auto packet = [](unsigned layer, unsigned rate) {
        return ps::packet2(
            0xC0, audio::frame({.layer = layer, .bitRate = 8, .sampleRate = rate, .bytes = 100}));
    };
    constexpr unsigned k44 = 0, k48 = 1;
    const auto rateOf = [](std::initializer_list<Bytes> packets) {
        Builder builder;
        builder.bytes(ps::pack2(0));
        for (const Bytes& one : packets) {
            builder.bytes(one);
        }
        const Bytes bytes = builder.take();
        Walk walk(bytes);
        EXPECT_EQ(walk.go(), probe::kOk);
        return walk.reader.audio.sampleRate;
    };
    EXPECT_EQ(rateOf({packet(2, k44), packet(2, k48), packet(2, k44)}), 44'100u);
    EXPECT_EQ(rateOf({packet(2, k44), packet(1, k44), packet(2, k48)}), 48'000u);
    EXPECT_EQ(rateOf({packet(2, k44), packet(2, k44), packet(2, k48)}), 44'100u);
    const Bytes nothing = ps::packet2(0xC0, Bytes(40, 0x11));
    EXPECT_EQ(rateOf({packet(2, k48), nothing}), 48'000u) << "a packet of no frame changes nothing";
}

// A part of a stream, and what it is.
struct Part {
    const char* name;
    Bytes bytes;
};

TEST(MpegPsWalk, NothingBehind2MiBIsRead) {
    const Bytes video = ps::packet2(0xE0, ps::sequence({}));
    const Part rows[] = {
        {"no start code", Bytes(20, 0x55)},
        {"a pack", ps::pack2(0)},
        {"a system header", ps::systemHeader({0xE0, 0xC0})},
        {"pictures", video},
        {"sound", ps::packet2(0xC0, Bytes(20, 0x55))},
        {"another packet", rawPacket(0xFA, Bytes(9, 0x80))},
        {"a packet without a length", Builder().be32(0x1E1).be16(0).fill(12, 0x55).take()}};
    Builder builder;
    builder.bytes(ps::pack2(0));
    padWithPackets(builder, kWalk - 50'000);
    Bytes bytes = builder.padTo(kWalk + 5000, 0x55).take();
    for (const Part& row : rows) {
        for (std::size_t held = 1; held <= row.bytes.size(); ++held) {
            const auto limit = bytes.begin() + static_cast<std::ptrdiff_t>(kWalk);
            std::fill(limit - 100, limit + 100, std::uint8_t{0x55});
            std::ranges::copy(row.bytes, limit - static_cast<std::ptrdiff_t>(held));
            Walk walk(bytes);
            EXPECT_EQ(walk.go(kWalk, bytes.size()), probe::kOk) << row.name << ' ' << held;
        }
    }
}

TEST(MpegPsWalk, GoesOver2MiBFromTheFirstPack) {
    const Bytes video = ps::packet2(0xE0, ps::sequence({}));
    for (const std::size_t front : {0u, 100u}) {
        for (const std::size_t behind : {0u, 1u}) {
            Builder builder;
            builder.fill(front, 0x55).bytes(ps::pack2(0));
            padWithPackets(builder, front + kWalk - video.size() + behind);
            const Bytes bytes = builder.bytes(video).fill(5000, 0x55).take();
            Walk walk(bytes, front);
            EXPECT_EQ(walk.go(), probe::kOk);
            EXPECT_EQ(walk.width(), behind == 0 ? 352u : 0u) << front;
        }
    }
}

// A long packet, of whose data the first `bytes` are needed.
struct Needed {
    const char* name;
    unsigned stream;
    std::size_t bytes;
};

TEST(MpegPsWalk, APacketThatDescribesNothingIsReadNoFurtherThanItsHeader) {
    const Bytes complete = Builder()
                               .bytes(ps::pack2(0))
                               .bytes(ps::packet2(0xE0, Builder()
                                                            .bytes(ps::sequence({}))
                                                            .bytes(ps::extension())
                                                            .bytes(ps::pictures())
                                                            .take()))
                               .take();
    constexpr std::size_t kBad = 16 * kSector;
    for (const Needed& row :
         {Needed{"another stream of pictures", 0xE1, 32},
          Needed{"the first, which is known", 0xE0, 32},
          Needed{"a stream of another kind", 0xFA, 3}, Needed{"padding", 0xBE, 0}}) {
        for (const std::size_t less : {0u, 1u}) {
            // A sector that cannot be read begins behind what is needed, or one byte before.
            const std::size_t start = kBad - kPacketHead - row.bytes + less;
            const Bytes bytes =
                Builder()
                    .bytes(complete)
                    .bytes(rawPacket(0xBE, Bytes(start - complete.size() - kPacketHead, 0xFF)))
                    .bytes(rawPacket(row.stream, Bytes(20'000, 0x80)))
                    .bytes(ps::packet2(0xC0, soundFrames()))
                    .take();
            Walk walk(bytes);
            const bool isEnough = less == 0;
            EXPECT_EQ(walk.go(kBad), isEnough ? probe::kOk : probe::kFail) << row.name;
            EXPECT_EQ(walk.reader.audio.formatTag, isEnough ? 0x50u : 0u) << row.name;
        }
    }
}

// A read that fails ends the walk, whatever would come behind: the one that reads ahead, and the
// one of the sector that is needed.
TEST(MpegPsWalk, AReadThatFailsEndsIt) {
    const Part rows[] = {{"a pack", ps::pack2(0)},
                         {"a system header", ps::systemHeader({0xE0, 0xC0})},
                         {"pictures", ps::packet2(0xE0, ps::pictures(2000))},
                         {"sound", ps::packet2(0xC0, Bytes(2000, 0x55))},
                         {"another packet", rawPacket(0xFA, Bytes(2000, 0x80))}};
    constexpr std::size_t kBad = 16 * kSector;
    for (const Part& row : rows) {
        for (std::size_t held = 0; held <= 8; ++held) {
            const std::size_t start = kBad - held;
            const Bytes bytes = Builder()
                                    .bytes(rawPacket(0xBE, Bytes(start - kPacketHead, 0xFF)))
                                    .bytes(row.bytes)
                                    .bytes(ps::packet2(0xE0, ps::sequence({})))
                                    .fill(5000, 0x55)
                                    .take();
            Walk walk(bytes);
            EXPECT_EQ(walk.go(kBad), probe::kFail) << row.name << ' ' << held;
            // The start of the file; the sector that the start code begins in, whose first read
            // reaches too far, when it is a good one; and the two that fail.
            EXPECT_EQ(walk.file.reads, held < 4 ? 3u : 5u) << row.name << ' ' << held;
        }
    }
}

probe::AudioFound foundIn(unsigned stream, const Bytes& payload) {
    probe::PacketAudio audio;
    return probe::readPacketAudio(static_cast<std::uint8_t>(stream), payload, audio);
}

TEST(MpegPsPacketAudio, AFrameIsCertainWhenAnotherLikeItFollows) {
    using probe::AudioFound;
    const audio::Frame layer2 = {.layer = 2, .bitRate = 8};
    const Bytes frame = audio::frame(layer2);
    const auto followed = [&frame](const Bytes& next) { return join({frame, next}); };
    const auto header = [](const audio::Frame& f) {
        const Bytes whole = audio::frame(f);
        return Bytes(whole.begin(), whole.begin() + 4);
    };
    EXPECT_EQ(foundIn(0xC0, followed(header(layer2))), AudioFound::Certain);
    EXPECT_EQ(foundIn(0xC0, followed(withoutLast(header(layer2), 1))), AudioFound::Likely);
    EXPECT_EQ(foundIn(0xC0, followed(Bytes(4, 0x55))), AudioFound::No);
    EXPECT_EQ(foundIn(0xC0, followed(header({.layer = 1}))), AudioFound::No) << "layer III";
    EXPECT_EQ(foundIn(0xC0, followed(header({.layer = 2, .bitRate = 8, .sampleRate = 1}))),
              AudioFound::No)
        << "48 kHz";
    EXPECT_EQ(foundIn(0xC0, join({Bytes(1, 0x55), frame, frame})), AudioFound::Certain);
    EXPECT_EQ(foundIn(0xC0, join({Bytes(1, 0x55), frame})), AudioFound::No)
        << "the frame of a packet of its own begins it";
    EXPECT_EQ(foundIn(0xC0, audio::frame({.layer = 2, .bitRate = 0})), AudioFound::Likely)
        << "the free format does not tell where the next one stands";
}

TEST(MpegPsPacketAudio, LinearPcmIsToldByTwoBytes) {
    for (const std::size_t length : {0u, 1u, 2u, 3u}) {
        Bytes payload = ps::subStream(0xA0, ps::pcm(0, 2));
        payload.resize(4 + length);
        const Bytes alone(payload);
        EXPECT_EQ(foundIn(0xBD, alone),
                  length < 2 ? probe::AudioFound::No : probe::AudioFound::Certain)
            << length;
    }
}

// A start code that the bytes end in is none, whatever lies behind them.
TEST(MpegPsStartCode, StandsWholeInTheBytes) {
    const Bytes bytes = {0, 0, 1, 0xBA, 0, 0, 1, 0xBA};
    for (std::size_t from = 0; from <= 4; ++from) {
        for (std::size_t to = from; to <= bytes.size(); ++to) {
            const auto seen = std::span(bytes).subspan(from, to - from);
            const std::size_t first = from == 0 ? 0 : 4 - from;
            EXPECT_EQ(probe::findStartCode(seen, 0xBA, 0xBA),
                      first + 4 <= seen.size() ? first : seen.size())
                << from << ' ' << to;
        }
    }
}

}  // namespace
}  // namespace probe_test
