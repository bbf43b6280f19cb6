// Where the frames of an MPEG audio file begin and end.
#include <gtest/gtest.h>

#include <algorithm>

#include "build_audio.h"
#include "probing.h"

namespace probe_test {
namespace {

constexpr std::size_t kFrame = 417;  // 128 kbit/s at 44,100 Hz

// The last 32 bytes of a file: the footer of a tag that is so large.
Bytes withTagOf(Bytes bytes, std::uint32_t tagBytes) {
    const Bytes footer =
        Builder().text("APETAGEX").le32(2000).le32(tagBytes).le32(0).le32(0).fill(8).take();
    std::copy(footer.begin(), footer.end(), bytes.end() - 32);
    return bytes;
}

// The channels that are told of a file whose first frame has one and all others two: 1 when the
// frame at 0 is taken as the first.
std::uint32_t channelsBehind(audio::Frame first) {
    first.mode = 3;
    const Outcome outcome =
        probeBytes(Builder().bytes(audio::frame(first)).bytes(audio::frames(20)).take());
    EXPECT_EQ(outcome.info->containerType, static_cast<std::uint32_t>(probe::kContainerMpegAudio));
    return outcome.info->audioChannels;
}

TEST(MpegAudioStream, BeginsAt0WithAFrameLikeTheNext) {
    EXPECT_EQ(channelsBehind({}), 1u);
    EXPECT_EQ(channelsBehind({.layer = 2, .bitRate = 8, .bytes = kFrame}), 2u) << "layer II";
    EXPECT_EQ(channelsBehind({.version = 2, .bitRate = 12, .bytes = kFrame}), 2u) << "MPEG-2";
    EXPECT_EQ(channelsBehind({.bytes = kFrame + 1}), 2u) << "a byte lies between them";
    EXPECT_EQ(channelsBehind({.bitRate = 5, .bytes = kFrame}), 2u) << "of another length";
}

// 1.25 s at 128 kbit/s, of which the last 8,192 bytes are half a second.
TEST(MpegAudioStream, EndsWhereItsTagBegins) {
    struct Row {
        const char* name;
        std::uint32_t bytes;
        std::uint32_t seconds;
    };
    for (const Row& row : {Row{"APETAGEX", 8192, 0}, Row{"APETAGEX", 0x7FFFFFFF, 1},
                           Row{"APETAGEX", 48 * kFrame, 0}, Row{"APETAGEX", 48 * kFrame + 1, 1},
                           Row{"APETAGEY", 8192, 1}, Row{"XPETAGEX", 8192, 1}}) {
        Bytes bytes = withTagOf(audio::frames(48), row.bytes);
        std::copy_n(row.name, 8, bytes.end() - 32);
        EXPECT_EQ(probeBytes(bytes).info->durationSeconds, row.seconds)
            << row.name << ' ' << row.bytes;
    }
}

// 2 s of 16,000 bytes: a byte less would be a second less.
TEST(MpegAudioStream, ATagLargerThanTheFileIsNone) {
    Bytes bytes = audio::frames(77);
    bytes.resize(32'000);
    const auto size = static_cast<std::uint32_t>(bytes.size());
    for (const std::uint32_t more : {1u, 1000u}) {
        EXPECT_EQ(probeBytes(withTagOf(bytes, size + more)).info->durationSeconds, 2u) << more;
    }
    EXPECT_EQ(probeBytes(withTagOf(bytes, 1)).info->durationSeconds, 1u);
}

// A tag that says to begin in front of the frames, or within the first one, leaves no time at all.
TEST(MpegAudioStream, DoesNotEndBeforeItBegins) {
    const Bytes tag = audio::id3v2(1000);
    const Bytes silent = Builder()
                             .bytes(tag)
                             .bytes(audio::xingFrame("Xing", 0, 0, 0))
                             .bytes(audio::frames(40))
                             .take();
    const Bytes sound = Builder().bytes(tag).bytes(audio::frames(41)).take();
    for (const Bytes& bytes : {sound, silent}) {
        const auto size = static_cast<std::uint32_t>(bytes.size());
        for (const std::uint32_t front : {0u, 100u, 1009u, 1010u, 1011u, 1200u, 1400u, 1430u}) {
            const Outcome outcome = probeBytes(withTagOf(bytes, size - front));
            EXPECT_EQ(outcome.info->containerType,
                      static_cast<std::uint32_t>(probe::kContainerMpegAudio));
            EXPECT_EQ(outcome.info->durationSeconds, 0u) << front;
        }
    }
}

// The mean of a varying rate is taken up to the first frame of another kind.
TEST(MpegAudioStream, AVaryingRateEndsWithItsFrames) {
    const auto rateOf = [](const audio::Frame& other) {
        Builder bytes;
        for (int i = 0; i < 8; ++i) {
            // 128 and 160 kbit/s.
            bytes.bytes(audio::frame({})).bytes(audio::frame({.bitRate = 10, .bytes = 522}));
        }
        for (int i = 0; i < 20; ++i) {
            bytes.bytes(audio::frame(other));
        }
        return probeBytes(bytes.take()).info->audioBitRate;
    };
    const std::uint32_t mean = static_cast<std::uint32_t>((417 + 522) * 8 * 44'100.0 / (2 * 1152));
    EXPECT_EQ(rateOf({.bitRate = 0, .bytes = 417}), mean) << "no frames at all";
    EXPECT_EQ(rateOf({.layer = 2, .bitRate = 8, .bytes = 417}), mean) << "layer II";
    EXPECT_EQ(rateOf({.version = 2, .bitRate = 12, .bytes = 417}), mean) << "MPEG-2";
    EXPECT_NE(rateOf({.bitRate = 9, .bytes = 417}), mean) << "the same kind";
}

}  // namespace
}  // namespace probe_test
