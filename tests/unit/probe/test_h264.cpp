// Sequence parameter sets of H.264 (ITU-T H.264 7.3.2.1.1 and Annex E): what stands before the
// sample aspect, where a set begins and ends, and how much of the file is read for it.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>

#include "bit_writer.h"
#include "build_riff.h"
#include "probe/codec/h264.h"
#include "probing.h"

namespace probe_test {
namespace {

constexpr unsigned kOwnAspect = 255;  // aspect_ratio_idc: the two terms follow
constexpr std::uint32_t kTerm = 0xFFFF;

// The aspect that a set tells, which begins with the header of its unit.
probe::PixelAspect aspectOfSet(const Bytes& set) {
    return probe::FindAspectInSps(std::span(set).subspan(1));
}
probe::PixelAspect aspectOf(const SpsOptions& options) {
    return aspectOfSet(sps(options));
}

// A set whose two terms are these 32 bits, and those that a set tells.
Bytes setWithTerms(std::uint32_t bits) {
    return sps({.aspectIdc = kOwnAspect, .sarWidth = bits >> 16, .sarHeight = bits & kTerm});
}
std::uint32_t termsOf(const Bytes& set) {
    const probe::PixelAspect found = aspectOfSet(set);
    return found.horizontal << 16 | found.vertical;
}

// The aspect in a stretch of a file that begins with `bytes`; `end` and `last` as of the stretch.
probe::PixelAspect aspectIn(const Bytes& bytes, std::uint64_t end, std::uint64_t last) {
    TestFile file(bytes);
    probe::ReadWindow window(file);
    probe::PixelAspect aspect;
    EXPECT_TRUE(probe::findAspectInH264(window, 0, end, last, aspect));
    return aspect;
}

// Table E-1, aspect_ratio_idc 1 to 13.
constexpr auto kSampleAspects = std::to_array<probe::PixelAspect>({{1, 1},
                                                                   {12, 11},
                                                                   {10, 11},
                                                                   {16, 11},
                                                                   {40, 33},
                                                                   {24, 11},
                                                                   {20, 11},
                                                                   {32, 11},
                                                                   {80, 33},
                                                                   {18, 11},
                                                                   {15, 11},
                                                                   {64, 33},
                                                                   {160, 99}});

TEST(H264, EverySampleAspect) {
    for (unsigned idc = 1; idc <= kSampleAspects.size(); ++idc) {
        const probe::PixelAspect found = aspectOf({.aspectIdc = static_cast<int>(idc)});
        EXPECT_EQ(found.horizontal, kSampleAspects[idc - 1].horizontal) << idc;
        EXPECT_EQ(found.vertical, kSampleAspects[idc - 1].vertical) << idc;
    }
    for (const int idc : {0, 14, 254}) {
        EXPECT_EQ(aspectOf({.aspectIdc = idc}).horizontal, 0u) << idc;
        EXPECT_EQ(aspectOf({.aspectIdc = idc}).vertical, 0u) << idc;
    }
    EXPECT_EQ(termsOf(setWithTerms(517 << 16 | 771)), 517u << 16 | 771);
}

TEST(H264, EveryProfileWithAChromaFormat) {
    for (unsigned profile = 0; profile < 256; ++profile) {
        const probe::PixelAspect found =
            aspectOf({.profile = profile, .chromaFormat = 2, .scalingMatrix = true});
        EXPECT_EQ(found.horizontal, 12u) << profile;
        EXPECT_EQ(found.vertical, 11u) << profile;
    }
}

TEST(H264, EveryFieldBeforeTheAspectIsPassedOver) {
    for (unsigned chroma = 0; chroma < 4; ++chroma) {
        for (unsigned order = 0; order < 3; ++order) {
            for (unsigned flags = 0; flags < 8; ++flags) {
                const probe::PixelAspect found = aspectOf({.profile = 100,
                                                           .chromaFormat = chroma,
                                                           .scalingMatrix = (flags & 1) != 0,
                                                           .pictureOrderType = order,
                                                           .interlaced = (flags & 2) != 0,
                                                           .cropping = (flags & 4) != 0});
                EXPECT_EQ(found.vertical, 11u) << chroma << order << flags;
            }
        }
    }
    EXPECT_EQ(aspectOf({.vui = false}).vertical, 0u);
    EXPECT_EQ(aspectOf({.aspectIdc = -1}).vertical, 0u);
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

// Writes the fields of a set of the profile High in front of its scaling lists.
void beginSet(BitWriter& w, unsigned chroma = 1) {
    w.bits(100, 8);  // profile_idc
    w.bits(0, 8);    // constraint flags
    w.bits(30, 8);   // level_idc
    w.golomb(0);     // seq_parameter_set_id
    w.golomb(chroma);
    w.bits(0, chroma == 3 ? 1 : 0);  // separate_colour_plane_flag
    w.golomb(0);                     // bit depths
    w.golomb(0);
    w.bits(0, 1);  // qpprime_y_zero_transform_bypass_flag
}
// The fields between them and the offsets of a cycle of so many frames.
void beginCycle(BitWriter& w, unsigned frames) {
    w.bits(0, 1);  // no lists
    w.golomb(0);   // log2_max_frame_num_minus4
    w.golomb(1);   // pic_order_cnt_type
    w.bits(0, 1);  // delta_pic_order_always_zero_flag
    w.golomb(0);   // offsets of other pictures
    w.golomb(0);
    w.golomb(frames);
}
// The fields behind the picture order count, with aspect_ratio_idc 3, 10:11.
Bytes endSet(BitWriter& w) {
    w.golomb(1);   // max_num_ref_frames
    w.bits(0, 1);  // no gaps in frame_num
    w.golomb(19);  // width in macroblocks, less 1
    w.golomb(14);  // height
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

// Six lists of 16 scales, then two of 64, or six where the colours are whole.
TEST(H264, EveryScalingListHasItsSize) {
    for (const unsigned chroma : {1u, 3u}) {
        const unsigned lists = chroma == 3 ? 12 : 8;
        for (unsigned list = 0; list < lists; ++list) {
            BitWriter w;
            beginSet(w, chroma);
            w.bits(1, 1);  // there are lists
            for (unsigned i = 0; i < lists; ++i) {
                w.bits(i == list ? 1 : 0, 1);
                for (unsigned scale = 0; i == list && scale < (list < 6 ? 16u : 64u); ++scale) {
                    w.golomb(scale % 2 == 0 ? 1 : 2);  // +1, -1
                }
            }
            w.golomb(0);
            w.golomb(2);  // pic_order_cnt_type
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

// 9.1: a code of 32 zeros is the longest.
TEST(H264, ACodeOfMoreThan32ZerosMakesTheSetInvalid) {
    for (const unsigned zeros : {31u, 32u, 33u, 40u}) {
        BitWriter w;
        w.bits(66, 8);  // Baseline, which has no lists
        w.bits(0, 8);
        w.bits(30, 8);
        w.golomb(0);
        w.bits(0, 20);  // log2_max_frame_num_minus4, in two steps
        w.bits(0, zeros - 20);
        w.bits(1, 1);
        w.bits(0x3FFFFFFF, std::min(zeros, 32u));
        w.golomb(2);  // pic_order_cnt_type
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
        w.bits(0, 16);  // seq_parameter_set_id, in two steps
        w.bits(0, zeros - 16);
        w.bits(1, 1);
        w.bits(0x3FFFFFFF, 32);
        w.golomb(3);  // log2_max_frame_num_minus4
        w.golomb(2);  // pic_order_cnt_type
        EXPECT_EQ(probe::FindAspectInSps(endSet(w)).horizontal, zeros <= 32 ? 10u : 0u) << zeros;
    }
}

// 7.4.2.1.1: num_ref_frames_in_pic_order_cnt_cycle is 0 to 255.
TEST(H264, ACycleHasAtMost255Frames) {
    for (const unsigned frames : {0u, 1u, 255u, 256u}) {
        BitWriter w;
        beginSet(w);
        beginCycle(w, frames);
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
    beginCycle(w, 200);
    for (unsigned i = 0; i < 200; ++i) {
        w.golomb(0x7F00 + i);
    }
    const Bytes set = endSet(w);
    ASSERT_GT(set.size(), 600u);
    const Bytes bytes = Builder().fill(20, 0x44).be24(1).u8(0x67).bytes(set).fill(40, 0x33).take();
    EXPECT_EQ(aspectIn(bytes, bytes.size(), 20).horizontal, 10u);
    EXPECT_EQ(aspectIn(bytes, bytes.size() - 41, 20).horizontal, 0u) << "the end cuts it";
}

// Whether the set holds these bytes as they stand in the file.
bool holds(const Bytes& set, const std::array<std::uint8_t, 4>& bytes) {
    return !std::ranges::search(set, bytes).empty();
}

// The terms stand at some place within a byte; turned through all eight, they fill whole bytes
// once.
TEST(H264, OneZeroBeforeAOneIsNoStartCode) {
    int inWholeBytes = 0;
    for (int turn = 0; turn < 8; ++turn) {
        const std::uint32_t terms = std::rotl(0xFF0001FFu, turn);
        const Bytes set = setWithTerms(terms);
        inWholeBytes += holds(set, {0xFF, 0, 1, 0xFF}) ? 1 : 0;
        EXPECT_EQ(termsOf(set), terms) << turn;
    }
    EXPECT_EQ(inWholeBytes, 1);
}

// Annex B: 00 00 01 ends a set wherever it stands; what was to come counts as 0. Behind the 3 that
// 7.4.1.1 puts in between, the 1 is data.
TEST(H264, AStartCodeEndsASetUnlessItIsEscaped) {
    int inWholeBytes = 0;
    for (unsigned turn = 0; turn < 8; ++turn) {
        const std::uint32_t terms = std::rotl(0xFF000001u, static_cast<int>(turn));
        Bytes set = setWithTerms(terms);
        EXPECT_EQ(termsOf(set), terms) << turn;
        const auto escape =
            std::ranges::search(set, std::to_array<std::uint8_t>({0, 0, 3, 1})).begin();
        if (escape == set.end()) {
            continue;
        }
        ++inWholeBytes;
        set.erase(escape + 2);
        EXPECT_EQ(termsOf(set), terms >> (8 + turn) << (8 + turn)) << turn;
    }
    EXPECT_EQ(inWholeBytes, 1);
}

// 7.4.1.1: the 3 behind two zeros is dropped; zeros in front of it count no more.
TEST(H264, OnlyAThreeBehindTwoZerosIsDropped) {
    for (int turn = 0; turn < 8; ++turn) {
        const std::uint32_t terms = std::rotl(0x00000003u, turn);
        EXPECT_EQ(termsOf(setWithTerms(terms)), terms) << turn;
    }
    for (unsigned bit = 0; bit < 16; ++bit) {
        for (const std::uint32_t vertical : {0u, 1u, 3u, 0x100u}) {
            const std::uint32_t terms = 1u << (16 + bit) | vertical;
            EXPECT_EQ(termsOf(setWithTerms(terms)), terms) << bit << ' ' << vertical;
        }
    }
    Bytes set = sps({});
    set[1] = 0;  // a profile of 0 and the constraint flags 3
    set[2] = 3;
    EXPECT_EQ(aspectOfSet(set).horizontal, 12u);
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
