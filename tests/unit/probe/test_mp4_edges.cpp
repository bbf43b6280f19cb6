// MP4 boxes that are shorter than what they should hold: the bytes behind them are another box's.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>

#include "build_mp4.h"
#include "probing.h"

namespace probe_test {
namespace {

const std::string kNoMemory = "[ERROR] MP4 Parse MEDIA memory alloc fail\n";

Bytes tables(std::uint32_t samples) {
    return join({table("stts", 1, {samples, 1000}), stsz(10, samples),
                 table("stsc", 1, {1, samples, 1}), table("stco", 1, {100})});
}

// A whole file of one track; `stbl` are the sample table box's children.
Outcome probeTrack(std::string_view handler, const Bytes& stbl) {
    return probeBytes(join(
        {ftyp("isom", "isom"), box("moov", track(handler, 1000, stbl)), box("free", Bytes(300))}));
}

TEST(Mp4Edges, ATableThatEndsBeforeItsCountIsNone) {
    struct Case {
        const char* type;
        std::size_t head;  // of its body, the count included
    };
    for (const Case& one :
         std::to_array<Case>({{"stts", 8}, {"stsc", 8}, {"stsz", 12}, {"stco", 8}})) {
        for (const std::size_t missing : {0u, 1u, 8u}) {
            const Outcome outcome =
                probeTrack("vide", join({stsd(1, visualEntry("mp4v", 64, 48)),
                                         box(one.type, Bytes(one.head - missing)), tables(2)}));
            EXPECT_EQ(outcome.lines, missing == 0 ? "" : kNoMemory) << one.type << missing;
        }
    }
}

TEST(Mp4Edges, ADescriptionThatEndsBeforeItsCountIsNone) {
    // What stands behind the short box would be a count of 0.
    const Bytes zeros = Builder().be32(24).be32(0).fill(16).take();
    for (const std::size_t held : {0u, 4u, 7u, 8u}) {
        const Outcome outcome =
            probeTrack("vide", join({box("stsd", Bytes(held)), zeros, tables(2)}));
        EXPECT_EQ(outcome.lines, held == 8 ? "" : kNoMemory) << held;
    }
}

TEST(Mp4Edges, OnlyPicturesAndSoundHaveTheirDescriptionRead) {
    const Bytes shortEntry = box("free", Bytes(4));
    for (const char* handler : {"vide", "soun", "hint", "text", "sbtl"}) {
        const bool isRead = handler[0] == 'v' || std::string_view(handler) == "soun";
        const Outcome outcome = probeTrack(handler, join({stsd(1, shortEntry), tables(2)}));
        EXPECT_EQ(outcome.lines, isRead ? kNoMemory : "") << handler;
    }
}

TEST(Mp4Edges, BytesBehindTheLastChildAreNoBox) {
    // Seven bytes that would be the begin of a table box, and the eighth behind the parent's end.
    const Bytes begun = Builder().be32(16).text("stt").take();
    const Bytes next = Builder().text("s").fill(3).text("free").fill(8).take();
    const Bytes stbl = box("stbl", join({stsd(1, visualEntry("mp4v", 64, 48)), tables(5), begun}));
    const Bytes mdia =
        box("mdia", join({mdhd(1000), hdlr("vide"), box("minf", join({stbl, next}))}));
    const Outcome outcome =
        probeBytes(join({ftyp("isom", "isom"), box("moov", box("trak", join({tkhd(), mdia}))),
                         box("free", Bytes(300))}));
    EXPECT_EQ(outcome.lines, "");
    EXPECT_EQ(outcome.info->durationSeconds, 5u);
}

TEST(Mp4Edges, AMediaHeaderOneByteShortHasNoTimescale) {
    // Its three bytes and the first of the next box would be a timescale of 768.
    const Bytes cut = box("mdhd", Builder().fill(12).be24(3).take());
    const Bytes minf =
        box("minf", box("stbl", join({stsd(1, visualEntry("mp4v", 64, 48)), tables(5)})));
    const Bytes mdia = box("mdia", join({cut, hdlr("vide"), minf}));
    const Outcome outcome =
        probeBytes(join({ftyp("isom", "isom"), box("moov", box("trak", join({tkhd(), mdia}))),
                         box("free", Bytes(300))}));
    EXPECT_EQ(outcome.info->status, probe::kOk);
    EXPECT_EQ(outcome.info->durationSeconds, 0u);
}

TEST(Mp4Edges, AnAvcConfigurationWithoutALengthHasNoSet) {
    // Seven bytes end within the set's length. With the next byte it would be 256, and the box
    // behind would be a set: its size the profile, the last three letters 12:11.
    const Bytes cut =
        box("avcC", Builder().u8(1).u8(66).u8(0).u8(30).u8(0xFF).u8(0xE1).u8(1).take());
    const Bytes behind = Builder().be32(16).u8('x').be24(0xDDCC08).fill(8).take();
    const Bytes entry = visualEntry("avc1", 64, 48, join({cut, behind}));
    const Outcome outcome = probeTrack("vide", join({stsd(1, entry), tables(5)}));
    EXPECT_EQ(outcome.info->status, probe::kOk);
    EXPECT_EQ(outcome.info->pixelAspectX, 0u);
}

Bytes soundOf(const Bytes& esDescriptors, unsigned flags = 0) {
    const std::size_t size = 3 + esDescriptors.size();
    const Bytes body = Builder()
                           .be32(0)
                           .u8(3)
                           .u8(0x80 | size >> 7)
                           .u8(size & 0x7F)
                           .be16(1)
                           .u8(flags)
                           .bytes(esDescriptors)
                           .take();
    return join({stsd(1, audioEntry("mp4a", 2, 24000, box("esds", body))), tables(5)});
}

// ISO/IEC 14496-1 7.2.6: a decoder configuration of 64 kbit/s.
Bytes decoderConfig() {
    return Builder().u8(4).u8(13).u8(0x40).u8(0x15).be24(0).be32(99'000).be32(64'000).take();
}

TEST(Mp4Edges, ADescriptorsLengthHasSevenBitsAByte) {
    for (const std::size_t length : {127u, 128u, 129u, 300u}) {
        const Bytes other =
            Builder().u8(6).u8(0x80 | length >> 7).u8(length & 0x7F).fill(length, 4).take();
        const Outcome outcome = probeTrack("soun", soundOf(join({other, decoderConfig()})));
        EXPECT_EQ(outcome.info->audioBitRate, 64'000u) << length;
    }
}

TEST(Mp4Edges, ADescriptorsLengthHasFourBytesAtMost) {
    // The fourth announces a fifth, which is the content's first.
    const Bytes other = Builder().u8(6).be32(0x80808083).be24(0x000000).take();
    const Outcome outcome = probeTrack("soun", soundOf(join({other, decoderConfig()})));
    EXPECT_EQ(outcome.info->audioBitRate, 64'000u);
}

TEST(Mp4Edges, TheStreamsPriorityAnnouncesNothing) {
    for (unsigned priority = 0; priority < 32; ++priority) {
        const Outcome outcome = probeTrack("soun", soundOf(decoderConfig(), priority));
        EXPECT_EQ(outcome.info->audioBitRate, 64'000u) << priority;
    }
}

TEST(Mp4Edges, ADecoderConfigurationThatIsCutHasNoBitRate) {
    for (std::uint8_t size = 0; size < 13; ++size) {
        Bytes cut = decoderConfig();
        cut.resize(2u + size);
        cut[1] = size;
        const Outcome outcome = probeTrack("soun", soundOf(cut));
        EXPECT_EQ(outcome.info->status, probe::kOk) << int{size};
        EXPECT_EQ(outcome.info->audioBitRate, 0u) << int{size};
    }
}

TEST(Mp4Edges, AFileOf256BytesIsLookedAt) {
    const Bytes whole =
        join({ftyp("isom", "isom"), box("moov", Bytes(8)), box("free", Bytes(300))});
    EXPECT_EQ(probeBytes(Bytes(whole.begin(), whole.begin() + 256)).claimed, 1);
    EXPECT_EQ(probeBytes(Bytes(whole.begin(), whole.begin() + 255)).claimed, 0);
}

// ISO/IEC 14496-3: object type 5, 24 kHz, two channels, extended to 48 kHz, in 17 bits.
TEST(Mp4Edges, ADecoderInformationOf3BytesTellsTheRate) {
    const Bytes information = {0x2B, 0x11, 0x80};
    for (const std::size_t bytes : {2u, 3u}) {
        const Bytes cut(information.begin(),
                        information.begin() + static_cast<std::ptrdiff_t>(bytes));
        const Outcome outcome = probeTrack(
            "soun",
            join({stsd(1, audioEntry("mp4a", 2, 24000, esds(0x40, 64'000, cut))), tables(5)}));
        EXPECT_EQ(outcome.info->audioSampleRate, bytes == 3 ? 48'000u : 24'000u) << bytes;
    }
}

TEST(Mp4Edges, AnAvcConfigurationOfNoSetsHasNoAspect) {
    for (unsigned sets = 0; sets < 32; ++sets) {
        const Bytes set = sps({});
        Bytes configuration = avcC(set);
        configuration[8 + 5] = static_cast<std::uint8_t>(0xE0 | sets);
        const Outcome outcome = probeTrack(
            "vide", join({stsd(1, visualEntry("avc1", 64, 48, configuration)), tables(5)}));
        EXPECT_EQ(outcome.info->pixelAspectX, sets == 0 ? 0u : 12u) << sets;
    }
}

TEST(Mp4Edges, AParameterSetIsAsLongAsItsLength) {
    const Bytes set = sps({});
    for (const std::size_t length : {std::size_t{3}, set.size() - 1, set.size()}) {
        Bytes configuration = avcC(set);
        configuration[8 + 7] = static_cast<std::uint8_t>(length);
        const Outcome outcome = probeTrack(
            "vide", join({stsd(1, visualEntry("avc1", 64, 48, configuration)), tables(5)}));
        EXPECT_EQ(outcome.info->pixelAspectX, length < 4 ? 0u : 12u) << length;
    }
}

TEST(Mp4Edges, OfAnotherFormatOnlyTheFixedPartIsRead) {
    const Bytes noBox = Builder().be32(5).be32(5).be32(5).take();
    EXPECT_EQ(probeTrack("vide", join({stsd(1, visualEntry("s263", 64, 48, noBox)), tables(5)}))
                  .info->videoWidth,
              64u);
    EXPECT_EQ(probeTrack("soun", join({stsd(1, audioEntry("samr", 1, 8000, noBox)), tables(5)}))
                  .info->audioSampleRate,
              8000u);
    for (const char* format : {"mp4a", "samr", "ac-3", "mp4s"}) {
        const Bytes entry = audioEntry(format, 2, 8000, esds(0x6B, 96'000, {}));
        const Outcome outcome = probeTrack("soun", join({stsd(1, entry), tables(5)}));
        const bool isRead = std::string_view(format) == "mp4a";
        EXPECT_EQ(outcome.info->audioBitRate, isRead ? 96'000u : 0u) << format;
        EXPECT_EQ(outcome.info->audioFormatTag, isRead ? 0x55u : 0xFFu) << format;
    }
}

TEST(Mp4Edges, AnEntryThatIsLongerThanItsDescriptionIsNone) {
    for (const unsigned longer : {0u, 1u}) {
        Bytes entry = audioEntry("mp4a", 2, 24000);
        entry[3] = static_cast<std::uint8_t>(entry[3] + longer);
        const Outcome outcome = probeTrack("soun", join({stsd(1, entry), tables(5)}));
        EXPECT_EQ(outcome.info->audioSampleRate, longer == 0 ? 24'000u : 0u) << longer;
    }
}

// A box may be no more than its header, the last one of its parent as well.
TEST(Mp4Edges, AHeaderThatEndsItsParentIsABox) {
    for (const char* name : {"free", "stts", "stsc", "stco", "stsz", "stsd"}) {
        const Outcome outcome = probeTrack(
            "vide", join({stsd(1, visualEntry("mp4v", 64, 48)), tables(2), box(name, {})}));
        EXPECT_EQ(outcome.lines, name[0] == 'f' ? "" : kNoMemory) << name;
    }
}

// A box that is larger than its parent ends with it, whatever stands behind.
TEST(Mp4Edges, ABoxEndsWithItsParent) {
    for (const std::uint32_t count : {1u, 2u, 50u}) {
        Builder offsets;
        offsets.bytes(table("stco", count, {100})).patchBe32(0, 500);
        const Outcome outcome = probeTrack(
            "vide", join({stsd(1, visualEntry("mp4v", 64, 48)), tables(1), offsets.take()}));
        EXPECT_EQ(outcome.lines, count == 1 ? "" : kNoMemory) << count;
    }
}

// The handler's name may be missing, and the file end with its type.
TEST(Mp4Edges, AFieldMayEndTheFile) {
    for (const std::size_t missing : {0u, 1u}) {
        const Bytes handler =
            box("hdlr", withoutLast(Builder().be64(0).text("hint").take(), missing));
        const Bytes media = box("mdia", join({mdhd(1000), handler}));
        const Bytes bytes = join({ftyp("isom", "isom"), box("free", Bytes(300)),
                                  box("moov", box("trak", join({tkhd(), media})))});
        const Outcome outcome = probeBytes(bytes);
        EXPECT_EQ(outcome.info->containerType, 2u) << missing;
    }
}

// An entry that is counted and missing, where the file ends with its description.
TEST(Mp4Edges, AnEntryBehindTheEndIsNone) {
    const Bytes whole = visualEntry("mp4v", 64, 48);
    for (const std::uint32_t count : {1u, 2u}) {
        for (const std::size_t left : {0u, 1u, 7u, 8u}) {
            const Bytes entries = Builder().bytes(whole).fill(left).take();
            const Bytes stbl = join({tables(2), stsd(count, entries)});
            const Bytes bytes = join({ftyp("isom", "isom"), box("free", Bytes(300)),
                                      box("moov", track("vide", 1000, stbl))});
            EXPECT_EQ(probeBytes(bytes).lines, count == 1 ? "" : kNoMemory) << left;
        }
    }
}

// Of the descriptors inside an "esds" box the first of the wanted kind counts.
TEST(Mp4Edges, TheFirstDescriptorOfItsKindCounts) {
    const auto descriptor = [](unsigned tag, const Bytes& body) {
        return Builder().u8(tag).u8(body.size()).bytes(body).take();
    };
    const auto config = [&descriptor](std::uint32_t bitRate, const Bytes& inner) {
        return descriptor(
            4, Builder().u8(0x40).u8(0x15).be24(0).be32(1).be32(bitRate).bytes(inner).take());
    };
    const Bytes doubled = descriptor(5, {0x2B, 0x11, 0x80});  // 24 kHz, extended to 48
    const Bytes halved = descriptor(5, {0x2B, 0x13, 0x00});   // 24 kHz, and 24 once more
    const Bytes other = descriptor(6, {0x2B, 0x13, 0x00});
    const auto probed = [](const Bytes& descriptors) {
        return probeTrack("soun", soundOf(descriptors)).info;
    };
    EXPECT_EQ(probed(config(1000, doubled))->audioSampleRate, 48'000u);
    EXPECT_EQ(probed(config(1000, join({doubled, halved})))->audioSampleRate, 48'000u);
    EXPECT_EQ(probed(config(1000, join({other, doubled})))->audioSampleRate, 48'000u);
    const auto both = probed(join({config(1000, doubled), config(2000, halved)}));
    EXPECT_EQ(both->audioBitRate, 1000u);
    EXPECT_EQ(both->audioSampleRate, 48'000u);
    Bytes elsewhere = soundOf(config(1000, doubled));
    const Bytes esds = {'e', 's', 'd', 's'};
    const auto at = std::ranges::search(elsewhere, esds).begin();
    ASSERT_EQ(at[8], 3);
    at[8] = 4;  // not an ES descriptor
    EXPECT_EQ(probeTrack("soun", elsewhere).info->audioBitRate, 0u);
}

TEST(Mp4Edges, SoundWithoutADescriptionHasNoValues) {
    const Outcome outcome = probeTrack("soun", tables(5));
    EXPECT_EQ(outcome.info->status, probe::kOk);
    EXPECT_EQ(outcome.info->audioFormatTag, 255u);
    EXPECT_EQ(outcome.info->audioSampleRate, 0u);
    EXPECT_EQ(outcome.info->audioChannels, 0u);
    EXPECT_EQ(outcome.info->audioBitRate, 0u);
}

TEST(Mp4Edges, EveryTableIsNeededButTheTimes) {
    const Bytes all[] = {table("stts", 1, {5, 1000}), stsz(10, 5), table("stsc", 1, {1, 5, 1}),
                         table("stco", 1, {100})};
    for (std::size_t missing = 0; missing <= std::size(all); ++missing) {
        Builder stbl;
        stbl.bytes(stsd(1, visualEntry("mp4v", 64, 48)));
        for (std::size_t i = 0; i < std::size(all); ++i) {
            stbl.bytes(i == missing ? Bytes() : all[i]);
        }
        const bool isWhole = missing == 0 || missing == std::size(all);
        EXPECT_EQ(probeTrack("vide", stbl.view()).info->status,
                  isWhole ? probe::kOk : probe::kNotParsed)
            << missing;
    }
}

TEST(Mp4Edges, TwentyTracksAreKept) {
    for (const std::size_t tracks : {19u, 20u, 21u}) {
        Builder moov;
        for (std::size_t i = 1; i < tracks; ++i) {
            moov.bytes(track("text", 1000, {}));
        }
        moov.bytes(track("vide", 1000, join({stsd(1, visualEntry("mp4v", 64, 48)), tables(5)})));
        const Outcome outcome = probeBytes(
            join({ftyp("isom", "isom"), box("moov", moov.view()), box("free", Bytes(9))}));
        EXPECT_EQ(outcome.info->videoWidth, tracks <= 20 ? 64u : 0u) << tracks;
    }
}

// How many words behind the minor version are looked at, for an ftyp box of `size` bytes.
unsigned brandsLookedAt(std::uint32_t size) {
    unsigned count = 0;
    for (unsigned word = 0; word < 64; ++word) {
        Bytes bytes = Builder().be32(size).text("ftypxxxx").be32(0x200).fill(300, 'x').take();
        const Bytes brand = {'i', 's', 'o', 'm'};
        std::ranges::copy(brand, bytes.begin() + 16 + 4 * static_cast<std::ptrdiff_t>(word));
        count += probeBytes(bytes).claimed == 1 ? 1 : 0;
    }
    return count;
}

TEST(Mp4Edges, BrandsAreCountedFromTheSizeLess10) {
    // One word for each four bytes begun, and none behind the first 256 bytes of the file.
    EXPECT_EQ(brandsLookedAt(8), 0u);
    EXPECT_EQ(brandsLookedAt(10), 0u);
    EXPECT_EQ(brandsLookedAt(11), 1u);
    EXPECT_EQ(brandsLookedAt(14), 1u);
    EXPECT_EQ(brandsLookedAt(15), 2u);
    EXPECT_EQ(brandsLookedAt(18), 2u);
    EXPECT_EQ(brandsLookedAt(19), 3u);
    EXPECT_EQ(brandsLookedAt(20), 3u);
    EXPECT_EQ(brandsLookedAt(1000), 60u);
}

}  // namespace
}  // namespace probe_test
