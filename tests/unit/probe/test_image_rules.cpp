// Single rules of still images, at their edges.
#include <gtest/gtest.h>

#include "bytes_builder.h"
#include "probing.h"

namespace probe_test {
namespace {

TEST(ImageRules, AHuffmanTableIsNoFrame) {
    const auto withSegment = [](unsigned marker) {
        return Builder()
            .be32(0xFFD8FF00u | marker)
            .be16(20)
            .fill(18, 0x11)
            .be16(0xFFC0)
            .be16(17)
            .u8(8)
            .be16(48)
            .be16(64)
            .u8(3)
            .fill(60)
            .take();
    };
    for (const unsigned marker : {0xC4u, 0xC8u, 0xCCu, 0xDBu, 0xE0u}) {
        const Outcome outcome = probeBytes(withSegment(marker));
        EXPECT_EQ(outcome.info->imageWidth, 64u) << marker;
        EXPECT_EQ(outcome.info->imageHeight, 48u) << marker;
        EXPECT_EQ(outcome.info->imageBitsPerPixel, 24u) << marker;
    }
    for (unsigned frame = 0xC0; frame < 0xC4; ++frame) {
        Bytes bytes = withSegment(0xE0);
        bytes[2 + 22 + 1] = static_cast<std::uint8_t>(frame);
        EXPECT_EQ(probeBytes(bytes).info->imageWidth, 64u) << frame;
    }
    // No FF behind SOI: the fixed layout, whatever the next byte is.
    Bytes fixed = withSegment(0xE0);
    fixed[2] = 0x01;
    EXPECT_EQ(probeBytes(fixed).info->imageWidth, 0x01E0u);
    // A walk begins with a marker of C0 to EF alone; with another it is the fixed layout, too.
    for (unsigned nibble = 0; nibble < 16; ++nibble) {
        const Outcome outcome = probeBytes(withSegment(nibble << 4 | 0xB));
        const bool walks = nibble >= 0xC && nibble <= 0xE;
        EXPECT_EQ(outcome.info->imageWidth, walks ? 64u : 0xFF00u | nibble << 4 | 0xB) << nibble;
    }
}

TEST(ImageRules, ABitmapsDepthHas16Bits) {
    const Bytes bytes = Builder()
                            .text("BM")
                            .fill(16)
                            .le32(640)
                            .le32(0xFFFFFE20)
                            .le16(1)
                            .le16(0x0120)
                            .padTo(64)
                            .take();
    const Outcome outcome = probeBytes(bytes);
    EXPECT_EQ(outcome.info->imageWidth, 640u);
    EXPECT_EQ(outcome.info->imageHeight, 0xFFFFFE20u) << "as it stands, negative for top-down";
    EXPECT_EQ(outcome.info->imageBitsPerPixel, 0x120u);
}

TEST(ImageRules, EveryByteOfASignatureCounts) {
    struct Case {
        const char* sample;
        std::size_t from, to;
    };
    for (const Case& one :
         {Case{"image_gif_packed_f7_is_8_bits", 0, 3}, Case{"image_bmp_24_bits", 0, 2},
          Case{"image_png_of_64_bytes", 0, 8}, Case{"image_png_of_64_bytes", 12, 16}}) {  // IHDR
        const Bytes good = sample(one.sample).build();
        for (std::size_t at = one.from; at < one.to; ++at) {
            Bytes bytes = good;
            bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ 1);
            EXPECT_EQ(probeBytes(bytes).info->imageWidth, 0u) << one.sample << ' ' << at;
        }
    }
}

}  // namespace
}  // namespace probe_test
