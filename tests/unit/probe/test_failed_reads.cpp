// Reads that fail: what is told then, and how many reads are made. The bytes that cannot be read
// are those of one place of a sample.
#include <algorithm>
#include <cstdlib>
#include <new>

#include "build_audio.h"
#include "build_flv.h"
#include "build_mp4.h"
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

struct Told {
    probe::Result claimed, status;
    std::uint32_t container;
};

// What is told, after so many reads, when the byte at `bad` cannot be read.
void expectTold(const char* name, const Bytes& bytes, std::size_t bad, const Told& told,
                std::uint64_t reads) {
    const Outcome outcome = probeWithBad(bytes, bad);
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
    expectTold("the tag's footer", bytes, bytes.size() - 10, {1, probe::kFail, sound}, 2);
    // The items stand outside of the last 128 bytes.
    const Bytes items = audio::apeTag({{"Comment", std::string(300, 'c')}, {"Title", "T"}});
    const Bytes longer = spread(audio::ape({}), items);
    const std::size_t first = placeOf(longer, "Comment");
    expectTold("an item of the tag", longer, first, {1, probe::kFail, sound}, 3);
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
    expectTold("the system header", bytes, system, {0, probe::kNotParsed, 0}, 20);
    expectTold("the sequence header", bytes, video, {1, probe::kFail, 0}, 3);
    const Outcome outcome = probeWithBad(bytes, bytes.size() - 5, 5);
    EXPECT_EQ(outcome.info->status, probe::kFail) << "the last pack";
    EXPECT_EQ(outcome.info->containerType, claimed);
    EXPECT_EQ(outcome.info->videoWidth, 352u);
    EXPECT_EQ(outcome.info->audioFormatTag, 0x50u);
    EXPECT_EQ(outcome.info->durationSeconds, 0u);
    EXPECT_EQ(outcome.reads, 3u);
}

TEST(FailedReads, OfFlashVideo) {
    const Bytes bytes = flv::File(flv::kVideo).video(0, 1, 30'000).video(7000, 2, 30'000).end();
    const Outcome outcome = probeWithBad(bytes, bytes.size() - 1);
    EXPECT_EQ(outcome.info->status, probe::kOk) << "the last time stamp";
    EXPECT_EQ(outcome.info->durationSeconds, 0u);
    EXPECT_EQ(outcome.info->videoFourCC, 0x48323634u);
    EXPECT_EQ(outcome.reads, 22u);
    // The header of the tag before the last one, which confirms it.
    ASSERT_EQ(probeBytes(bytes).info->durationSeconds, 7u);
    const Outcome confirming = probeWithBad(bytes, 9 + 4 + 11 + 30'001 + 4, 11);
    EXPECT_EQ(confirming.info->durationSeconds, 0u);
    EXPECT_EQ(confirming.reads, 15u);
}

// So long that what comes behind it is read by itself.
Bytes gap() {
    return box("free", Bytes(200'000));
}

// 80 s in 2,000 samples, each table behind a gap and longer than what is read of it at once.
Bytes spreadMp4(std::string_view handler, const Bytes& entry) {
    Builder times, runs, sizes, places;
    times.be32(0).be32(2000);
    runs.be32(0).be32(1000);
    sizes.be32(0).be32(0).be32(2000);
    places.be32(0).be32(2000);
    for (unsigned i = 0; i < 2000; ++i) {
        times.be32(1).be32(40);
        sizes.be32(7);
        places.be32(100);
        if (i % 2 == 0) {
            runs.be32(1 + i).be32(1).be32(1);
        }
    }
    const Bytes stbl = join({gap(), stsd(1, entry), gap(), box("stts", times.view()), gap(),
                             box("stsc", runs.view()), gap(), box("stsz", sizes.view()), gap(),
                             box("stco", places.view())});
    return join({ftyp("isom", "isom"), box("moov", track(handler, 1000, stbl))});
}

struct BadPlace {
    const char* name;
    const char* box;      // whose type stands
    std::size_t behind;   // so many bytes in front of the one that cannot be read
    std::uint64_t reads;  // the last two of them fail, or the last when it wants all that it reads
    const char* lines = "";
};

void expectMp4Fails(const Bytes& bytes, std::initializer_list<BadPlace> places) {
    ASSERT_EQ(probeBytes(bytes).info->status, probe::kOk);
    ASSERT_EQ(probeBytes(bytes).info->durationSeconds, 80u);
    for (const BadPlace& one : places) {
        const Outcome outcome = probeWithBad(bytes, placeOf(bytes, one.box) + one.behind);
        EXPECT_EQ(outcome.claimed, 1) << one.name;
        EXPECT_EQ(outcome.info->status, probe::kNotParsed) << one.name;
        EXPECT_EQ(outcome.info->containerType, 0u) << one.name;
        EXPECT_EQ(outcome.info->fileSize, bytes.size()) << one.name;
        EXPECT_EQ(outcome.info->durationSeconds, 0u) << one.name;
        EXPECT_EQ(outcome.reads, one.reads) << one.name;
        EXPECT_EQ(outcome.lines, one.lines) << one.name;
    }
}

TEST(FailedReads, OfMp4Pictures) {
    constexpr char kOffsets[] = "[ERROR] MP4Demux SetSampleOffset-VIDEO\n";
    Bytes set = sps({});
    set.resize(6000);
    const Bytes bytes = spreadMp4("vide", visualEntry("avc1", 64, 48, join({gap(), avcC(set)})));
    ASSERT_EQ(probeBytes(bytes).info->pixelAspectY, 11u);
    expectMp4Fails(bytes, {
                              {"the description", "stsd", 0, 3},
                              {"an entry's picture size", "avc1", 30, 3},
                              {"the configuration", "avcC", 0, 4},
                              {"the times", "stts", 0, 6},
                              {"the chunks", "stsc", 0, 8},
                              {"the sizes", "stsz", 0, 10},
                              {"the offsets", "stco", 0, 12},
                              {"a size far behind", "stsz", 6000, 12, kOffsets},
                              {"a chunk far behind", "stsc", 6000, 13, kOffsets},
                              {"a time far behind", "stts", 6000, 14},
                              {"the parameter set's end", "avcC", 5000, 15},
                          });
}

TEST(FailedReads, OfMp4Sound) {
    const Bytes bytes = spreadMp4(
        "soun", audioEntry("mp4a", 2, 24000, join({gap(), esds(0x40, 64'000, {0x13, 0x10})})));
    expectMp4Fails(bytes, {
                              {"the description", "stsd", 0, 3},
                              {"the stream's descriptors", "esds", 0, 4},
                              {"a chunk far behind", "stsc", 6000, 11,
                               "[ERROR] MP4Demux SetSampleOffset-AUDIO\n"},
                              {"a time far behind", "stts", 6000, 12},
                          });
}

TEST(FailedReads, OfMp4DecoderInformation) {
    // An MPEG-4 configuration of 6,000 bytes, whose lengths have two bytes.
    const auto with = [](unsigned tag, const Bytes& head, const Bytes& content) {
        return Builder()
            .bytes(head)
            .u8(tag)
            .u8(0x80 | content.size() >> 7)
            .u8(content.size() & 0x7F)
            .bytes(content)
            .take();
    };
    const Bytes config = with(5, Builder().u8(0x20).u8(0x11).be24(0).be32(0).be32(0).take(),
                              volPayload(3, 0, 0, 6000));
    const Bytes es = with(4, Builder().be16(1).u8(0).take(), config);
    const Bytes body = with(3, Bytes(4), es);
    const Bytes bytes =
        spreadMp4("vide", visualEntry("mp4v", 64, 48, join({gap(), box("esds", body)})));
    ASSERT_EQ(probeBytes(bytes).info->pixelAspectX, 10u);
    expectMp4Fails(bytes, {{"the descriptors", "esds", 0, 4}, {"their end", "esds", 5900, 5}});
}

TEST(FailedReads, AFileOfWhichNothingCanBeReadIsDeclined) {
    for (const char* name :
         {"avi_mpeg4_with_idx1", "avi_opendml", "mp4_avc_and_aac", "mp4_moov_behind_mdat",
          "ogg_vorbis_with_five_tags", "asf_audio_with_all_texts", "wave_pcm_stereo",
          "flv_video_and_audio_with_metadata", "image_png_of_64_bytes"}) {
        const Bytes bytes = sample(name).build();
        const Outcome outcome = probeWithBad(bytes, 0, bytes.size());
        EXPECT_EQ(outcome.claimed, 0) << name;
        EXPECT_EQ(outcome.info->containerType, 0u) << name;
        EXPECT_EQ(outcome.info->fileSize, 0u) << name;
        EXPECT_EQ(outcome.info->status, probe::kNotParsed) << name;
    }
}

// A sector of the card that cannot be read: either nobody needs it, or the record says so.
TEST(FailedReads, ABadSectorIsNotNeededOrIsToldOf) {
    constexpr std::size_t kSector = 512, kLargest = 24 * 1024;
    for (const Sample& one : samples()) {
        const Bytes bytes = one.build();
        if (one.kind != Kind::Good || bytes.size() > kLargest) {
            continue;
        }
        const std::string whole = dump(probeBytes(bytes));
        for (std::size_t at = 0; at < bytes.size(); at += kSector) {
            const Outcome outcome = probeWithBad(bytes, at, kSector);
            // The last time stamp of Flash Video, which its play time is taken from, may be
            // missing.
            const bool isUntimed = outcome.info->containerType == probe::kContainerFlv &&
                                   outcome.info->durationSeconds == 0;
            EXPECT_TRUE(dump(outcome) == whole || isUntimed || outcome.claimed == 0 ||
                        outcome.info->status != probe::kOk)
                << one.name << " at " << at;
        }
    }
}

// What the header list told is not kept when a picture or the index behind it cannot be read.
TEST(FailedReads, OfAvi) {
    const Bytes picture = volPayload(3, 0, 0, 6000);
    const Bytes headers = join({avih(40000), videoList("XVID", 64, 48)});
    const Bytes index = chunk("idx1", join({idx1Entry("00dc", 4, 6000)}));
    const Bytes avi = aviWithIndex(headers, chunk("00dc", picture), index);
    ASSERT_EQ(probeBytes(avi).info->pixelAspectX, 11u);
    const std::size_t idx1 = placeOf(avi, "idx1");
    expectTold("AVI, the index", avi, idx1 + 8, {1, probe::kNotParsed, 0}, 2);
    expectTold("AVI, the index's header", avi, idx1, {1, probe::kNotParsed, 0}, 2);
    expectTold("AVI, the first picture", avi, 5000, {1, probe::kNotParsed, 0}, 6);

    // A start code at the far end of the payload.
    Bytes late(30'000, 0x55);
    const Bytes set = volPayload(5);
    std::copy(set.begin(), set.end(), late.end() - 64);
    const Bytes large = aviWithIndex(headers, chunk("00dc", late),
                                     chunk("idx1", join({idx1Entry("00dc", 4, 30'000)})));
    ASSERT_EQ(probeBytes(large).info->pixelAspectX, 33u);
    const std::size_t at = placeOf(large, "idx1") - 1;
    const Outcome outcome = probeWithBad(large, at - 2000);
    EXPECT_EQ(outcome.info->containerType, 0u);
    EXPECT_EQ(outcome.info->status, probe::kNotParsed);
    EXPECT_EQ(outcome.reads, 24u);
}

TEST(FailedReads, AFileShorterThanItSays) {
    struct Case {
        const char* sample;
        std::uint32_t container;
        probe::Result status;
        std::uint64_t reads;
    };
    for (const Case& one : std::to_array<Case>({
             {"avi_mpeg4_with_idx1", 1, probe::kOk, 1},  // what is missing counts as 0
             {"avi_opendml", 1, probe::kOk, 1},
             {"mp4_avc_and_aac", 0, probe::kNotParsed, 1},  // the walk never meets the end
             {"ogg_vorbis_with_five_tags", 0, probe::kNotParsed, 1},
             {"asf_audio_with_all_texts", 3, probe::kOk, 1},  // the header alone
             {"flv_video_and_audio_with_metadata", 11, probe::kOk, 1},
             {"mp3_constant_rate_behind_a_tag", 5, probe::kFail, 2},
             {"mpegps_mpeg1_system_stream", 7, probe::kOk, 5},
             {"ape_new_header", 10, probe::kFail, 1},
             {"flac_stream_information", 9, probe::kOk, 2},
             {"wave_pcm_stereo", 6, probe::kOk, 1},
         })) {
        const Bytes bytes = sample(one.sample).build();
        TestFile file(bytes);
        file.claimedSize = bytes.size() + 30'000;
        const Outcome outcome = probeFile(file);
        EXPECT_EQ(outcome.info->containerType, one.container) << one.sample;
        EXPECT_EQ(outcome.info->status, one.status) << one.sample;
        EXPECT_EQ(outcome.reads, one.reads) << one.sample;
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
