// Single rules of MP4, at their edges.
#include <gtest/gtest.h>

#include <string>

#include "bit_writer.h"
#include "build_mp4.h"
#include "probe/mp4/reader.h"
#include "probing.h"

namespace probe_test {
namespace {

// MP4: a picture track with these tables beside its sizes and durations.
Bytes mp4With(const Bytes& moov) {
    return join({ftyp("isom", "isom"), box("moov", moov), box("free", Bytes(300))});
}
Bytes tablesOf(std::uint32_t samples) {
    return join({table("stts", 1, {samples, 1000}), stsz(10, samples),
                 table("stsc", 1, {1, samples, 1}), table("stco", 1, {100})});
}

TEST(Mp4Rules, TheSumOfTheSizesItself) {
    for (const std::uint32_t constant : {0u, 1u, 77u}) {
        const Bytes stbl =
            join({stsd(1, visualEntry("mp4v", 64, 48)), table("stts", 1, {5, 1}),
                  constant != 0 ? stsz(constant, 5)
                                : stsz(0, 5, {1, 0xFF, 0xFFFF00, 0xFFFFFFFF, 0x80000000}),
                  table("stsc", 1, {1, 5, 1}), table("stco", 1, {100})});
        const Bytes bytes = mp4With(track("vide", 1, stbl));
        TestFile file(bytes);
        probe::ReadWindow window(file);
        probe::Mp4Reader reader(window, bytes.size());
        ASSERT_EQ(probe::Mp4WalkTopLevel(reader), probe::kOk);
        ASSERT_EQ(probe::Mp4SetSampleOffsets(reader, probe::TrackKind::Video), probe::kOk);
        EXPECT_EQ(reader.of(probe::TrackKind::Video).payloadBytes,
                  constant != 0 ? 5 * constant : 1 + 0xFFull + 0xFFFF00 + 0xFFFFFFFF + 0x80000000);
    }
}

TEST(Mp4Rules, ATrackWithoutADescriptionOrAMediaHeader) {
    const Bytes plain = probe_test::track("vide", 1000, tablesOf(5));
    const Outcome none = probeBytes(mp4With(plain));
    EXPECT_EQ(none.info->status, probe::kOk) << "no stsd";
    EXPECT_EQ(none.info->videoFourCC, 0x4D503456u);
    EXPECT_EQ(none.info->videoWidth, 0u);
    EXPECT_EQ(none.info->durationSeconds, 5u);
    const Bytes minf =
        box("minf", box("stbl", join({stsd(1, visualEntry("mp4v", 64, 48)), tablesOf(5)})));
    const Bytes headless = box("trak", join({tkhd(), box("mdia", join({hdlr("vide"), minf}))}));
    const Outcome timeless = probeBytes(mp4With(headless));
    EXPECT_EQ(timeless.info->status, probe::kOk) << "no mdhd";
    EXPECT_EQ(timeless.info->videoWidth, 64u);
    EXPECT_EQ(timeless.info->durationSeconds, 0u);
    EXPECT_EQ(timeless.info->videoBitRate, 0u);
    // A second media header that is too short has no timescale.
    const Bytes second =
        box("trak",
            join({tkhd(),
                  box("mdia", join({mdhd(1000), box("mdhd", Bytes(15)), hdlr("vide"), minf}))}));
    EXPECT_EQ(probeBytes(mp4With(second)).info->durationSeconds, 0u);
    const Bytes exact = box(
        "trak", join({tkhd(), box("mdia", join({box("mdhd", Builder().fill(12).be32(500).take()),
                                                hdlr("vide"), minf}))}));
    EXPECT_EQ(probeBytes(mp4With(exact)).info->durationSeconds, 10u);
}

TEST(Mp4Rules, ATableHoldsWhatItsBoxHolds) {
    struct Case {
        const char* type;
        std::size_t row;
    };
    for (const Case& one :
         std::to_array<Case>({{"stts", 8}, {"stsc", 12}, {"stsz", 4}, {"stco", 4}})) {
        const bool sizes = one.type == std::string_view("stsz");
        const auto with = [&](std::size_t bytes) {
            Builder body;
            body.be32(0).be32(sizes ? 0 : 2).be32(sizes ? 2 : 1);
            body.padTo((sizes ? 12 : 8) + bytes, 1);
            const Bytes stbl = join(
                {stsd(1, visualEntry("mp4v", 64, 48)), tablesOf(2), box(one.type, body.take())});
            return probeBytes(mp4With(track("vide", 1, stbl))).lines;
        };
        const std::string line = "[ERROR] MP4 Parse MEDIA memory alloc fail\n";
        EXPECT_EQ(with(2 * one.row - 1), line) << one.type;
        EXPECT_NE(with(2 * one.row), line) << one.type;
    }
}

TEST(Mp4Rules, ManyChunkRuns) {
    for (const std::uint32_t runs : {2u, 11u, 12u, 13u, 40u}) {
        // Run i begins at chunk 1 + 2i with 1 + i samples in each of its two chunks.
        Builder entries;
        entries.be32(0).be32(runs);
        std::uint32_t samples = 0;
        for (std::uint32_t i = 0; i < runs; ++i) {
            entries.be32(1 + 2 * i).be32(1 + i).be32(1);
            samples += 2 * (1 + i);
        }
        const auto with = [&](std::uint32_t count) {
            Builder offsets;
            offsets.be32(0).be32(2 * runs).fill(std::size_t{8} * runs);
            const Bytes stbl =
                join({stsd(1, visualEntry("mp4v", 64, 48)), table("stts", 1, {count, 1}),
                      stsz(1, count), box("stsc", entries.view()), box("stco", offsets.take())});
            return probeBytes(mp4With(track("vide", 1, stbl))).info->status;
        };
        EXPECT_EQ(with(samples), probe::kOk) << runs;
        EXPECT_EQ(with(samples + 1), probe::kNotParsed) << runs;
    }
}

// ISO/IEC 14496-1 7.2.6.5: what may stand before the decoder configuration.
TEST(Mp4Rules, OptionalFieldsOfAnElementaryStream) {
    for (unsigned flags = 0; flags < 8; ++flags) {
        for (unsigned lengthBytes = 1; lengthBytes <= 4; ++lengthBytes) {
            const auto length = [lengthBytes](Builder& to, std::size_t value) {
                for (unsigned i = 1; i < lengthBytes; ++i) {
                    to.u8(0x80);
                }
                to.u8(value);
            };
            Builder config;
            config.u8(0x40).u8(0x15).be24(0).be32(99'000).be32(64'000).u8(5);
            // AAC LC at 24,000 Hz whose sync extension gives 48,000.
            BitWriter info;
            info.bits(2, 5);
            info.bits(6, 4);
            info.bits(2, 4);
            info.bits(0, 3);
            info.bits(0x2B7, 11);
            info.bits(5, 5);
            info.bits(1, 1);
            info.bits(3, 4);
            const Bytes specific = info.take();
            length(config, specific.size());
            config.bytes(specific);
            Builder es;
            es.be16(1).u8(flags << 5);
            if ((flags & 4) != 0) {
                es.be16(0x0404);  // the stream that it depends on
            }
            if ((flags & 2) != 0) {
                es.u8(3).text("url");
            }
            if ((flags & 1) != 0) {
                es.be16(0x0404);  // the clock's stream
            }
            es.u8(6).u8(1).u8(2);  // a descriptor of another kind
            es.u8(4);
            length(es, config.size());
            es.bytes(config.view());
            Builder body;
            body.be32(0).u8(3);
            length(body, es.size());
            body.bytes(es.view());
            const Bytes stbl = join(
                {stsd(1, audioEntry("mp4a", 2, 24000, box("esds", body.take()))), tablesOf(5)});
            const Outcome outcome = probeBytes(mp4With(track("soun", 1000, stbl)));
            EXPECT_EQ(outcome.info->audioBitRate, 64'000u) << flags << ' ' << lengthBytes;
            EXPECT_EQ(outcome.info->audioSampleRate, 48'000u) << flags << ' ' << lengthBytes;
            EXPECT_EQ(outcome.info->audioFormatTag, 255u);
        }
    }
}

TEST(Mp4Rules, EveryBrandCounts) {
    const auto claimed = [](std::string_view major, std::string_view compatible) {
        const Bytes bytes =
            join({ftyp(major, compatible), box("moov", Bytes(8)), box("free", Bytes(300))});
        return probeBytes(bytes).claimed;
    };
    struct Case {
        std::string_view brand;
        int wanted;
    };
    for (const Case& one : std::to_array<Case>({{"mp41", 1},
                                                {"mp42", 1},
                                                {"isom", 1},
                                                {"M4A ", 1},
                                                {"MSNV", 1},
                                                {"3gp1", 1},
                                                {"3gp2", 1},
                                                {"3gp3", 1},
                                                {"3gp4", 1},
                                                {"3gp5", 1},
                                                {"3gp6", 1},
                                                {"3gp0", 0},
                                                {"3gp7", 0},
                                                {"mp40", 0},
                                                {"mp43", 0},
                                                {"isol", 0},
                                                {"M4B ", 0},
                                                {"qt  ", 0}})) {
        EXPECT_EQ(claimed(one.brand, "xxxx"), one.wanted) << one.brand;
        EXPECT_EQ(claimed("xxxx", one.brand), one.wanted) << one.brand;
    }
}

}  // namespace
}  // namespace probe_test
