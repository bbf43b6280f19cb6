// Where the frames of an MPEG audio file begin and end.
#include <gtest/gtest.h>

#include "build_audio.h"
#include "probing.h"

namespace probe_test {
namespace {

constexpr std::size_t kFrame = 417;  // 128 kbit/s at 44,100 Hz

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
        Bytes bytes = audio::frames(48);
        const Bytes footer =
            Builder().text(row.name).le32(2000).le32(row.bytes).le32(0).le32(0).fill(8).take();
        bytes.resize(bytes.size() - footer.size());
        bytes.insert(bytes.end(), footer.begin(), footer.end());
        EXPECT_EQ(probeBytes(bytes).info->durationSeconds, row.seconds)
            << row.name << ' ' << row.bytes;
    }
}

}  // namespace
}  // namespace probe_test
