// Single rules of what every family reads through - cursor, start codes, results, diagnostics - and
// of the codecs' headers.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <string>

#include "bit_writer.h"
#include "build_mp4.h"
#include "probe/codec/h264.h"
#include "probe/read/file_cursor.h"
#include "probe/read/head.h"
#include "probe/recognisers.h"
#include "probe/record/diagnostics.h"
#include "probing.h"

namespace probe_test {
namespace {

// Values of the platform's winerror.h.
TEST(Result, HasTheWindowsValues) {
    EXPECT_EQ(static_cast<std::uint32_t>(probe::kOk), 0u);
    EXPECT_EQ(static_cast<std::uint32_t>(probe::kNotParsed), 1u);
    EXPECT_EQ(static_cast<std::uint32_t>(probe::kFail), 0x80004005u);
    EXPECT_EQ(static_cast<std::uint32_t>(probe::kOutOfMemory), 0x8007000Eu);
}

TEST(MediaRecord, TheUpperHalfOfTheFileSizeIsAlways0) {
    probe::MediaRecord record;
    record.fileSizeHigh = 7;
    record.setFileSize(std::uint64_t{6} << 32 | 5);
    EXPECT_EQ(record.fileSize, 5u);
    EXPECT_EQ(record.fileSizeHigh, 0u);
}

TEST(FileCursor, DoesNotMoveOutOfItsStretch) {
    const Bytes bytes(100, 1);
    for (const std::uint64_t place : {9u, 10u, 30u, 31u}) {
        TestFile file(bytes);
        probe::ReadWindow window(file);
        probe::FileCursor cursor(window, 10, 30);
        cursor.skip(5);
        cursor.moveTo(place);
        const bool inside = place == 10 || place == 30;
        EXPECT_EQ(cursor.ok(), inside) << place;
        EXPECT_EQ(cursor.position(), inside ? place : 15) << place;
        EXPECT_FALSE(cursor.readFailed()) << place;
    }
}

TEST(FileCursor, PassesAllOfItsStretchAndNoMore) {
    const Bytes bytes(100, 1);
    for (const std::uint64_t count : {19u, 20u, 21u, 90u}) {
        TestFile file(bytes);
        probe::ReadWindow window(file);
        probe::FileCursor cursor(window, 10, 30);
        cursor.skip(count);
        EXPECT_EQ(cursor.ok(), count <= 20) << count;
        EXPECT_EQ(cursor.position(), count <= 20 ? 10 + count : 10) << count;
        EXPECT_EQ(cursor.u8(), count < 20 ? 1u : 0u) << count;
        EXPECT_EQ(cursor.remaining(), count > 20 ? 20u : 0u) << count;
    }
}

// What cannot be read is 0 in every width, and a stretch that ends before it begins is empty.
TEST(FileCursor, BehindItsEndStandZeros) {
    const Bytes bytes(100, 0xFF);
    for (const std::uint64_t end : {0u, 9u, 10u}) {
        TestFile file(bytes);
        probe::ReadWindow window(file);
        probe::FileCursor cursor(window, 10, end);
        EXPECT_EQ(cursor.remaining(), 0u) << end;
        EXPECT_EQ(cursor.u8() | cursor.le16() | cursor.le32() | cursor.le64() | cursor.be16() |
                      cursor.be32() | cursor.be64(),
                  0u)
            << end;
        EXPECT_FALSE(cursor.ok()) << end;
        EXPECT_FALSE(cursor.readFailed()) << end;
    }
}

TEST(Head, FewerBytesThanTheMagicDoNotBeginWithIt) {
    const auto bytes = std::to_array<std::uint8_t>({'R', 'I', 'F', 'F'});
    EXPECT_TRUE(probe::beginsWith(bytes, "RIFF"));
    EXPECT_FALSE(probe::beginsWith(std::span(bytes).first(3), "RIFF"));
    EXPECT_FALSE(probe::beginsWith({}, "RIFF"));
}

TEST(Diagnostics, GoToStandardOutputUnlessTheyAreSilenced) {
    const probe::DiagnosticSink standard = probe::setDiagnosticSink(nullptr);
    probe::diagnose("silent %d\n", 1);
    probe::setDiagnosticSink(standard);
    testing::internal::CaptureStdout();
    probe::diagnose("ERROR: %s %d\n", "heard", 2);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "ERROR: heard 2\n");
}

TEST(Diagnostics, AreCutAt255Characters) {
    for (const std::size_t length : {254u, 255u, 256u, 1000u}) {
        testing::internal::CaptureStdout();
        probe::diagnose("%s", std::string(length, 'x').c_str());
        EXPECT_EQ(testing::internal::GetCapturedStdout().size(),
                  std::min(length, std::size_t{255}));
    }
}

std::string heardReason;

std::string reasonOf(std::string_view recogniser, TestFile& file) {
    heardReason.clear();
    const auto before = probe::setReasonSink([](const char* why) { heardReason = why; });
    for (const probe::Recogniser& one : probe::recognisers()) {
        if (one.name == recogniser) {
            probe::ReadWindow window(file);
            probe::MediaInfo info;
            EXPECT_EQ(one.recognise(info, window), 0) << recogniser;
        }
    }
    probe::setReasonSink(before);
    return heardReason;
}

TEST(Reasons, SayWhyAFileIsDeclined) {
    struct Case {
        const char* recogniser;
        Bytes bytes;
        const char* why;
    };
    const Bytes plain(300, 'x');
    const Bytes tagged = Builder().text("ID3").u8(3).u8(0).u8(0).be32(10).fill(300, 'x').take();
    for (const Case& one : std::to_array<Case>(
             {{"Still images", plain, "it begins as none of the four kinds"},
              {"Still images", Builder().be32(0xFFD8FFE0).be16(2).fill(300, 0).take(),
               "JPEG without a frame header"},
              {"Still images", Bytes(63), "too short"},
              {"RIFF: AVI and WAVE", plain, "it does not begin with RIFF"},
              {"RIFF: AVI and WAVE", riff("CDXA", plain), "its RIFF form is neither AVI nor WAVE"},
              {"RIFF: AVI and WAVE", riff("WAVE", plain),
               "WAVE below 2048 bytes or without a format chunk"},
              {"MP4 and 3GP", plain, "it does not begin with an ftyp box"},
              {"MP4 and 3GP", join({ftyp("none", "none"), plain}),
               "its ftyp box names none of the accepted brands"},
              {"ASF", plain, "does not begin with the GUID of the Header Object"},
              {"Ogg", plain, "does not begin with OggS"},
              {"MPEG program stream", Bytes(0x40000), "no pack start code in its first 256 bytes"},
              {"MPEG program stream", riff("CDXA", Bytes(0x40000)),
               "a VideoCD without a pack start code in its first 2 MiB"},
              {"MPEG audio", Bytes(2000), "no six frame headers in a row within 2 MiB"},
              {"MPEG audio", Builder().text("ID3").u8(3).u8(0).u8(0).be32(0x7F).fill(1100).take(),
               "ends inside its ID3 tag or less than 1024 bytes behind it"},
              {"FLAC", plain, "does not begin with fLaC"},
              {"FLAC", tagged, "no fLaC behind its ID3 tag"},
              {"FLAC", Bytes(tagged.begin(), tagged.begin() + 270),
               "fewer than 256 bytes follow its ID3 tag"},
              {"Monkey's Audio", plain, "does not begin with MAC"},
              {"FLV", plain, "does not begin with FLV"}})) {
        TestFile file(one.bytes);
        EXPECT_EQ(reasonOf(one.recogniser, file), one.why);
    }
    TestFile unreadable(plain);
    unreadable.failAtRead = 1;
    unreadable.badTo = 300;
    EXPECT_EQ(reasonOf("FLV", unreadable), "its head cannot be read");
    TestFile sizeless(plain);
    sizeless.sizeFails = true;
    EXPECT_EQ(reasonOf("FLV", sizeless), "its size cannot be told");
}

// The aspect in a stretch of a file that begins with `bytes`; `end` and `last` as of the stretch.
probe::PixelAspect aspectIn(const Bytes& bytes, std::uint64_t end, std::uint64_t last) {
    TestFile file(bytes);
    probe::ReadWindow window(file);
    probe::PixelAspect aspect;
    EXPECT_TRUE(probe::findAspectInH264(window, 0, end, last, aspect));
    return aspect;
}

TEST(H264, AStartCodeIsTwoZerosAOneAndAByteOfTheStretch) {
    const Bytes set = sps({});  // 12:11
    const auto with = [&set](std::initializer_list<std::uint8_t> prefix) {
        return Builder().fill(20, 0x44).bytes(prefix).bytes(set).fill(40, 0x33).take();
    };
    const Bytes whole = with({0, 0, 1});
    EXPECT_EQ(aspectIn(whole, whole.size(), 1000).horizontal, 12u);
    const Bytes first = with({9, 0, 1}), second = with({0, 9, 1}), third = with({0, 0, 2});
    for (const Bytes& bytes : {first, second, third}) {
        EXPECT_EQ(aspectIn(bytes, bytes.size(), 1000).horizontal, 0u);
    }
    EXPECT_EQ(aspectIn(whole, 23, 1000).horizontal, 0u) << "its byte lies behind the end";
}

TEST(H264, TheLastPositionIsInclusive) {
    const Bytes bytes = Builder().fill(20, 0x44).be24(1).bytes(sps({})).fill(40, 0x33).take();
    EXPECT_EQ(aspectIn(bytes, bytes.size(), 20).vertical, 11u);
    EXPECT_EQ(aspectIn(bytes, bytes.size(), 19).vertical, 0u);
}

// Writes a set's fields up to its picture order count type, profile High (ITU-T H.264 7.3.2.1.1).
void beginSet(BitWriter& w) {
    w.bits(100, 8);
    w.bits(0, 8);
    w.bits(30, 8);
    w.golomb(0);  // seq_parameter_set_id
    w.golomb(1);  // chroma_format_idc
    w.golomb(0);  // bit depths
    w.golomb(0);
    w.bits(0, 1);
}
// And those behind it, with aspect_ratio_idc 3, 10:11.
Bytes endSet(BitWriter& w) {
    w.golomb(1);  // max_num_ref_frames
    w.bits(0, 1);
    w.golomb(19);
    w.golomb(14);
    w.bits(3, 2);  // frames alone, direct_8x8_inference
    w.bits(0, 1);  // cropping
    w.bits(3, 2);  // video usability, aspect ratio
    w.bits(3, 8);
    return w.take();
}

// A set with one scaling list of these two deltas, given by their codes (Table 9-3).
probe::PixelAspect aspectBehindList(std::uint32_t first, std::uint32_t second) {
    BitWriter w;
    beginSet(w);
    w.bits(3, 2);  // there are lists, and the first of them
    w.golomb(first);
    w.golomb(second);
    w.bits(0, 7);  // no other list
    w.golomb(0);
    w.golomb(2);  // pic_order_cnt_type
    return probe::FindAspectInSps(endSet(w));
}

// 7.3.2.1.1: six lists of 16 scales, then two of 64, or six where the colours are whole.
TEST(H264, EveryScalingListHasItsSize) {
    for (const unsigned chroma : {1u, 3u}) {
        const unsigned lists = chroma == 3 ? 12 : 8;
        for (unsigned list = 0; list < lists; ++list) {
            BitWriter w;
            w.bits(100, 8);
            w.bits(0, 8);
            w.bits(30, 8);
            w.golomb(0);
            w.golomb(chroma);
            w.bits(0, chroma == 3 ? 1 : 0);
            w.golomb(0);
            w.golomb(0);
            w.bits(0, 1);
            w.bits(1, 1);
            for (unsigned i = 0; i < lists; ++i) {
                w.bits(i == list ? 1 : 0, 1);
                for (unsigned scale = 0; i == list && scale < (list < 6 ? 16u : 64u); ++scale) {
                    w.golomb(scale % 2 == 0 ? 1 : 2);  // +1, -1
                }
            }
            w.golomb(0);
            w.golomb(2);
            EXPECT_EQ(probe::FindAspectInSps(endSet(w)).horizontal, 10u) << chroma << ' ' << list;
        }
    }
}

TEST(H264, AScalingListEndsWithTheDeltaThatMakesItsScale0) {
    // 7.3.2.1.1.1: from 8 on, delta +1 gives 9 and delta -9 gives 0.
    const probe::PixelAspect found = aspectBehindList(1, 18);
    EXPECT_EQ(found.horizontal, 10u);
    EXPECT_EQ(found.vertical, 11u);
    // Scales count modulo 256: 8 and 120 are 128, and 128 less is 0.
    EXPECT_EQ(aspectBehindList(239, 256).horizontal, 10u);
}

// ITU-T H.264 9.1: a code of 32 zeros is the longest.
TEST(H264, ACodeOfMoreThan32ZerosMakesTheSetInvalid) {
    for (const unsigned zeros : {31u, 32u, 33u, 40u}) {
        BitWriter w;
        w.bits(66, 8);
        w.bits(0, 8);
        w.bits(30, 8);
        w.golomb(0);
        w.bits(0, 20);  // log2_max_frame_num_minus4
        w.bits(0, zeros - 20);
        w.bits(1, 1);
        w.bits(0x3FFFFFFF, std::min(zeros, 32u));
        w.golomb(2);
        EXPECT_EQ(probe::FindAspectInSps(endSet(w)).horizontal, zeros <= 32 ? 10u : 0u) << zeros;
    }
}

// However its zeros lie in their bytes: here they begin one.
TEST(H264, ACodeOf32ZerosMayFillItsBytes) {
    for (const unsigned zeros : {32u, 33u}) {
        BitWriter w;
        w.bits(66, 8);
        w.bits(0, 8);
        w.bits(30, 8);
        w.bits(0, 16);  // seq_parameter_set_id
        w.bits(0, zeros - 16);
        w.bits(1, 1);
        w.bits(0x3FFFFFFF, 32);
        w.golomb(0);
        w.golomb(2);
        EXPECT_EQ(probe::FindAspectInSps(endSet(w)).horizontal, zeros <= 32 ? 10u : 0u) << zeros;
    }
}

// 7.4.2.1.1: num_ref_frames_in_pic_order_cnt_cycle is 0 to 255.
TEST(H264, ACycleHasAtMost255Frames) {
    for (const unsigned frames : {0u, 1u, 255u, 256u}) {
        BitWriter w;
        beginSet(w);
        w.bits(0, 1);
        w.golomb(0);
        w.golomb(1);
        w.bits(0, 1);
        w.golomb(0);
        w.golomb(0);
        w.golomb(frames);
        for (unsigned i = 0; i < frames; ++i) {
            w.golomb(0);
        }
        EXPECT_EQ(probe::FindAspectInSps(endSet(w)).horizontal, frames <= 255 ? 10u : 0u) << frames;
    }
}

TEST(H264, UnitsBeforeTheSetArePassedOver) {
    for (unsigned type = 0; type < 32; ++type) {
        if (type == 7) {
            continue;
        }
        Bytes other = sps({.aspectIdc = 5});
        other[0] = static_cast<std::uint8_t>(0x60 | type);
        const Bytes bytes =
            Builder().be24(1).bytes(other).be24(1).bytes(sps({})).fill(40, 0x33).take();
        EXPECT_EQ(aspectIn(bytes, bytes.size(), 1000).horizontal, 12u) << type;
    }
}

TEST(H264, ASetOfMoreThan256BytesIsReadWhole) {
    BitWriter w;
    beginSet(w);
    w.bits(0, 1);
    w.golomb(0);
    w.golomb(1);  // pic_order_cnt_type
    w.bits(0, 1);
    w.golomb(0);
    w.golomb(0);
    w.golomb(200);  // offsets of the cycle
    for (unsigned i = 0; i < 200; ++i) {
        w.golomb(0x7F00 + i);
    }
    const Bytes set = endSet(w);
    ASSERT_GT(set.size(), 600u);
    const Bytes bytes = Builder().fill(20, 0x44).be24(1).u8(0x67).bytes(set).fill(40, 0x33).take();
    EXPECT_EQ(aspectIn(bytes, bytes.size(), 20).horizontal, 10u);
    EXPECT_EQ(aspectIn(bytes, bytes.size() - 41, 20).horizontal, 0u) << "the end cuts it";
}

TEST(H264, OneZeroBeforeAOneIsNoStartCode) {
    // FF 00 01 FF as the sample aspect, at every place within a byte.
    int sets = 0;
    for (int turn = 0; turn < 8; ++turn) {
        const std::uint32_t aspect = std::rotl(0xFF0001FFu, turn);
        const Bytes set =
            sps({.aspectIdc = 255, .sarWidth = aspect >> 16, .sarHeight = aspect & 0xFFFF});
        sets += std::ranges::search(set, std::to_array<std::uint8_t>({0xFF, 0, 1, 0xFF})).empty()
                    ? 0
                    : 1;
        const probe::PixelAspect found = probe::FindAspectInSps(std::span(set).subspan(1));
        EXPECT_EQ(found.horizontal, aspect >> 16) << turn;
        EXPECT_EQ(found.vertical, aspect & 0xFFFF) << turn;
    }
    EXPECT_EQ(sets, 1);
}

// Annex B: 00 00 01 ends a set wherever it stands; what was to come counts as 0.
TEST(H264, AStartCodeEndsASet) {
    int sets = 0;
    for (unsigned turn = 0; turn < 8; ++turn) {
        const std::uint32_t aspect = std::rotl(0xFF000001u, static_cast<int>(turn));
        Bytes set = sps({.aspectIdc = 255, .sarWidth = aspect >> 16, .sarHeight = aspect & 0xFFFF});
        const auto escape =
            std::ranges::search(set, std::to_array<std::uint8_t>({0, 0, 3, 1})).begin();
        if (escape == set.end()) {
            continue;
        }
        ++sets;
        set.erase(escape + 2);
        const std::uint32_t left = aspect >> (8 + turn) << (8 + turn);
        const probe::PixelAspect found = probe::FindAspectInSps(std::span(set).subspan(1));
        EXPECT_EQ(found.horizontal, left >> 16) << turn;
        EXPECT_EQ(found.vertical, left & 0xFFFF) << turn;
    }
    EXPECT_EQ(sets, 1);
}

// 7.4.1.1: the 3 behind two zeros is dropped; zeros in front of it count no more.
TEST(H264, OnlyAThreeBehindTwoZerosIsDropped) {
    for (int turn = 0; turn < 8; ++turn) {
        const std::uint32_t aspect = std::rotl(0x00000003u, turn);
        const Bytes set =
            sps({.aspectIdc = 255, .sarWidth = aspect >> 16, .sarHeight = aspect & 0xFFFF});
        const probe::PixelAspect found = probe::FindAspectInSps(std::span(set).subspan(1));
        EXPECT_EQ(found.horizontal, aspect >> 16) << turn;
        EXPECT_EQ(found.vertical, aspect & 0xFFFF) << turn;
    }
    Bytes set = sps({});
    set[1] = 0;  // a profile of 0 and the constraint flags 3
    set[2] = 3;
    EXPECT_EQ(probe::FindAspectInSps(std::span(set).subspan(1)).horizontal, 12u);
}

TEST(H264, WithoutAStartCodeThereIsNoSet) {
    Bytes bytes = sps({});
    bytes.resize(100, 0x33);
    EXPECT_EQ(aspectIn(bytes, bytes.size(), 1000).horizontal, 0u);
    bytes.erase(bytes.begin());
    EXPECT_EQ(aspectIn(bytes, bytes.size(), 1000).horizontal, 0u);
}

TEST(H264, NoMoreThanTheSetIsRead) {
    const auto search = [](std::size_t at, const Bytes& set, std::size_t bad) {
        const Bytes bytes = Builder().fill(at, 0x44).be24(1).bytes(set).padTo(30'000, 0x33).take();
        TestFile file(bytes);
        file.badFrom = bad;
        file.badTo = bytes.size();
        probe::ReadWindow window(file);
        probe::PixelAspect aspect;
        const bool done = probe::findAspectInH264(window, 0, bytes.size(), bytes.size(), aspect);
        EXPECT_EQ(aspect.horizontal, done ? 12u : 0u) << at;
        return done;
    };
    const Bytes set = sps({});
    EXPECT_TRUE(search(20, set, 4096)) << "the first 256 bytes are enough";
    EXPECT_FALSE(search(4096 - 40, set, 4096)) << "of which some cannot be read";
    EXPECT_FALSE(search(5000, set, 4096)) << "nor the start code";
}

}  // namespace
}  // namespace probe_test
