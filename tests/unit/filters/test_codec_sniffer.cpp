// The codec of a video as its container names it, and damaged containers that must end.
#include <gtest/gtest.h>

#include "simulator/filters/codecs/chip_codecs.h"
#include "simulator/filters/codecs/codec_sniffer.h"
#include "tests/unit/probe/build_asf.h"
#include "tests/unit/probe/build_mp4.h"
#include "tests/unit/probe/build_riff.h"

namespace {

using filters::packFourcc;
using probe_test::Builder;
using probe_test::Bytes;
using probe_test::join;

std::uint32_t sniff(const Bytes& bytes) {
    const auto file = platform::openMemory(bytes);
    return filters::sniffVideoCodec(*file);
}

std::uint32_t letters(const char (&name)[5]) {
    return packFourcc(name[0], name[1], name[2], name[3]);
}

// An element of Matroska with a size of four bytes.
Bytes element(std::uint32_t id, unsigned idBytes, const Bytes& body) {
    Builder built;
    for (unsigned i = idBytes; i-- > 0;) {
        built.u8(id >> (8 * i) & 0xFF);
    }
    return built.be32(0x10000000u | static_cast<std::uint32_t>(body.size())).bytes(body).take();
}
Bytes segment(const Bytes& body) {
    return element(0x18538067, 4, body);
}
Bytes trackEntry(std::string_view codec, const Bytes& rest = {}) {
    return element(0xAE, 1, join({element(0x86, 1, Builder().text(codec).take()), rest}));
}
Bytes matroska(const Bytes& tracks) {
    return join({element(0x1A45DFA3, 4, Builder().fill(20).take()),
                 segment(element(0x1654AE6B, 4, tracks))});
}

Bytes mp4Track(std::string_view entry, std::string_view header) {
    const Bytes stsd = probe_test::stsd(1, probe_test::visualEntry(entry, 320, 240, {}));
    return probe_test::box(
        "trak", probe_test::box(
                    "mdia", probe_test::box(
                                "minf", join({probe_test::box(header, Builder().fill(12).take()),
                                              probe_test::box("stbl", stsd)}))));
}

TEST(CodecSniffer, MatroskaNamesItsCodec) {
    struct {
        std::string_view name;
        const char (&code)[5];
    } const kRows[] = {{"V_MPEG4/ISO/AVC", "H264"}, {"V_MPEGH/ISO/HEVC", "hvc1"},
                       {"V_MPEG4/MS/V3", "DIV3"},   {"V_MPEG4/ISO/ASP", "mp4v"},
                       {"V_MPEG1", "mp1v"},         {"V_MPEG2", "mp2v"},
                       {"V_MJPEG", "MJPG"},         {"V_VP8", "VP80"},
                       {"V_VP9", "VP90"},           {"V_AV1", "av01"},
                       {"V_THEORA", "theo"},        {"V_REAL/RV40", "RV40"},
                       {"V_REAL/RV30", "RV30"}};
    for (const auto& row : kRows) {
        EXPECT_EQ(sniff(matroska(trackEntry(row.name))), letters(row.code)) << row.name;
        EXPECT_EQ(sniff(matroska(join({trackEntry("A_AAC"), trackEntry(row.name)}))),
                  letters(row.code));
    }
    EXPECT_EQ(sniff(matroska(trackEntry("A_AAC"))), 0u);
    const Bytes bitmap = Builder().fill(16).text("WMV3").fill(20).take();
    const Bytes inPrivate = element(0x63A2, 2, bitmap);
    EXPECT_EQ(sniff(matroska(trackEntry("V_MS/VFW/FOURCC", inPrivate))), letters("WMV3"));
    // Private data of another track does not count.
    EXPECT_EQ(sniff(matroska(join({trackEntry("V_MS/VFW/FOURCC"), trackEntry("A_X", inPrivate)}))),
              0u);
}

TEST(CodecSniffer, MatroskaIsLookedAtEightLevelsDeepAndUpToItsClusters) {
    for (const int levels : {7, 8, 5000}) {
        Bytes nested = trackEntry("V_VP9");
        for (int i = 1; i < levels; ++i) {
            nested = segment(nested);
        }
        const Bytes file = join({element(0x1A45DFA3, 4, Builder().fill(20).take()), nested});
        EXPECT_EQ(sniff(file), levels <= 8 ? letters("VP90") : 0u) << levels;
    }
    const Bytes cluster = element(0x1F43B675, 4, {});
    EXPECT_EQ(sniff(join({element(0x1A45DFA3, 4, Builder().fill(20).take()),
                          segment(join({cluster, trackEntry("V_VP9")}))})),
              0u);
}

TEST(CodecSniffer, Mp4AndQuickTimeNameItInTheSampleEntry) {
    for (const char* first : {"ftyp", "moov", "mdat", "wide", "free", "skip"}) {
        const Bytes moov = probe_test::box(
            "moov",
            join({mp4Track("mp4a", "smhd"), mp4Track("hvc1", "vmhd"), mp4Track("avc1", "vmhd")}));
        const Bytes head = std::string_view(first) == "moov"
                               ? Bytes{}
                               : probe_test::box(first, Builder().fill(16).take());
        EXPECT_EQ(sniff(join({head, moov})), letters("hvc1")) << first;
    }
    EXPECT_EQ(sniff(probe_test::box("moov", mp4Track("mp4a", "smhd"))), 0u);
    // A box of 64-bit size, and one that reaches to the end of the file.
    const Bytes track = mp4Track("avc1", "vmhd");
    EXPECT_EQ(sniff(Builder().be32(1).text("moov").be64(16 + track.size()).bytes(track).take()),
              letters("avc1"));
    EXPECT_EQ(sniff(Builder().be32(0).text("moov").bytes(track).take()), letters("avc1"));
    for (const unsigned wrong : {2u, 7u}) {
        EXPECT_EQ(sniff(Builder().be32(wrong).text("moov").bytes(track).take()), 0u);
    }
}

TEST(CodecSniffer, Mp4IsToldToLackItsIndex) {
    const auto lacks = [](const Bytes& bytes) {
        return filters::lacksIndex(*platform::openMemory(bytes));
    };
    const Bytes ftyp = probe_test::box("ftyp", Builder().fill(16).take());
    const Bytes mdat = probe_test::box("mdat", Builder().fill(100).take());
    const Bytes moov = probe_test::box("moov", mp4Track("avc1", "vmhd"));
    EXPECT_FALSE(lacks(join({ftyp, mdat, moov})));
    EXPECT_FALSE(lacks(join({ftyp, moov, mdat})));
    EXPECT_TRUE(lacks(join({ftyp, mdat})));
    Bytes cut = join({ftyp, mdat, moov});
    cut.resize(cut.size() - 1);  // the index reaches beyond the end
    EXPECT_TRUE(lacks(cut));
    EXPECT_FALSE(lacks(Builder().text("RIFF").fill(40).take())) << "no such file at all";
    EXPECT_FALSE(lacks({}));
}

TEST(CodecSniffer, AviAndAsfAreReadByTheProbe) {
    const Bytes headers = probe_test::list(
        "hdrl", join({probe_test::avih(40000), probe_test::videoList("XviD", 64, 48)}));
    EXPECT_EQ(sniff(probe_test::riff(
                  "AVI ", join({headers, probe_test::list("movi", Builder().fill(64).take())}))),
              letters("XviD"));
    EXPECT_EQ(sniff(probe_test::asf::file({probe_test::asf::fileProperties(1000),
                                           probe_test::asf::videoStream(1, "WVC1")})),
              letters("WVC1"));
    EXPECT_EQ(sniff(probe_test::riff("WAVE", {})), 0u);
    EXPECT_EQ(sniff(Builder().text("no recording at all, just words").take()), 0u);
    EXPECT_EQ(sniff({}), 0u);
}

TEST(CodecSniffer, EveryPrefixEnds) {
    const Bytes files[] = {matroska(trackEntry("A_AAC")),
                           probe_test::box("moov", mp4Track("avc1", "vmhd"))};
    for (const Bytes& file : files) {
        for (std::size_t length = 0; length <= file.size(); ++length) {
            sniff(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length)));
        }
    }
}

TEST(ChipCodecs, AreFoundInCapitalAndSmallLetters) {
    for (const auto& code : {"H264", "avc1", "XviD", "wmv2", "mjpg", "FLV1", "rv40", "mp2v"}) {
        EXPECT_TRUE(filters::chipDecodes(packFourcc(code[0], code[1], code[2], code[3]))) << code;
    }
    for (const auto& code : {"hvc1", "VP90", "av01", "WMV4", "H265", "    "}) {
        EXPECT_FALSE(filters::chipDecodes(packFourcc(code[0], code[1], code[2], code[3]))) << code;
    }
}

}  // namespace
