// The record, the dispatcher, the readers: what every container family leans on.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <string_view>
#include <type_traits>

#include "probe/read/bit_reader.h"
#include "probe/read/block.h"
#include "probe/read/byte_reader.h"
#include "probe/read/four_cc.h"
#include "probe/read/read_budget.h"
#include "probe/recognisers.h"
#include "probe/record/diagnostics.h"
#include "probe/record/field_list.h"
#include "probe/record/saturate.h"
#include "probing.h"

namespace probe_test {
namespace {

TEST(ByteReader, LatchesItsFirstFailure) {
    const auto bytes = std::to_array<std::uint8_t>({1, 2, 3, 4, 5});
    probe::ByteReader reader(bytes);
    EXPECT_EQ(reader.le32(), 0x04030201u);
    EXPECT_EQ(reader.be32(), 0u);
    EXPECT_FALSE(reader.ok());
    EXPECT_EQ(reader.u8(), 0u) << "the byte is there, but the failure holds";
    EXPECT_EQ(reader.position(), 4u);
}

TEST(ByteReader, SubCannotSeeBeyondItsEnd) {
    const auto bytes = std::to_array<std::uint8_t>({1, 2, 3, 4});
    probe::ByteReader reader(bytes);
    probe::ByteReader sub = reader.sub(2);
    EXPECT_EQ(sub.be32(), 0u);
    EXPECT_FALSE(sub.ok());
    EXPECT_EQ(reader.u8(), 3u);
    EXPECT_TRUE(reader.ok());
}

TEST(ByteReader, CursorReadersAdvanceByEight) {
    const auto bytes =
        std::to_array<std::uint8_t>({1, 2, 3, 4, 5, 6, 7, 8, 1, 2, 3, 4, 5, 6, 7, 8});
    const std::uint8_t* cursor = bytes.data();
    EXPECT_EQ(probe::ReadLE64(cursor), 0x0807060504030201u);
    EXPECT_EQ(cursor, bytes.data() + 8);
    EXPECT_EQ(probe::ReadBE64(cursor), 0x0102030405060708u);
    EXPECT_EQ(cursor, bytes.data() + 16);
}

TEST(BitReader, BitsBeyondTheEndAreZero) {
    const auto bytes = std::to_array<std::uint8_t>({0xA5});
    probe::BitReader reader(bytes);
    EXPECT_EQ(reader.bits(4), 0xAu);
    EXPECT_TRUE(reader.ok());
    EXPECT_EQ(reader.bits(8), 0x50u);
    EXPECT_FALSE(reader.ok());
}

TEST(BitReader, ReadsFieldsOfEveryWidthAtEveryPlace) {
    const auto bytes = std::to_array<std::uint8_t>({0xA5, 0x3C, 0xFF, 0x00, 0x81, 0x7E, 0x19});
    for (unsigned start = 0; start < 24; ++start) {
        for (unsigned width = 0; width <= 32; ++width) {
            probe::BitReader whole(bytes), single(bytes);
            whole.skip(start);
            single.skip(start);
            std::uint32_t expected = 0;
            for (unsigned i = 0; i < width; ++i) {
                expected = (expected << 1) | single.bit();
            }
            ASSERT_EQ(whole.bits(width), expected) << width << " bits at " << start;
            ASSERT_EQ(whole.bitPosition(), start + width);
            ASSERT_TRUE(whole.ok());
        }
    }
}

TEST(BitReader, CountsZerosUpToTheNextOne) {
    const auto bytes = std::to_array<std::uint8_t>({0x80, 0x01, 0x00, 0x00, 0x10, 0x00});
    probe::BitReader reader(bytes);
    EXPECT_EQ(reader.zeros(32), 0u);
    EXPECT_EQ(reader.zeros(32), 14u);
    EXPECT_EQ(reader.bitPosition(), 16u);
    probe::BitReader impatient = reader;
    EXPECT_GT(impatient.zeros(8), 8u);
    EXPECT_TRUE(impatient.ok());
    EXPECT_EQ(reader.zeros(32), 19u);
    EXPECT_EQ(reader.bitPosition(), 36u);
    EXPECT_TRUE(reader.ok());
    EXPECT_EQ(reader.zeros(32), 12u) << "and no one behind them";
    EXPECT_FALSE(reader.ok());
    // Exactly as many as are put up with, and then the end.
    const std::array<std::uint8_t, 4> none{};
    for (const unsigned most : {31u, 32u}) {
        probe::BitReader last(none);
        EXPECT_EQ(last.zeros(most), 32u);
        EXPECT_EQ(last.ok(), most == 31);
    }
}

TEST(BitReader, SkipsToTheEndAndNoFurther) {
    const auto bytes = std::to_array<std::uint8_t>({0xFF, 0xFF});
    for (const std::size_t count : {15u, 16u, 17u, 1000u}) {
        probe::BitReader reader(bytes);
        reader.skip(count);
        EXPECT_EQ(reader.ok(), count <= 16) << count;
        EXPECT_EQ(reader.bitPosition(), std::min<std::size_t>(count, 16)) << count;
        reader.skip(0);
        probe::BitReader twice(bytes);
        twice.skip(3);
        twice.skip(count - 3);
        EXPECT_EQ(twice.ok(), count <= 16) << count;
        EXPECT_EQ(twice.bitPosition(), std::min<std::size_t>(count, 16)) << count;
        EXPECT_EQ(reader.ok(), count <= 16) << "the first failure holds: " << count;
    }
}

TEST(BitReader, AFieldMayEndWithTheLastBit) {
    const auto bytes = std::to_array<std::uint8_t>({0x12, 0x34});
    for (unsigned width = 1; width <= 17; ++width) {
        probe::BitReader reader(bytes);
        reader.skip(16 - std::min(width, 16u));
        static_cast<void>(reader.bits(width));
        EXPECT_EQ(reader.ok(), width <= 16) << width;
        EXPECT_EQ(reader.bit(), 0u);
        EXPECT_FALSE(reader.ok()) << width;
    }
}

TEST(FourCc, PutsTheFirstLetterHighest) {
    EXPECT_EQ(probe::fourCc("ftyp"), 0x66747970u);
    EXPECT_EQ(probe::fourCc("RIFF"), 0x52494646u);
}

TEST(Block, IsGrantedBelowAProcessesSpace) {
    EXPECT_TRUE(probe::canAllocate((1u << 30) - 1));
    EXPECT_FALSE(probe::canAllocate(1u << 30));
    EXPECT_FALSE(probe::canAllocate(std::uint64_t{1} << 32));
}

TEST(Block, IsHeldByAFileThatReachesItsEnd) {
    EXPECT_TRUE(probe::fileHolds(100, 50, 50));
    EXPECT_FALSE(probe::fileHolds(100, 50, 51));
    EXPECT_TRUE(probe::fileHolds(100, 100, 0));
    EXPECT_FALSE(probe::fileHolds(100, 101, 0));
    EXPECT_FALSE(probe::fileHolds(100, 50, ~std::uint64_t{0}));
}

TEST(Saturate, TheHighestNumberStandsForAllBeyondIt) {
    EXPECT_EQ(probe::saturateToU32(4294967294.9), 0xFFFFFFFEu);
    EXPECT_EQ(probe::saturateToU32(4294967295.0), 0xFFFFFFFFu);
    EXPECT_EQ(probe::saturateToU32(4294967296.0), 0xFFFFFFFFu);
    EXPECT_EQ(probe::saturateToU32(1e300), 0xFFFFFFFFu);
    EXPECT_EQ(probe::saturateToU32(-1.0), 0u);
    EXPECT_EQ(probe::saturateToU32(std::uint64_t{1} << 32), 0xFFFFFFFFu);
    EXPECT_EQ(probe::saturateToU32(std::uint64_t{0xFFFFFFFE}), 0xFFFFFFFEu);
}

TEST(ReadBudget, CountsASectorForEverySmallRead) {
    probe::ReadBudget budget(1024);  // and 512 KiB
    for (int i = 0; i < 1024 + 1; ++i) {
        ASSERT_TRUE(budget.take(i == 0 ? 1 : 512)) << i;
    }
    EXPECT_FALSE(budget.take(513));
}

TEST(ReadBudget, IsGoneWithTheFirstReadThatIsTooLarge) {
    probe::ReadBudget budget(0);
    EXPECT_FALSE(budget.take((512 << 10) + 1));
    EXPECT_FALSE(budget.take(512)) << "nothing is left";
    probe::ReadBudget exact(0);
    EXPECT_TRUE(exact.take(512 << 10));
}

TEST(MediaInfo, IsConstructedWithItsFixedValues) {
    const probe::MediaInfo info;
    probe::visitFields(info, [](std::string_view name, auto value) {
        if constexpr (std::is_same_v<decltype(value), std::u16string_view>) {
            EXPECT_TRUE(value.empty()) << name;
        } else {
            EXPECT_EQ(static_cast<std::int64_t>(value), name == "genreIndex" ? -1 : 0) << name;
        }
    });
    EXPECT_EQ(info.status, 1);
    EXPECT_EQ(info.containerType, 0u);
    EXPECT_EQ(info.genreIndex, -1);
    EXPECT_EQ(info.hasGenre, 0u);
    EXPECT_EQ(info.title[0], u'\0');
    EXPECT_EQ(info.imageBitsPerPixel, 0u);
    EXPECT_EQ(info.fileHandle, nullptr);
}

TEST(MediaInfo, ASectorBehindTheHeadThatCannotBeReadIsNotNeeded) {
    Bytes gif = sample("image_gif_packed_f7_is_8_bits").build();
    gif.resize(60000);
    const Outcome outcome = probeWithBad(gif, 3000);
    EXPECT_EQ(outcome.info->containerType, probe::kContainerGif);
    EXPECT_EQ(outcome.info->status, probe::kOk);
    EXPECT_EQ(outcome.reads, 2u);
}

TEST(MediaInfo, OpenOfAMissingFileGivesTheWindowsError) {
    probe::MediaInfo info;
    EXPECT_EQ(static_cast<std::uint32_t>(info.Open(u"no-such-file.avi")), 0x80070002u);
    EXPECT_EQ(info.status, 1);
    EXPECT_EQ(info.fileSize, 0u);
    EXPECT_EQ(info.fileHandle, nullptr);
    // A file is no folder: error 3, which Windows tells of a path that is none.
    const char name[] = "probe_test_folder.tmp";
    std::FILE* file = std::fopen(name, "wb");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    EXPECT_EQ(static_cast<std::uint32_t>(info.Open(u"probe_test_folder.tmp/file.avi")),
              0x80070003u);
    std::remove(name);
}

TEST(MediaInfo, FieldsAreVisitedInTheirOrder) {
    std::string names;
    probe::visitFields(probe::MediaInfo(), [&names](const char* name, auto) {
        names += name;
        names += ' ';
    });
    EXPECT_EQ(names,
              "containerType fileSize fileSizeHigh durationSeconds audioFormatTag audioBitRate "
              "audioSampleRate audioChannels videoFourCC videoWidth videoHeight "
              "frameTimeMicroseconds videoBitRate pixelAspectX pixelAspectY hasTitle hasArtist "
              "hasAlbum hasTrack hasGenre title artist album track genre genreIndex hasComposer "
              "hasYear composer year imageWidth imageHeight imageBitsPerPixel ");
}

// What Open hands to Probe, and what becomes of Probe's answer.
class WatchedInfo final : public probe::MediaInfo {
public:
    probe::Result Probe(platform::ReadOnlyFile& file) override {
        ++probed;
        handed = &file == fileHandle.get();
        return probe::kFail;
    }
    int probed = 0;
    bool handed = false;
};

TEST(MediaInfo, OpenProbesThroughItsVirtualOperationAndClosesTheFile) {
    const char name[] = "probe_test_open.tmp";
    std::FILE* file = std::fopen(name, "wb");
    ASSERT_NE(file, nullptr);
    std::fputs("some bytes", file);
    std::fclose(file);
    WatchedInfo info;
    EXPECT_EQ(info.Open(u"probe_test_open.tmp"), probe::kOk) << "Probe's answer is ignored";
    EXPECT_EQ(info.probed, 1);
    EXPECT_TRUE(info.handed);
    EXPECT_EQ(info.fileHandle, nullptr);
    EXPECT_EQ(std::remove(name), 0) << "nothing holds the file any more";
}

TEST(MediaInfo, OpenClosesAFileThatIsStillHeld) {
    struct Held final : platform::ReadOnlyFile {
        explicit Held(bool& mark) : closed(mark) {}
        ~Held() override { closed = true; }
        bool size(std::uint64_t&) override { return false; }
        bool readAt(std::uint64_t, std::span<std::uint8_t>, std::size_t&) override { return false; }
        bool& closed;
    };
    bool closed = false;
    probe::MediaInfo info;
    info.fileHandle = std::make_unique<Held>(closed);
    EXPECT_NE(info.Open(u"no-such-file.avi"), probe::kOk);
    EXPECT_TRUE(closed);
    EXPECT_EQ(info.fileHandle, nullptr);
}

TEST(Dispatcher, AsksTheTenRecognisersInTheirOrder) {
    struct Row {
        const char* name;
        const char* looksAt;
    };
    constexpr Row kOrder[] = {
        {"Still images", "the first 64 bytes: FF D8, GIF, BM or the PNG signature with IHDR"},
        {"RIFF: AVI and WAVE", "the first 256 bytes: RIFF with the form AVI or WAVE"},
        {"MP4 and 3GP", "the first 256 bytes: ftyp and its brands"},
        {"ASF", "the first 256 bytes: the GUID of the Header Object"},
        {"Ogg", "the first 256 bytes: OggS"},
        {"MPEG program stream", "the first 256 bytes (VideoCD: 2 MiB): a pack start code"},
        {"MPEG audio", "up to 2 MiB from offset 10: six frame headers in a row"},
        {"FLAC", "256 bytes at the start or behind an ID3 tag: fLaC"},
        {"Monkey's Audio", "the first 256 bytes: MAC"},
        {"FLV", "the first 9 bytes: FLV"},
    };
    ASSERT_EQ(probe::recognisers().size(), std::size(kOrder));
    for (std::size_t i = 0; i < std::size(kOrder); ++i) {
        EXPECT_STREQ(probe::recognisers()[i].name, kOrder[i].name);
        EXPECT_STREQ(probe::recognisers()[i].looksAt, kOrder[i].looksAt);
    }
}

TEST(Dispatcher, ARecogniserAnswersWith1Or0) {
    const probe::DiagnosticSink before = probe::setDiagnosticSink(nullptr);
    for (const Sample& one : samples()) {
        const Bytes bytes = one.build();
        TestFile file(bytes);
        probe::ReadWindow window(file);
        for (const probe::Recogniser& recogniser : probe::recognisers()) {
            probe::MediaRecord record;
            const int claimed = recogniser.recognise(record, window);
            EXPECT_TRUE(claimed == 0 || claimed == 1) << one.name << ": " << recogniser.name;
        }
    }
    probe::setDiagnosticSink(before);
}

TEST(Dispatcher, ShortFilesAreRecognisedByNobody) {
    for (std::size_t size = 0; size < 9; ++size) {
        Bytes bytes = {'F', 'L', 'V', 1, 5, 0, 0, 0, 9};
        bytes.resize(size);
        const Outcome outcome = probeBytes(bytes);
        EXPECT_EQ(outcome.claimed, 0) << size;
        EXPECT_EQ(outcome.info->containerType, 0u) << size;
        EXPECT_EQ(outcome.info->status, 1) << size;
    }
}

TEST(Dispatcher, ASizeWhoseHighWordIsAllOnesIsDeclinedByAll) {
    const char* const good[] = {
        "image_gif_packed_80_is_1_bit",   "wave_pcm_stereo",           "mp4_avc_and_aac",
        "asf_audio_with_all_texts",       "ogg_vorbis_with_five_tags", "mpegps_mpeg1_system_stream",
        "mp3_constant_rate_behind_a_tag", "flac_stream_information",   "ape_new_header",
        "flv_9_bytes_without_streams"};
    ASSERT_EQ(probe::recognisers().size(), std::size(good));
    for (std::size_t i = 0; i < std::size(good); ++i) {
        const Bytes bytes = sample(good[i]).build();
        const auto ask = [&](std::uint64_t claimedSize, std::uint32_t& fileSize) {
            TestFile file(bytes);
            file.claimedSize = claimedSize;
            probe::ReadWindow window(file);
            probe::MediaInfo info;
            const int claimed = probe::recognisers()[i].recognise(info, window);
            fileSize = info.fileSize;
            return claimed;
        };
        std::uint32_t fileSize = 0;
        EXPECT_EQ(ask(0, fileSize), 1) << good[i];
        EXPECT_EQ(fileSize, bytes.size()) << good[i];
        EXPECT_EQ(ask(0xFFFFFFFF'00000100, fileSize), 0) << good[i];
        EXPECT_EQ(fileSize, 0u) << good[i];
    }
}

TEST(MediaInfo, ALengthThatFitsNoFieldIsTheLongestThatDoes) {
    for (const char* name :
         {"asf_length_beyond_32_bits_of_seconds", "mp4_length_beyond_32_bits_of_seconds",
          "flac_length_beyond_32_bits_of_seconds", "ape_length_beyond_32_bits_of_seconds"}) {
        EXPECT_EQ(probeBytes(sample(name).build()).info->durationSeconds, 0xFFFFFFFFu) << name;
    }
    const Bytes wave = sample("wave_bit_rate_wraps_at_32_bits").build();  // 8 bits a second
    TestFile file(wave);
    file.claimedSize = std::uint64_t{5} << 32;
    EXPECT_EQ(probeFile(file).info->durationSeconds, 0xFFFFFFFFu);
}

TEST(Dispatcher, AFileWhoseSizeCannotBeToldIsDeclined) {
    const Bytes bytes(5000, 'R');
    TestFile file(bytes);
    file.sizeFails = true;
    const Outcome outcome = probeFile(file);
    EXPECT_EQ(outcome.claimed, 0);
    EXPECT_EQ(outcome.info->fileSize, 0u);
}

}  // namespace
}  // namespace probe_test
