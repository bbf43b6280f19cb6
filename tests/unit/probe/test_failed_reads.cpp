// Reads that fail: what is told then, and how many reads are made. The bytes that cannot be read
// are those of one place of a sample.
#include <algorithm>
#include <cstdlib>
#include <new>

#include "build_audio.h"
#include "build_flv.h"
#include "build_mpegps.h"
#include "build_riff.h"
#include "expectations.h"
#include "probe/read/read_window.h"

namespace {
bool largeBlocksFail = false;
}

// Blocks of 32 KiB and more can be made to be out of reach, as on a unit whose memory is in pieces.
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return largeBlocksFail && size >= (32u << 10) ? nullptr : std::malloc(size);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}
void* operator new[](std::size_t size) {
    return std::malloc(size != 0 ? size : 1);
}

namespace probe_test {
namespace {

using R = probe::MediaRecord;

struct Told {
    probe::Result claimed, status;
    std::uint32_t container;
};

void expectTold(const char* name, const Bytes& bytes, std::size_t from, std::size_t to,
                const Told& told, std::uint64_t reads) {
    TestFile file(bytes);
    file.badFrom = from;
    file.badTo = to;
    const Outcome outcome = probeFile(file);
    EXPECT_EQ(outcome.claimed, told.claimed) << name;
    EXPECT_EQ(outcome.info->status, told.status) << name;
    EXPECT_EQ(outcome.info->containerType, told.container) << name;
    EXPECT_EQ(outcome.reads, reads) << name;
}

std::size_t placeOf(const Bytes& bytes, std::string_view text) {
    const auto found = std::search(bytes.begin(), bytes.end(), text.begin(), text.end());
    EXPECT_NE(found, bytes.end()) << text;
    return static_cast<std::size_t>(found - bytes.begin());
}

// The two with bytes between them. What looks like a frame header in the head ends the scan for
// MPEG audio there, as coded sound does sooner or later.
Bytes spread(const Bytes& front, const Bytes& back) {
    Bytes bytes = join({front, Bytes(20'000, 0x11), back});
    const Bytes header = {0xFF, 0xFB, 0x90};
    std::copy(header.begin(), header.end(), bytes.begin() + 400);
    return bytes;
}

TEST(FailedReads, OfMonkeysAudio) {
    const auto sound = static_cast<std::uint32_t>(probe::kContainerMonkeysAudio);
    const Bytes bytes = spread(audio::ape({}), audio::apeTag({{"Title", "T"}}));
    expectTold("the tag's footer", bytes, bytes.size() - 10, bytes.size(), {1, probe::kFail, sound},
               2);
    // The items stand outside of the last 128 bytes.
    const Bytes items = audio::apeTag({{"Comment", std::string(300, 'c')}, {"Title", "T"}});
    const Bytes longer = spread(audio::ape({}), items);
    const std::size_t first = placeOf(longer, "Comment");
    expectTold("an item of the tag", longer, first, first + 1, {1, probe::kFail, sound}, 3);
}

TEST(FailedReads, OfProgramStreams) {
    const auto claimed = static_cast<std::uint32_t>(probe::kContainerMpeg2Program);
    Builder builder;
    builder.bytes(ps::pack2(0)).bytes(ps::systemHeader({0xE0, 0xC0}));
    const std::size_t system = builder.size() - 9;
    builder.bytes(ps::packet2(0xE0, ps::pictures(6000)));
    const std::size_t video = builder.size();
    builder.bytes(
        ps::packet2(0xE0, Builder().bytes(ps::sequence({})).bytes(ps::pictures(300)).take()));
    builder.bytes(ps::packet2(0xC0, audio::frames(2, {.layer = 2, .bitRate = 8})));
    const Bytes bytes = ps::file(builder.take(), ps::pack2(900'000));
    ASSERT_EQ(probeBytes(bytes).info->durationSeconds, 10u);
    expectTold("the system header", bytes, system, system + 1, {0, probe::kNotParsed, 0}, 20);
    expectTold("the sequence header", bytes, video, video + 1, {1, probe::kFail, 0}, 3);
    TestFile file(bytes);
    file.badFrom = bytes.size() - 5;
    file.badTo = bytes.size();
    const Outcome outcome = probeFile(file);
    EXPECT_EQ(outcome.info->status, probe::kFail) << "the last pack";
    EXPECT_EQ(outcome.info->containerType, claimed);
    EXPECT_EQ(outcome.info->videoWidth, 352u);
    EXPECT_EQ(outcome.info->audioFormatTag, 0x50u);
    EXPECT_EQ(outcome.info->durationSeconds, 0u);
}

TEST(FailedReads, OfFlashVideo) {
    const Bytes bytes = flv::File(flv::kVideo).video(0, 1, 30'000).video(7000, 2, 30'000).end();
    TestFile file(bytes);
    file.badFrom = bytes.size() - 1;
    file.badTo = bytes.size();
    const Outcome outcome = probeFile(file);
    EXPECT_EQ(outcome.info->status, probe::kOk) << "the last time stamp";
    EXPECT_EQ(outcome.info->durationSeconds, 0u);
    EXPECT_EQ(outcome.info->videoFourCC, 0x48323634u);
    // The header of the tag before the last one, which confirms it.
    TestFile confirming(bytes);
    ASSERT_EQ(probeBytes(bytes).info->durationSeconds, 7u);
    confirming.badFrom = 9 + 4 + 11 + 30'001 + 4;
    confirming.badTo = confirming.badFrom + 11;
    EXPECT_EQ(probeFile(confirming).info->durationSeconds, 0u);
}

TEST(FailedReads, EveryReadOfASampleMatters) {
    // Each read, and the one that asks again for what was wanted, fails: nothing is told as found
    // that was not.
    for (const char* name :
         {"avi_mpeg4_with_idx1", "avi_opendml", "mp4_avc_and_aac", "mp4_moov_behind_mdat",
          "ogg_vorbis_with_five_tags", "asf_audio_with_all_texts", "wave_pcm_stereo",
          "flv_video_and_audio_with_metadata", "image_png_of_64_bytes"}) {
        const Bytes bytes = sample(name).build();
        TestFile file(bytes);
        file.badFrom = 0;
        file.badTo = bytes.size();
        const Outcome outcome = probeFile(file);
        EXPECT_EQ(outcome.claimed, 0) << name;
        EXPECT_EQ(outcome.info->containerType, 0u) << name;
        EXPECT_EQ(outcome.info->fileSize, 0u) << name;
        EXPECT_EQ(outcome.info->status, probe::kNotParsed) << name;
    }
}

// A sector behind the head: what of a sample stands there is a failed read, and the rest of the
// record stays as it was constructed.
TEST(FailedReads, BehindTheHead) {
    const Bytes picture = volPayload(3, 0, 0, 6000);
    const Bytes headers = join({avih(40000), videoList("XVID", 64, 48)});
    const Bytes index = chunk("idx1", join({idx1Entry("00dc", 4, 6000)}));
    const Bytes avi = aviWithIndex(headers, chunk("00dc", picture), index);
    ASSERT_EQ(probeBytes(avi).info->pixelAspectX, 11u);
    const std::size_t idx1 = placeOf(avi, "idx1");
    expectTold("AVI, the index", avi, idx1 + 8, idx1 + 9, {1, probe::kNotParsed, 0}, 2);
    expectTold("AVI, the index's header", avi, idx1, idx1 + 1, {1, probe::kNotParsed, 0}, 2);
    expectTold("AVI, the first picture", avi, 5000, 5001, {1, probe::kNotParsed, 0}, 6);

    // A start code at the far end of the payload.
    Bytes late(30'000, 0x55);
    const Bytes set = volPayload(5);
    std::copy(set.begin(), set.end(), late.end() - 64);
    const Bytes large = aviWithIndex(headers, chunk("00dc", late),
                                     chunk("idx1", join({idx1Entry("00dc", 4, 30'000)})));
    ASSERT_EQ(probeBytes(large).info->pixelAspectX, 33u);
    const std::size_t at = placeOf(large, "idx1") - 1;
    TestFile file(large);
    file.badFrom = at - 2000;
    file.badTo = at - 1999;
    const Outcome outcome = probeFile(file);
    EXPECT_EQ(outcome.info->containerType, 0u);
    EXPECT_EQ(outcome.info->status, probe::kNotParsed);
}

TEST(FailedReads, AFileShorterThanItSays) {
    struct Case {
        const char* sample;
        std::uint32_t container;
        probe::Result status;
    };
    for (const Case& one : std::to_array<Case>({
             {"avi_mpeg4_with_idx1", 1, probe::kOk},     // what is missing counts as 0
             {"mp4_avc_and_aac", 0, probe::kNotParsed},  // the walk never meets the end
             {"ogg_vorbis_with_five_tags", 0, probe::kNotParsed},
             {"asf_audio_with_all_texts", 3, probe::kOk},  // the header alone
             {"flv_video_and_audio_with_metadata", 11, probe::kOk},
             {"mp3_constant_rate_behind_a_tag", 5, probe::kFail},
             {"ape_new_header", 10, probe::kFail},
             {"flac_stream_information", 9, probe::kOk},
             {"wave_pcm_stereo", 6, probe::kOk},
         })) {
        const Bytes bytes = sample(one.sample).build();
        TestFile file(bytes);
        file.claimedSize = bytes.size() + 30'000;
        const Outcome outcome = probeFile(file);
        EXPECT_EQ(outcome.info->containerType, one.container) << one.sample;
        EXPECT_EQ(outcome.info->status, one.status) << one.sample;
        EXPECT_LE(outcome.reads, 30u) << one.sample;
    }
}

TEST(FailedAllocations, TheWindowStaysSmall) {
    Bytes bytes(300'000, 7);
    bytes[200'000] = 9;
    TestFile file(bytes);
    probe::ReadWindow window(file);
    largeBlocksFail = true;
    std::span<const std::uint8_t> out;
    bool walked = true;
    std::uint8_t seen = 0;
    for (std::uint64_t at = 0; at + 100 <= bytes.size(); at += 100) {
        walked = walked && window.viewAll(at, 100, out);
        seen = at == 200'000 && walked ? out[0] : seen;
    }
    const bool large = window.view(1000, 9000, out);
    largeBlocksFail = false;
    EXPECT_TRUE(walked);
    EXPECT_EQ(seen, 9);
    EXPECT_FALSE(large) << "more than the small window holds";
    EXPECT_LE(file.reads, 300'000 / 8192 + 5u);
    EXPECT_TRUE(window.view(1000, 9000, out));
}

TEST(FailedAllocations, AFlashVideoWithoutScratchHasNoDuration) {
    const Bytes bytes = flv::File(flv::kVideo).video().video(8000, 2, 70'000).end();
    ASSERT_EQ(probeBytes(bytes).info->durationSeconds, 8u);
    largeBlocksFail = true;
    const Outcome outcome = probeBytes(bytes);
    largeBlocksFail = false;
    EXPECT_EQ(outcome.info->durationSeconds, 0u);
    EXPECT_EQ(outcome.info->status, probe::kOk);
}

TEST(FailedAllocations, AnAviIndexThatHasNoBlockFails) {
    const Bytes bytes = sample("avi_opendml").build();
    largeBlocksFail = true;
    const Outcome outcome = probeBytes(bytes);
    largeBlocksFail = false;
    EXPECT_EQ(outcome.claimed, 1);
    EXPECT_EQ(outcome.info->containerType, 0u);
}

}  // namespace
}  // namespace probe_test
