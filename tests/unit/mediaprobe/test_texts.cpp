// Names and small texts, row by row.
#include <gtest/gtest.h>

#include "mediaprobe/format_text.h"
#include "mediaprobe/names.h"
#include "probe/read/four_cc.h"

namespace mediaprobe {
namespace {

using probe::fourCc;

TEST(Texts, NumbersAreGroupedByThree) {
    const struct {
        std::uint64_t value;
        const char* text;
    } cases[] = {{0, "0"},
                 {999, "999"},
                 {1000, "1,000"},
                 {211042, "211,042"},
                 {1000000, "1,000,000"},
                 {UINT64_MAX, "18,446,744,073,709,551,615"}};
    for (const auto& one : cases) {
        EXPECT_EQ(grouped(one.value), one.text);
    }
}

TEST(Texts, PlayTimeHasHoursFromAnHourOn) {
    const struct {
        std::uint32_t seconds;
        const char* text;
    } cases[] = {{0, "0:00"},       {9, "0:09"},       {60, "1:00"},       {3599, "59:59"},
                 {3600, "1:00:00"}, {3661, "1:01:01"}, {36000, "10:00:00"}};
    for (const auto& one : cases) {
        EXPECT_EQ(playTime(one.seconds), one.text);
    }
}

TEST(Texts, RoundSizesAreCutToOneDecimal) {
    const struct {
        std::uint64_t bytes;
        const char* text;
    } cases[] = {{0, "0 bytes"},         {1, "1 byte"},          {999, "999 bytes"},
                 {1000, "1.0 kB"},       {1999, "1.9 kB"},       {999999, "999.9 kB"},
                 {1000000, "1.0 MB"},    {1290000, "1.2 MB"},    {999999999, "999.9 MB"},
                 {1000000000, "1.0 GB"}, {4294967296u, "4.2 GB"}};
    for (const auto& one : cases) {
        EXPECT_EQ(roundSize(one.bytes), one.text);
    }
}

TEST(Texts, APartNeverReadsLikeItsWhole) {
    EXPECT_EQ(partOf(1249999, 9000000), "1.2 MB of 9.0 MB");
    EXPECT_EQ(partOf(1249999, 9000000, "at least "), "1.2 MB of at least 9.0 MB");
    EXPECT_EQ(partOf(1249, 1299), "1,249 of 1,299 bytes");
    EXPECT_EQ(partOf(1249, 1300), "1.2 kB of 1.3 kB");
    EXPECT_EQ(partOf(1249, 1250, "at least "), "1,249 of at least 1,250 bytes");
    EXPECT_EQ(partOf(200, 999), "200 of 999 bytes");
    EXPECT_EQ(partOf(200, 1000), "200 bytes of 1.0 kB");
}

TEST(Texts, ControlCharactersAndForeignBytesAreEscaped) {
    const struct {
        const char* text;
        const char* shown;
    } cases[] = {
        {"plain name.avi", "plain name.avi"},
        {"back\\slash", "back\\slash"},
        {"\n\r\t", "\\n\\r\\t"},
        {"\x01\x1f ~\x7f", "\\x01\\x1f ~\\x7f"},
        {"\x1b]0;x\x07", "\\x1b]0;x\\x07"},
        {"한국어", "한국어"},
        {"\xc2\x80\xc2\x9f\xc2\xa0", "\\xc2\\x80\\xc2\\x9f\xc2\xa0"},  // C1 ends at U+009F
        {"\xdf\xbf \xe0\xa0\x80 \xef\xbf\xbf", "\xdf\xbf \xe0\xa0\x80 \xef\xbf\xbf"},
        {"\xf0\x90\x80\x80 \xf4\x8f\xbf\xbf", "\xf0\x90\x80\x80 \xf4\x8f\xbf\xbf"},
        {"\x80 \xbf", "\\x80 \\xbf"},
        {"\xc1\xbf", "\\xc1\\xbf"},                    // too long a form
        {"\xe0\x9f\xbf", "\\xe0\\x9f\\xbf"},           // too long a form
        {"\xf0\x8f\xbf\xbf", "\\xf0\\x8f\\xbf\\xbf"},  // too long a form
        {"\xed\xa0\x80", "\\xed\\xa0\\x80"},           // a surrogate
        {"\xed\x9f\xbf", "\xed\x9f\xbf"},              // the character in front of them
        {"\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},  // beyond U+10FFFF
        {"\xf5\x80\x80\x80", "\\xf5\\x80\\x80\\x80"},
        {"\xc3", "\\xc3"},
        {"\xe2\x82", "\\xe2\\x82"},
        {"\xe2\x41\x82",
         "\\xe2"
         "A\\x82"},
        {"\xf0\x90\x80", "\\xf0\\x90\\x80"},
        {"\xf0\x90\x41\x80",
         "\\xf0\\x90"
         "A\\x80"},
        {"\xf0\x90\x80\x41",
         "\\xf0\\x90\\x80"
         "A"},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(escaped(one.text), one.shown);
    }
}

TEST(Names, Containers) {
    const struct {
        std::uint32_t type;
        const char* name;
    } cases[] = {{1, "AVI"},
                 {2, "MP4/3GP"},
                 {3, "ASF (Windows Media)"},
                 {4, "Ogg"},
                 {5, "MPEG audio"},
                 {6, "WAVE"},
                 {7, "MPEG-1 system stream"},
                 {8, "MPEG-2 program stream"},
                 {9, "FLAC"},
                 {10, "Monkey's Audio"},
                 {11, "FLV"},
                 {0x1001, "JPEG"},
                 {0x1002, "GIF"},
                 {0x1003, "BMP"},
                 {0x1004, "PNG"}};
    for (const auto& one : cases) {
        EXPECT_STREQ(containerName(one.type), one.name);
    }
    EXPECT_EQ(containerName(0), nullptr);
    EXPECT_EQ(containerName(12), nullptr);
    EXPECT_EQ(containerName(0x1005), nullptr);
}

// RFC 2361, and the tags that mmreg.h gave out later.
TEST(Names, SoundByItsFormatTag) {
    const struct {
        std::uint32_t tag;
        const char* text;
    } cases[] = {{0x0001, "PCM (0x0001)"},
                 {0x0002, "Microsoft ADPCM (0x0002)"},
                 {0x0003, "floating-point PCM (0x0003)"},
                 {0x0006, "A-law (0x0006)"},
                 {0x0007, "mu-law (0x0007)"},
                 {0x000A, "Windows Media Audio Voice (0x000A)"},
                 {0x0011, "IMA ADPCM (0x0011)"},
                 {0x0050, "MPEG audio (0x0050)"},
                 {0x0055, "MPEG layer 3 (0x0055)"},
                 {0x00FF, "AAC (0x00FF)"},
                 {0x0160, "Windows Media Audio 1 (0x0160)"},
                 {0x0161, "Windows Media Audio 2 (0x0161)"},
                 {0x0162, "Windows Media Audio Pro (0x0162)"},
                 {0x0163, "Windows Media Audio Lossless (0x0163)"},
                 {0x1600, "AAC (0x1600)"},
                 {0x2000, "AC-3 (0x2000)"},
                 {0x2001, "DTS (0x2001)"},
                 {0x4150, "Monkey's Audio (0x4150)"},
                 {0x566F, "Vorbis (0x566F)"},
                 {0xF1AC, "FLAC (0xF1AC)"},
                 {0xFFFE, "extensible format (0xFFFE)"},
                 {0x1234, "format (0x1234)"}};
    for (const auto& one : cases) {
        EXPECT_EQ(audioText(one.tag), one.text);
    }
}

TEST(Names, PicturesByTheirLetters) {
    const struct {
        std::uint32_t letters;
        const char* name;
    } cases[] = {{fourCc("AVC1"), "H.264"},
                 {fourCc("avc1"), "H.264"},
                 {fourCc("H264"), "H.264"},
                 {fourCc("x264"), "H.264"},
                 {fourCc("hvc1"), "HEVC"},
                 {fourCc("hev1"), "HEVC"},
                 {fourCc("HEVC"), "HEVC"},
                 {fourCc("H265"), "HEVC"},
                 {fourCc("X265"), "HEVC"},
                 {fourCc("H263"), "H.263"},
                 {fourCc("s263"), "H.263"},
                 {fourCc("U263"), "H.263"},
                 {fourCc("MP4V"), "MPEG-4 Visual"},
                 {fourCc("FMP4"), "MPEG-4 Visual"},
                 {fourCc("xvid"), "MPEG-4 Visual"},
                 {fourCc("DivX"), "MPEG-4 Visual"},
                 {fourCc("DX50"), "MPEG-4 Visual"},
                 {fourCc("DIV3"), "Microsoft MPEG-4 version 3"},
                 {fourCc("MP43"), "Microsoft MPEG-4 version 3"},
                 {fourCc("MJPG"), "Motion JPEG"},
                 {fourCc("MPG1"), "MPEG-1"},
                 {fourCc("MPG2"), "MPEG-2"},
                 {fourCc("WMV1"), "Windows Media Video 7"},
                 {fourCc("WMV2"), "Windows Media Video 8"},
                 {fourCc("WMV3"), "Windows Media Video 9"},
                 {fourCc("WVC1"), "VC-1"},
                 {fourCc("VP80"), "VP8"},
                 {fourCc("vp09"), "VP9"},
                 {fourCc("av01"), "AV1"},
                 {fourCc("ab Z"), "ab Z"},
                 {fourCc("@[`{"), "@[`{"},
                 {0x00000001, "0x00000001"},
                 {0x4142437F, "0x4142437F"},
                 {0x4142431F, "0x4142431F"},
                 {0xFFFFFFFF, "a codec without a name"}};
    for (const auto& one : cases) {
        EXPECT_EQ(videoText(one.letters), one.name);
    }
}

TEST(Names, WhyAFileCannotBeOpened) {
    const struct {
        std::uint32_t code;
        const char* text;
    } cases[] = {
        {0x80070002, "there is no such file"},
        {0x80070003, "a folder of its path does not exist"},
        {0x80070005, "reading it is not allowed"},
        {0x8007001F, "it is no file but a pipe or a device, or the system fails to read it"},
        {0x80070020, "another program keeps it to itself"},
        {0x80070015, "error 0x80070015"}};
    for (const auto& one : cases) {
        EXPECT_EQ(openErrorText(static_cast<probe::Result>(one.code)), one.text);
    }
}

}  // namespace
}  // namespace mediaprobe
