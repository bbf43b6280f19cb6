// Single rules of MPEG audio, FLAC, Monkey's Audio and their tags, at their edges.
#include <algorithm>

#include "build_audio.h"
#include "expectations.h"
#include "probe/mpegaudio/id3.h"

namespace probe_test {
namespace {

using R = probe::MediaRecord;

Bytes cutTo(Bytes bytes, std::size_t size) {
    bytes.resize(size);
    return bytes;
}

TEST(MpegAudioRules, TheFileHoldsItsTagAndAHeadMore) {
    // Frames of 104 bytes: 32 kbit/s at 44,100 Hz.
    const Bytes frames = audio::frames(12, {.bitRate = 1, .bytes = 104});
    struct Case {
        const char* name;
        unsigned version, flags, revision;
        std::size_t least;
    };
    for (const Case& one : std::to_array<Case>({{"footer", 4, 0x10, 0, 64 + 10 + 1024},
                                                {"no footer", 4, 0, 0, 64 + 1024},
                                                {"another flag", 4, 0x20, 0, 64 + 1024},
                                                {"the lower flags", 4, 0x0F, 0, 64 + 1024},
                                                {"version 3 has none", 3, 0x10, 0, 64 + 1024},
                                                {"of another revision", 4, 0x10, 1, 1024}})) {
        const Bytes bytes = join({audio::id3v2(64, one.version, one.flags, one.revision), frames});
        ASSERT_GE(bytes.size(), one.least);
        EXPECT_EQ(probeBytes(cutTo(bytes, one.least)).claimed, 1) << one.name;
        EXPECT_EQ(probeBytes(cutTo(bytes, one.least - 1)).claimed, 0) << one.name;
    }
}

TEST(MpegAudioRules, ARunIsOfOneVersionAndLayer) {
    const audio::Frame plain;
    const auto claimedWith = [&plain](const audio::Frame& odd) {
        return probeBytes(join({Bytes(20), audio::frames(3, plain), audio::frame(odd),
                                audio::frames(6, plain)}))
            .claimed;
    };
    EXPECT_EQ(claimedWith(plain), 1);
    EXPECT_EQ(claimedWith({.padding = 1, .bytes = 418}), 1) << "the rest may change";
    EXPECT_EQ(claimedWith({.bitRate = 10, .mode = 3, .bytes = 522}), 1);
    EXPECT_EQ(claimedWith({.version = 2, .bitRate = 14, .bytes = 522}), 0) << "version";
    EXPECT_EQ(claimedWith({.layer = 2, .bitRate = 8, .bytes = 417}), 0) << "layer";
    EXPECT_EQ(claimedWith({.bitRate = 0}), 0) << "free format";
    EXPECT_EQ(claimedWith({.version = 1}), 0) << "reserved version";
    EXPECT_EQ(claimedWith({.layer = 0}), 0) << "reserved layer";
    EXPECT_EQ(claimedWith({.bitRate = 15}), 0) << "forbidden bit rate";
    EXPECT_EQ(claimedWith({.sampleRate = 3}), 0) << "reserved sample rate";
}

TEST(MpegAudioRules, TheScanBeginsAt10) {
    for (std::size_t at = 0; at <= 12; ++at) {
        Bytes bytes = join({Bytes(20), audio::frames(8)});
        const Bytes header = {0xFF, 0xFB, 0x90, 0x00};
        std::copy(header.begin(), header.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
        EXPECT_EQ(probeBytes(bytes).claimed, at < 10 ? 1 : 0) << at;
    }
}

TEST(MpegAudioRules, FiveFramesAreNotEnough) {
    for (std::size_t count = 4; count <= 7; ++count) {
        const Bytes bytes = join({Bytes(20), audio::frames(count), Bytes(2000, 0x55)});
        EXPECT_EQ(probeBytes(bytes).claimed, count >= 6 ? 1 : 0) << count;
    }
}

TEST(MpegAudioRules, XingStandsBehindTheSideInformation) {
    struct Case {
        unsigned version, mode;
        std::size_t at;
        unsigned samples, rate;
    };
    for (const Case& one : std::to_array<Case>({{3, 0, 4 + 32, 1152, 44100},
                                                {3, 1, 4 + 32, 1152, 44100},
                                                {3, 3, 4 + 17, 1152, 44100},
                                                {2, 0, 4 + 17, 576, 22050},
                                                {2, 3, 4 + 9, 576, 22050},
                                                {0, 0, 4 + 17, 576, 11025},
                                                {0, 3, 4 + 9, 576, 11025}})) {
        for (const std::size_t off : {0u, 1u}) {
            // 64 kbit/s: index 5 in MPEG-1 layer III, 8 in MPEG-2.
            const unsigned index = one.version == 3 ? 5 : 8;
            audio::Frame frame{.version = one.version, .bitRate = index, .mode = one.mode};
            frame.bytes = one.samples / 8 * 64'000 / one.rate;
            Bytes first = audio::frame(frame);
            const Bytes header = Builder().text("Xing").be32(3).be32(50'000).be32(1'000'000).take();
            std::copy(header.begin(), header.end(),
                      first.begin() + static_cast<std::ptrdiff_t>(one.at + off));
            const Bytes bytes = join({audio::id3v2(10), first, audio::frames(20, frame)});
            const std::uint64_t seconds = std::uint64_t{50'000} * one.samples / one.rate;
            const bool found = probeBytes(bytes).info->durationSeconds == seconds;
            EXPECT_EQ(found, off == 0) << one.version << one.mode;
        }
    }
}

TEST(MpegAudioRules, ARunMayBeginAtABorderOfTheWindow) {
    for (std::size_t at = 4085; at <= 4100; ++at) {
        const Bytes bytes = join({Bytes(at), audio::frames(6), Bytes(2000, 0x55)});
        EXPECT_EQ(probeBytes(bytes).claimed, 1) << at;
    }
}

TEST(MpegAudioRules, AVbriHeaderMayEndAtABorderOfTheWindow) {
    for (std::size_t at = 4040; at <= 4046; ++at) {
        const Bytes bytes =
            join({audio::id3v2(at - 10), audio::vbriFrame(50'175, 0), audio::frames(20)});
        EXPECT_EQ(probeBytes(bytes).info->durationSeconds, 50'175u * 1152 / 44100) << at;
    }
}

TEST(MpegAudioRules, TheFrameOfAVbriHeaderIsSilent) {
    // 64 kbit/s behind a frame of 128.
    const Bytes bytes = join({audio::id3v2(10), audio::vbriFrame(0, 0),
                              audio::frames(20, {.bitRate = 5, .bytes = 208})});
    EXPECT_EQ(probeBytes(bytes).info->audioBitRate, 64'000u);
}

// Pairs of frames of 128 and 160 kbit/s.
Bytes varying(std::size_t pairs) {
    Builder builder;
    for (std::size_t i = 0; i < pairs; ++i) {
        builder.bytes(audio::frame({})).bytes(audio::frame({.bitRate = 10, .bytes = 522}));
    }
    return builder.take();
}

TEST(MpegAudioRules, AVaryingRateIsMeasuredUpToTheFirstDamage) {
    const Bytes bytes = join({audio::id3v2(10), varying(5), Bytes(5000, 0x55)});
    EXPECT_EQ(probeBytes(bytes).info->audioBitRate, (417u + 522u) * 8 * 44100 / (2 * 1152));
}

TEST(MpegAudioRules, AVaryingRateIsMeasuredOver2MiB) {
    const Bytes bytes = join({audio::id3v2(10), varying(2 * 1024 * 1024 / 939 + 1),
                              audio::frames(1000, {.bitRate = 14, .bytes = 1044})});
    EXPECT_NEAR(probeBytes(bytes).info->audioBitRate, (417 + 522) * 8 * 44100 / (2 * 1152), 20);
}

TEST(MpegAudioRules, AVersion1TagHas128Bytes) {
    // 8 kbit/s at 8 kHz: 72 bytes a frame, a thousand bytes a second.
    const audio::Frame frame{.version = 0, .bitRate = 1, .sampleRate = 2, .bytes = 72};
    const Bytes tag = audio::id3v1("T", "", "", "", 0);
    const auto secondsOf = [&](std::size_t soundBytes) {
        const Bytes sound = cutTo(audio::frames(130, frame), soundBytes);
        return probeBytes(join({sound, tag})).info->durationSeconds;
    };
    EXPECT_EQ(secondsOf(9000), 9u);
    EXPECT_EQ(secondsOf(8999), 8u);
}

// A second is 1,000 bytes of these frames, so the play time tells where the sound ends.
TEST(MpegAudioRules, AnApeTagsHeaderIsPartOfItWhereItsFlagIsSet) {
    const audio::Frame frame{.version = 0, .bitRate = 1, .sampleRate = 2, .bytes = 72};
    const auto secondsOf = [&frame](std::uint32_t flags, std::size_t soundBytes) {
        Bytes tag = audio::apeTag({{"Title", "T"}});
        for (unsigned i = 0; i < 4; ++i) {
            tag[tag.size() - 12 + i] = static_cast<std::uint8_t>(flags >> 8 * i);
        }
        const Bytes header(flags >> 31 != 0 ? 32 : 0, 0x22);
        return probeBytes(join({cutTo(audio::frames(130, frame), soundBytes), header, tag}))
            .info->durationSeconds;
    };
    for (const std::uint32_t flags : {0u, 1u, 0x40000000u, 0x80000000u, 0xA0000001u}) {
        EXPECT_EQ(secondsOf(flags, 9000), 9u) << flags;
        EXPECT_EQ(secondsOf(flags, 8999), 8u) << flags;
    }
}

TEST(MpegAudioRules, SixFramesOfOneRateAreAConstantOne) {
    const audio::Frame slow{.bitRate = 5, .bytes = 208}, quick{.bitRate = 9, .bytes = 417};
    for (const std::size_t equal : {5u, 6u, 7u}) {
        const Bytes bytes = join({audio::frames(equal, slow), audio::frames(40, quick)});
        const std::uint32_t rate = probeBytes(bytes).info->audioBitRate;
        if (equal < 6) {
            EXPECT_GT(rate, 64'000u) << equal;
        } else {
            EXPECT_EQ(rate, 64'000u) << equal;
        }
    }
}

TEST(MpegAudioRules, AnEncodersHeaderIsOfLayer3Alone) {
    // "Xing" of 1,000 frames where layer III has it, in the first of a stream of layer II.
    const audio::Frame frame{.layer = 2, .bitRate = 8, .bytes = 417};
    Bytes bytes = audio::frames(40, frame);
    const Bytes header = Builder().text("Xing").be32(3).be32(1000).be32(50'000).take();
    std::ranges::copy(header, bytes.begin() + 36);
    EXPECT_EQ(probeBytes(bytes).info->audioBitRate, 128'000u);
    EXPECT_EQ(probeBytes(bytes).info->durationSeconds, 1u);
}

TEST(FlacRules, TheSmallestFileHas256Bytes) {
    const Bytes whole = cutTo(audio::flac(44100), 256);
    EXPECT_EQ(probeBytes(whole).info->containerType, probe::kContainerFlac);
    EXPECT_EQ(probeBytes(cutTo(whole, 255)).claimed, 0);
    const Bytes behind = join({audio::id3v2(2000), whole});
    EXPECT_EQ(probeBytes(behind).info->containerType, probe::kContainerFlac);
    EXPECT_EQ(probeBytes(withoutLast(behind, 1)).claimed, 0);
}

TEST(FlacRules, AnotherFirstBlockKeepsContainerAndFormat) {
    Bytes bytes = cutTo(audio::flac(44100), 300);
    for (const auto& [at, value] : {std::pair{4u, 0x84}, std::pair{4u, 0x01}, std::pair{7u, 33}}) {
        Bytes odd = bytes;
        odd[at] = static_cast<std::uint8_t>(value);
        const Outcome outcome = probeBytes(odd);
        EXPECT_EQ(outcome.claimed, 1);
        EXPECT_EQ(outcome.info->status, probe::kFail);
        EXPECT_EQ(outcome.info->containerType, probe::kContainerFlac);
        EXPECT_EQ(outcome.info->audioFormatTag, 0xF1ACu);
        EXPECT_EQ(outcome.info->videoFourCC, 0u);
        EXPECT_EQ(outcome.info->audioSampleRate, 0u);
    }
    bytes[4] = 0x00;  // not the last block
    EXPECT_EQ(probeBytes(bytes).info->status, probe::kOk);
}

// RFC 9639 section 8.1: the frames begin behind the block whose header has its top bit set. The
// bit rate tells where that is: a second of sound, so eight times the bytes of the frames.
std::uint32_t flacFrameBytes(const Bytes& blocks, std::size_t bytes) {
    return probeBytes(cutTo(join({audio::flac(44100, 44100, 2, false), blocks}), bytes))
               .info->audioBitRate /
           8;
}

TEST(FlacRules, TheFramesBeginBehindTheLastOf64Blocks) {
    constexpr std::size_t kBytes = 1000, kInformation = 4 + 4 + 34;
    const auto blocks = [](std::size_t count) {
        Builder builder;
        for (std::size_t i = 1; i < count; ++i) {
            builder.be32(0x01000000);  // padding of no bytes
        }
        return builder.be32(0x81000002).be16(0).take();
    };
    for (const std::size_t count : {1u, 2u, 63u}) {
        EXPECT_EQ(flacFrameBytes(blocks(count), kBytes), kBytes - kInformation - 4 * count - 2)
            << count;
    }
    EXPECT_EQ(flacFrameBytes(blocks(64), kBytes), kBytes - kInformation)
        << "the stream information is the first of the 64";
}

TEST(FlacRules, ThereAre36BitsOfSamples) {
    for (unsigned bit = 4; bit < 36; ++bit) {
        const std::uint64_t samples = std::uint64_t{1} << bit;
        EXPECT_EQ(probeBytes(cutTo(audio::flac(samples, 16), 300)).info->durationSeconds,
                  samples / 16)
            << bit;
    }
}

TEST(FlacRules, ASingleSampleHasABitRate) {
    const Bytes bytes = cutTo(audio::flac(1, 100), 442);
    EXPECT_EQ(probeBytes(bytes).info->audioBitRate, 400u * 8 * 100);
}

TEST(FlacRules, BlocksThatLeadBeyondTheFileEndWithTheInformation) {
    constexpr std::size_t kBytes = 1000, kInformation = 4 + 4 + 34;
    for (const std::size_t beyond : {0u, 1u}) {
        const std::size_t length = kBytes - kInformation - 4 + beyond;
        EXPECT_EQ(flacFrameBytes(Builder().be32(0x81000000 | length).take(), kBytes),
                  beyond == 0 ? 0 : kBytes - kInformation)
            << beyond;
    }
}

TEST(Id3Rules, TheTopBitsOfASizeAreNotPartOfIt) {
    for (std::size_t byte = 6; byte < 10; ++byte) {
        Bytes bytes = join({audio::id3v2(200), cutTo(audio::flac(44100), 300)});
        bytes[byte] = static_cast<std::uint8_t>(bytes[byte] | 0x80);
        EXPECT_EQ(probeBytes(bytes).info->containerType, probe::kContainerFlac) << byte;
    }
    for (const std::size_t size : {127u, 128u, 16'383u, 16'384u, 2'097'151u, 2'097'152u}) {
        const Bytes bytes = join({audio::id3v2(size), cutTo(audio::flac(44100), 300)});
        EXPECT_EQ(probeBytes(bytes).info->containerType, probe::kContainerFlac) << size;
    }
}

// Natively code page 0 is Windows-1252: E9 is é, 80 the euro sign.
TEST(TextRules, Id3Version1IsInTheUnitsCodePage) {
    const Outcome outcome = probeBytes(
        audio::apeWith(audio::id3v1("\xE9t\x80", "\x80rt\xE9", "\xC0l", "20\xE9\x80", 3)));
    EXPECT_EQ(platform::toUtf8(outcome.info->title), "ét€");
    EXPECT_EQ(platform::toUtf8(outcome.info->artist), "€rté");
    EXPECT_EQ(platform::toUtf8(outcome.info->album), "Àl");
    EXPECT_EQ(platform::toUtf8(outcome.info->year), "20é€");
}

TEST(TextRules, AnId3GenreIsAnyNumberBut255) {
    for (const unsigned genre : {0u, 1u, 191u, 253u, 254u, 255u}) {
        const Outcome outcome =
            probeBytes(audio::apeWith(audio::id3v1("T", "A", "B", "2011", genre)));
        EXPECT_EQ(outcome.info->hasGenre, genre < 255 ? 1u : 0u) << genre;
        EXPECT_EQ(outcome.info->genreIndex, genre < 255 ? static_cast<int>(genre) : -1) << genre;
    }
}

TEST(TextRules, AnId3TagFillsWhatIsUnsetAlone) {
    const Bytes tag = audio::id3v1("T", "A", "B", "2011", 3);
    R record;
    record.hasTitle = record.hasArtist = record.hasAlbum = record.hasYear = record.hasGenre = 1;
    probe::readId3v1(std::span<const std::uint8_t, 128>(tag), record);
    EXPECT_EQ(record.title[0] | record.artist[0] | record.album[0] | record.year[0], 0);
    EXPECT_EQ(record.genreIndex, R().genreIndex);
}

TEST(TextRules, EachFieldOfId3Version1HasItsLength) {
    const std::string full(30, 'x');
    Bytes tag = audio::id3v1(full, full, full, "2011", 3);
    tag[97] = '9';  // the comment
    const Outcome outcome = probeBytes(audio::apeWith(tag));
    EXPECT_EQ(platform::toUtf8(outcome.info->title), full);
    EXPECT_EQ(platform::toUtf8(outcome.info->artist), full);
    EXPECT_EQ(platform::toUtf8(outcome.info->album), full);
    EXPECT_EQ(platform::toUtf8(outcome.info->year), "2011");
}

TEST(TextRules, ApeItemsAreUtf8FromVersion2000On) {
    struct Case {
        std::string_view key;
        char16_t (R::*text)[probe::kTextLength];
        std::uint32_t R::*flag;
    };
    for (const Case& one : std::to_array<Case>({{"Title", &R::title, &R::hasTitle},
                                                {"Artist", &R::artist, &R::hasArtist},
                                                {"Album", &R::album, &R::hasAlbum},
                                                {"Genre", &R::genre, &R::hasGenre},
                                                {"Track", &R::track, &R::hasTrack}})) {
        for (const unsigned version : {1000u, 1999u, 2000u}) {
            const std::string_view value = version < 2000 ? "\xE9\x80" : "é€";
            const Outcome outcome =
                probeBytes(audio::apeWith(audio::apeTag({{one.key, value}}, version)));
            const R& record = *outcome.info;
            EXPECT_EQ(platform::toUtf8(record.*one.text), "é€") << one.key << version;
            EXPECT_EQ(record.*one.flag, 1u);
        }
        const std::string lower =
            std::string(1, static_cast<char>(one.key[0] | 0x20)) + std::string(one.key.substr(1));
        const std::string longer = std::string(one.key) + "s";
        for (const std::string& other : {lower, longer, std::string(one.key.substr(1))}) {
            const Outcome none = probeBytes(audio::apeWith(audio::apeTag({{other, "x"}})));
            EXPECT_EQ((*none.info).*one.flag, 0u) << other;
        }
    }
}

}  // namespace
}  // namespace probe_test
