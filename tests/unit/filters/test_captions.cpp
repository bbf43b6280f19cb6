// Subtitle files of the four types: what is read of good ones, and that bad ones cost no more than
// their length.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "simulator/filters/captions/caption_scan.h"
#include "simulator/filters/captions/caption_text.h"

namespace {

using filters::Caption;
using filters::captionAt;
using filters::kLongestCaption;
using filters::kMostCaptions;
using filters::kOpenEnd;
using filters::readCaptions;
using filters::SubtitleType;

constexpr SubtitleType kTypes[] = {SubtitleType::Smi, SubtitleType::Srt, SubtitleType::Sub,
                                   SubtitleType::Ssa};

struct Row {
    std::uint32_t start, end;
    std::u16string_view text;
};

struct Case {
    const char* name;
    SubtitleType type;
    std::u16string_view file;
    std::vector<Row> rows;
};

const Case kCases[] = {
    {"sami_two_languages",
     SubtitleType::Smi,
     u"<SAMI><BODY>\n<SYNC Start=400><P Class=KRCC>first\n<SYNC start=\"900\"><P Class=KRCC>&nbsp;"
     u"<SYNC Start=1200><P Class=krcc><b>one</b><BR>two &lt;3&gt; &amp;lt;"
     u"<SYNC Start=1200><P Class=ENCC>second",
     {{400, 900, u"first"}, {1200, kOpenEnd, u"one\ntwo <3> &lt;"}}},
    {"sami_backwards",
     SubtitleType::Smi,
     u"<SYNC Start=500><P>a<SYNC Start=300><P>b",
     {{300, kOpenEnd, u"b"}, {500, 501, u"a"}}},
    {"subrip",
     SubtitleType::Srt,
     u"1\r\n00:00:00,400 --> 00:00:00,900\r\n<i>first</i>\r\nline\r\n\r\n"
     u"2\n0:00:01.2 --> 1:02:03.4567\nx<y\n",
     {{400, 900, u"first\nline"}, {1200, 3'723'456, u"x<y"}}},
    {"subrip_wrong_times",
     SubtitleType::Srt,
     u"00:60:00,000 --> 00:61:00,000\na\n\n00:00:60,000 --> 00:01:01,000\nb\n\n"
     u"1000:00:00,000 --> 1001:00:00,000\nc\n\n00:00:02,000 --> 00:00:02,000\nd\n\n"
     u"999:59:59,999 --> 00:00:00,000\ne\n",
     {}},
    {"microdvd",
     SubtitleType::Sub,
     u"{1}{1}10.0\n{4}{9}first\n{12}{20}{y:b}two|lines\n{3}x\n",
     {{400, 900, u"first"}, {1200, 2000, u"two\nlines"}}},
    {"microdvd_rates",
     SubtitleType::Sub,
     u"{0}{0}0.5\n{25}{50}a\n{1}{1}23.976\n{24}{48}b\n",
     {{1000, 2000, u"a"}, {1001, 2002, u"b"}}},
    {"microdvd_far", SubtitleType::Sub, u"{1}{1}1\n{5000000}{999999999}a\n", {}},
    {"subviewer",
     SubtitleType::Sub,
     u"[INFORMATION]\n00:00:00.40,00:00:00.90\nfirst[br]line\n\n00:00:01.20,00:00:02.00\nsecond\n",
     {{400, 900, u"first\nline"}, {1200, 2000, u"second"}}},
    {"ssa",
     SubtitleType::Ssa,
     u"[Events]\nFormat: Marked, Start, End, Text\nDialogue: "
     u"0,0:00:00.40,0:00:00.90,{\\b1}a\\Nb,c\n"
     u"[Fonts]\nDialogue: 0,0:00:01.00,0:00:02.00,none\n",
     {{400, 900, u"a\nb,c"}}},
    {"ssa_without_format",
     SubtitleType::Ssa,
     u"[Events]\nDialogue: 0,0:00:01.00,0:00:02.00,D,,0,0,0,,d\\hd\n",
     {{1000, 2000, u"d d"}}},
};

class Captions : public testing::TestWithParam<Case> {};

TEST_P(Captions, AreReadInTheOrderOfTheirStart) {
    const std::vector<Caption> read = readCaptions(GetParam().type, GetParam().file);
    const std::vector<Row>& expected = GetParam().rows;
    ASSERT_EQ(read.size(), expected.size());
    for (std::size_t i = 0; i < read.size(); ++i) {
        EXPECT_EQ(read[i].start, expected[i].start);
        EXPECT_EQ(read[i].end, expected[i].end);
        EXPECT_EQ(read[i].text, expected[i].text);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, Captions, testing::ValuesIn(kCases),
                         [](const auto& row) { return row.param.name; });

// One caption whose text is `text`, in each type.
std::u16string fileWith(SubtitleType type, const std::u16string& text) {
    switch (type) {
        case SubtitleType::Smi:
            return u"<SYNC Start=100><P>" + text;
        case SubtitleType::Srt:
            return u"00:00:00,100 --> 00:00:01,000\n" + text;
        case SubtitleType::Sub:
            return u"{2}{25}" + text;
        case SubtitleType::Ssa:
            return u"[Events]\nDialogue: 0,0:00:00.10,0:00:01.00,D,,0,0,0,," + text;
    }
    return text;
}

TEST(CaptionLimits, OneHugeLineIsCut) {
    for (const SubtitleType type : kTypes) {
        const auto read = readCaptions(type, fileWith(type, std::u16string(4'000'000, u'A')));
        ASSERT_EQ(read.size(), 1u);
        EXPECT_EQ(read[0].text, std::u16string(kLongestCaption, u'A'));
    }
}

// Work that grew with the square of these would take minutes.
TEST(CaptionLimits, MarkupThatNeverEndsCostsItsLength) {
    for (const SubtitleType type : kTypes) {
        for (const char16_t* piece : {u"<", u"<p class=", u"&nbsp;", u"{", u",", u"\n", u"-->\n",
                                      u"<sync", u"<sync start=1>", u"{1}{2}a\n", u" ", u"|"}) {
            std::u16string text;
            while (text.size() < 200'000) {
                text += piece;
            }
            EXPECT_LE(readCaptions(type, fileWith(type, text)).size(), kMostCaptions);
            EXPECT_LE(readCaptions(type, text).size(), kMostCaptions);
        }
    }
}

TEST(CaptionLimits, NoMoreThanSoManyAreKept) {
    std::u16string file;
    for (std::size_t i = 0; i < kMostCaptions + 10; ++i) {
        file += u"{2}{25}a\n";
    }
    EXPECT_EQ(readCaptions(SubtitleType::Sub, file).size(), kMostCaptions);
}

TEST(CaptionText, TagsThatAreNeverClosedAreText) {
    EXPECT_EQ(filters::withoutTags(u"a<b>c<i"), u"ac<i");
    EXPECT_EQ(filters::withoutTags(u"1 < 2 <br/> 3 > 2"), u"1  3 > 2");
    EXPECT_EQ(filters::withoutTags(std::u16string(100'000, u'<')), std::u16string(100'000, u'<'));
}

TEST(CaptionAt, FindsTheOneThatStartedLast) {
    const std::vector<Caption> captions = {{100, 1000, u"a"}, {200, 300, u"b"}, {500, 600, u"c"}};
    struct {
        std::uint32_t at;
        int index;
    } constexpr kRows[] = {{99, -1}, {100, 0}, {199, 0}, {200, 1}, {299, 1},
                           {300, 0}, {500, 2}, {600, 0}, {999, 0}, {1000, -1}};
    for (const auto& row : kRows) {
        EXPECT_EQ(captionAt(captions, row.at), row.index) << row.at;
    }
    EXPECT_EQ(captionAt({}, 0), -1);
}

TEST(CaptionAt, LooksBackOverEightOthersAndNoFurther) {
    for (const int others : {8, 9}) {
        std::vector<Caption> captions = {{0, 10'000, u"long"}};
        for (int i = 0; i < others; ++i) {
            captions.push_back({static_cast<std::uint32_t>(10 + i), 50, u"short"});
        }
        EXPECT_EQ(captionAt(captions, 5000), others == 8 ? 0 : -1) << others;
    }
}

}  // namespace
