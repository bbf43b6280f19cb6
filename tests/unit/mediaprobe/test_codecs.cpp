// By which name a stream's codec goes, and when the sample entry of an MP4 file tells it better
// than the record.
#include <gtest/gtest.h>

#include <string_view>

#include "mediaprobe/codecs.h"
#include "probe/read/four_cc.h"

namespace mediaprobe {
namespace {

using probe::fourCc;

probe::MediaRecord recordOf(std::uint32_t container, std::uint32_t video, std::uint32_t audio) {
    probe::MediaRecord record;
    record.containerType = container;
    record.videoFourCC = video;
    record.audioFormatTag = audio;
    return record;
}

// The registration authority of ISO/IEC 14496-12 (mp4ra.org), 3GPP TS 26.244, and the QuickTime
// File Format for its own.
TEST(Codecs, SoundByItsSampleEntry) {
    constexpr struct {
        std::uint32_t entry;
        std::string_view name;
    } kCases[] = {{fourCc("ac-3"), "AC-3"},         {fourCc("ec-3"), "E-AC-3"},
                  {fourCc("alac"), "ALAC"},         {fourCc("samr"), "AMR"},
                  {fourCc("sawb"), "AMR wideband"}, {fourCc("fLaC"), "FLAC"},
                  {fourCc("Opus"), "Opus"},         {fourCc("sowt"), "PCM"},
                  {fourCc("twos"), "PCM"},          {fourCc("lpcm"), "PCM"},
                  {fourCc("raw "), "PCM"},          {fourCc("in24"), "PCM"},
                  {fourCc("ulaw"), "mu-law"},       {fourCc("alaw"), "A-law"},
                  {fourCc("ima4"), "IMA ADPCM"},    {fourCc(".mp3"), "MPEG layer 3"},
                  {fourCc("xyz1"), "xyz1"}};
    const auto record = recordOf(probe::kContainerMp4, 0, probe::kAudioAac);
    for (const auto& one : kCases) {
        SecondLook seen;
        seen.audioEntry = one.entry;
        EXPECT_EQ(audioCodec(record, seen).name, one.name);
        EXPECT_EQ(audioCodec(record, seen).recordAs, "AAC") << one.name;
        for (int bit = 0; bit < 32; ++bit) {
            seen.audioEntry = one.entry ^ 1u << bit;
            if (seen.audioEntry != 0) {
                EXPECT_NE(audioCodec(record, seen).name, one.name) << bit;
            }
        }
    }
}

TEST(Codecs, SoundAsTheRecordHasItWhereNoEntryTellsOtherwise) {
    SecondLook seen;
    EXPECT_EQ(audioCodec(recordOf(probe::kContainerMp4, 0, probe::kAudioAac), seen).name, "AAC");
    for (const std::uint32_t entry : {fourCc("mp4a"), fourCc("ac-3")}) {
        seen.audioEntry = entry;
        const bool isOther = entry != fourCc("mp4a");
        const Codec aac = audioCodec(recordOf(probe::kContainerMp4, 0, probe::kAudioAac), seen);
        EXPECT_EQ(aac.name, isOther ? "AC-3" : "AAC");
        EXPECT_EQ(aac.recordAs, isOther ? "AAC" : "");
        const Codec avi = audioCodec(recordOf(probe::kContainerAvi, 0, probe::kAudioAac), seen);
        EXPECT_EQ(avi.name, "AAC");
        EXPECT_EQ(avi.recordAs, "");
        const Codec pcm = audioCodec(recordOf(probe::kContainerMp4, 0, 1), seen);
        EXPECT_EQ(pcm.name, "PCM");
        EXPECT_EQ(pcm.recordAs, "");
        EXPECT_EQ(audioCodec(recordOf(probe::kContainerMp4, 0, 0), seen).name, "");
    }
    EXPECT_EQ(audioCodec(recordOf(probe::kContainerAvi, 0, 0x7777), {}).name, "format (0x7777)");
}

// ISO/IEC 14496-1, table 5: 0x20 MPEG-4 Visual, 0x60 to 0x65 the profiles of MPEG-2, 0x6A MPEG-1,
// 0x6C JPEG.
TEST(Codecs, PicturesOfAnMp4vEntryByTheirObjectType) {
    const auto record = recordOf(probe::kContainerMp4, fourCc("MP4V"), 0);
    SecondLook seen;
    const std::string plain = videoCodec(record, seen).name;
    EXPECT_NE(plain, "");
    for (const std::uint32_t entry : {0u, fourCc("mp4v")}) {
        for (unsigned type = 0; type < 256; ++type) {
            seen.videoEntry = entry;
            seen.videoObjectType = static_cast<std::uint8_t>(type);
            const std::string_view told = type >= 0x60 && type <= 0x65 ? "MPEG-2"
                                          : type == 0x6A               ? "MPEG-1"
                                          : type == 0x6C               ? "Motion JPEG"
                                                                       : "";
            const bool isOther = entry != 0 && !told.empty();
            EXPECT_EQ(videoCodec(record, seen).name, isOther ? told : plain) << type;
            EXPECT_EQ(videoCodec(record, seen).recordAs, isOther ? "MP4V" : "") << type;
        }
    }
}

TEST(Codecs, PicturesOfAnotherEntryThanMp4v) {
    SecondLook seen;
    seen.videoEntry = fourCc("hvc1");
    const Codec mp4 = videoCodec(recordOf(probe::kContainerMp4, fourCc("MP4V"), 0), seen);
    EXPECT_EQ(mp4.name, "HEVC");
    EXPECT_EQ(mp4.recordAs, "MP4V");
    for (const auto& record : {recordOf(probe::kContainerMp4, fourCc("H264"), 0),
                               recordOf(probe::kContainerAvi, fourCc("MP4V"), 0)}) {
        EXPECT_NE(videoCodec(record, seen).name, "HEVC");
        EXPECT_EQ(videoCodec(record, seen).recordAs, "");
    }
    EXPECT_EQ(videoCodec(recordOf(probe::kContainerMp4, 0, 0), seen).name, "");
}

}  // namespace
}  // namespace mediaprobe
