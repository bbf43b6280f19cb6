#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

#include "simulator/command/scenario.h"

namespace headunit {
namespace {

Words split(const std::string& line) {
    Words words;
    EXPECT_TRUE(splitWords(line, words)) << line;
    return words;
}

TEST(SplitWords, KnowsQuotesEscapesAndComments) {
    EXPECT_EQ(split("touch 1  2\t3"), (Words{"touch", "1", "2", "3"}));
    EXPECT_EQ(split("# only a comment"), Words{});
    EXPECT_EQ(split("key play # now"), (Words{"key", "play"}));
    EXPECT_EQ(split("expect pixel 1 2 #F800F8"), (Words{"expect", "pixel", "1", "2", "#F800F8"}));
    EXPECT_EQ(split("expect pixel 1 2 #F800F8 # magenta").size(), 5U);
    EXPECT_EQ(split(R"(box "\n\n재생 \"a\" \\")"), (Words{"box", "\n\n재생 \"a\" \\"}));
    EXPECT_EQ(split(R"(put a.avi \SDMMCDisk\a.avi)"),
              (Words{"put", "a.avi", "\\SDMMCDisk\\a.avi"}));
    EXPECT_EQ(split("file x \"\""), (Words{"file", "x", ""}));
}

TEST(SplitWords, RefusesOpenQuotesAndUnknownEscapes) {
    std::vector<std::string> words;
    EXPECT_FALSE(splitWords("box \"open", words));
    EXPECT_FALSE(splitWords("box \"\\q\"", words));
    EXPECT_FALSE(splitWords("box \"\\", words));
    EXPECT_FALSE(splitWords("box \"\\x4\"", words));
    EXPECT_FALSE(splitWords("box \"\\xg1\"", words));
}

TEST(JoinWords, IsTakenApartAgain) {
    const std::vector<std::string> words = {"card", "a b", "", "\"q\"", "C:\\x", "line\nend\t\x1b",
                                            "#1"};
    EXPECT_EQ(split(joinWords(words)), words);
}

TEST(ParseTime, NeedsAUnit) {
    int milliseconds = 0;
    EXPECT_TRUE(parseTime("2s", milliseconds));
    EXPECT_EQ(milliseconds, 2000);
    EXPECT_TRUE(parseTime("0.25s", milliseconds));
    EXPECT_EQ(milliseconds, 250);
    EXPECT_TRUE(parseTime("300ms", milliseconds));
    EXPECT_EQ(milliseconds, 300);
    for (const char* wrong : {"", "2", "s", "-1s", "2 s", "2m"}) {
        EXPECT_FALSE(parseTime(wrong, milliseconds)) << wrong;
    }
}

struct Completed {
    Words words;
    Words expected;  // all of these are offered
};
TEST(Completion, OffersVerbsOptionsAndNames) {
    const Completed kCases[] = {{{}, {"boot", "kill", "scenario"}},
                                {{"key"}, {"play", "next", "prev"}},
                                {{"boot"}, {"--pip", "--panel", "--late"}},
                                {{"card"}, {"insert", "change", "remove", "make"}},
                                {{"card", "insert"}, {"--own"}},
                                {{"drive"}, {"off", "--chart"}}};
    for (const Completed& each : kCases) {
        const Words offered = completions(each.words);
        for (const std::string& word : each.expected) {
            EXPECT_EQ(std::ranges::count(offered, word), 1)
                << joinWords(each.words) << ": " << word;
        }
    }
    EXPECT_TRUE(completions({"key", "play"}).empty());
}

TEST(Verbs, SayTheirUsageInTheHelpOfAll) {
    const std::string all = overview();
    for (const Verb& verb : verbs()) {
        EXPECT_NE(all.find("\n  " + std::string(verb.name)), std::string::npos) << verb.name;
        EXPECT_NE(helpOf(verb).find(verb.help), std::string::npos) << verb.name;
    }
}

TEST(Deeds, OfAWrongWordAreNone) {
    EXPECT_THROW(parseDeed({"key", "stop"}), Failure);
    EXPECT_THROW(parseDeed({"nothing"}), Failure);
    const Deed deed = parseDeed({"key", "next"});
    EXPECT_TRUE(deed.run);
    EXPECT_EQ(deed.words, Words{"next"});
}

class ScenarioFile : public testing::Test {
protected:
    void SetUp() override {
        path_ = fs::temp_directory_path() / ("headunit-test-" + std::to_string(getpid()) + ".scn");
    }
    void TearDown() override { fs::remove(path_); }

    // The reason of the refusal without the file's folder; empty when the scenario is taken.
    std::string check(const std::string& text) {
        std::ofstream(path_, std::ios::trunc) << text;
        std::string why;
        sections_ = readScenario(path_, why);
        const std::string head = path_.string() + ":";
        return sections_ ? "" : (why.starts_with(head) ? why.substr(head.size()) : why);
    }

    fs::path path_;
    std::optional<std::vector<Section>> sections_;
};

TEST_F(ScenarioFile, IsReadInSections) {
    ASSERT_EQ(check("# a journey\n\nboot --pip\nsection second\nkey play\nexpect no box\n"), "");
    ASSERT_EQ(sections_->size(), 2U);
    EXPECT_EQ(sections_->at(0).steps.at(0).line, 3);
    EXPECT_EQ(sections_->at(1).name, "second");
    EXPECT_EQ(sections_->at(1).steps.size(), 2U);
}

struct Wrong {
    const char* name;
    const char* text;
    const char* begins;  // what the reason begins with, the line's number first
};
class WrongScenario : public ScenarioFile, public testing::WithParamInterface<Wrong> {};

TEST_P(WrongScenario, IsRefusedWithItsLine) {
    const std::string why = check(GetParam().text);
    EXPECT_EQ(why.substr(0, std::string(GetParam().begins).size()), GetParam().begins) << why;
}

INSTANTIATE_TEST_SUITE_P(
    Scenario, WrongScenario,
    testing::Values(
        Wrong{"Verb", "boot\nexpct box\n", "2: there is no verb \"expct\""},
        Wrong{"Point", "touch 1220 0\n",
              "1: X must be a number from 0 to 1219; usage: headunit touch X Y"},
        Wrong{"Key", "\nkey stop\n",
              "2: the word must be play, next or prev; usage: headunit key play|next|prev"},
        Wrong{"Number", "send MSG_SystemBroadcast one 1\n", "1: WPARAM must be a number from"},
        Wrong{"Volume", "card insert CDROM\n",
              "1: VOLUME must be SDMMCDisk, SDMMCDisk2, USB, USB2, USB3 or USB4; usage: headunit "
              "card insert "},
        Wrong{"BootOption", "boot --fast\n", "1: "},
        Wrong{"Subject", "expect miracle\n", "1: nothing can be expected of \"miracle\""},
        Wrong{"Time", "expect box within 3\n", "1: \"3\" is no time"},
        Wrong{"FaultName", "fault NulDecoder 1\n", "1: NAME must be one of AllocationFails, "},
        Wrong{"FaultNumber", "fault RenderResult abc\n",
              "1: NUMBER must be a number from 0 to 4294967295, or off; usage: headunit fault NAME "
              "NUMBER|off"},
        Wrong{"FaultLimit", "fault DirectoryOrder 5\n",
              "1: NUMBER must be a number from 0 to 4, or off"},
        Wrong{"Speed", "drive -3\n",
              "1: KMH must be a number from 0 to 400, or off; usage: headunit drive"},
        Wrong{"KeyName", "press NoSuchKey\n", "1: KEY must be one of Tab, Return"},
        Wrong{"Picture", "shot x.gif\n",
              "1: FILE.png must end in .png; usage: headunit shot FILE.png"},
        Wrong{"Recording", "record a.mp4 10\n", "1: FILE.avi must end in .avi, or off"},
        Wrong{"Missing", "send MSG_SystemBroadcast 1\n",
              "1: LPARAM is required; usage: headunit send"},
        Wrong{"Fails", "fails drive one\n", "1: KMH must be a number from 0 to 400, or off"},
        Wrong{"TooMany", "fails drive 1 two\n", "1: too much: two"},
        Wrong{"FailsVerb", "fails fly\n", "1: there is no verb \"fly\""},
        Wrong{"FailsAlone", "fails\n", "1: fails needs a verb"},
        Wrong{"MessageName", "expect no message MSG_Typo * *\n",
              "1: \"expect message\" does not take"},
        Wrong{"ResultName", "expect result 0 MSG_Typo 0 0\n", "1: \"expect result\" does not take"},
        Wrong{"Answer", "expect answer okay\n", "1: \"expect answer\" does not take"},
        Wrong{"StateName", "expect state playstate=none\n", "1: \"expect state\" does not take"},
        Wrong{"MessageNumber", "expect message MSG_SystemBroadcast x 0\n",
              "1: \"expect message\" does not take"},
        Wrong{"Colour", "expect pixel 1 1 red\n", "1: \"expect pixel\" does not take"},
        Wrong{"Area", "expect moving 10 10 10 20\n", "1: \"expect moving\" does not take"},
        Wrong{"State", "expect state playState\n", "1: \"expect state\" does not take"},
        Wrong{"Loud", "expect loud now\n", "1: \"expect loud\" does not take"},
        Wrong{"Connect", "connect\n", "1: FOLDER is required; usage: headunit connect"},
        Wrong{"Mode", "expect mode 5\n", "1: \"expect mode\" does not take"},
        Wrong{"Filter", "expect filter a output rect\n", "1: \"expect filter\" does not take"},
        Wrong{"Wait", "wait 2s\n", "1: wait needs a time and what passes in it"},
        Wrong{"File", "put no-such-file.avi /USB/a.avi\n", "1: there is no no-such-file.avi"},
        Wrong{"Field", "movie.dat loudness=3\n", "1: Movie.dat has no field"},
        Wrong{"Quote", "boot\nexpect box \"open\n", "2: a quote is not closed"},
        Wrong{"Scenario", "scenario other.scn\n", "1: \"scenario\" cannot be used"},
        Wrong{"Empty", "# nothing\n", "1: the scenario is empty"}),
    [](const auto& tested) { return tested.param.name; });

TEST(Scenario, MissingFileIsSaidSo) {
    std::string why;
    EXPECT_FALSE(readScenario("/nonexistent/a.scn", why));
    EXPECT_EQ(why, "there is no scenario /nonexistent/a.scn");
}

class TapeLine : public testing::Test {
protected:
    TapeLine() {
        stage_.unit.device =
            fs::temp_directory_path() / ("headunit-test-" + std::to_string(getpid()));
        fs::create_directories(stage_.unit.run());
        std::ofstream(stage_.unit.tape())
            << R"({"ms": 1, "kind": "filter", "filter": "TCC Video Renderer", "what": "output", )"
            << R"("rect": [801, -1, 811, 491], "enabled": 1})" << '\n'
            << R"({"ms": 2, "kind": "post", "from": "Video", "to": "Processmanager", )"
            << R"("message": "MSG_MovietoProcessManager", "wParam": 5, "lParam": 0})" << '\n';
    }
    ~TapeLine() override { fs::remove_all(stage_.unit.device); }

    // Whether "expect filter ..." with these words and the short patience is met.
    bool met(const std::string& words) {
        stage_.used.clear();
        std::string why;
        return parseExpect(split("expect " + words + " within 1ms"), {})(stage_, why);
    }

    Stage stage_;
};

TEST_F(TapeLine, OfAFilterIsMetByNameWhatAndEveryValueGiven) {
    for (const char* words :
         {"filter \"TCC Video Renderer\" output", "filter \"TCC Video Renderer\" output enabled 1",
          "filter \"TCC Video Renderer\" output enabled 0x1 rect 801,-1,811,491",
          "filter \"TCC Video Renderer\" output rect 801,*,811,491",
          "no filter \"TCC Video Renderer\" output enabled 0"}) {
        EXPECT_TRUE(met(words)) << words;
    }
    for (const char* words : {"filter other output", "filter \"TCC Video Renderer\" key",
                              "filter \"TCC Video Renderer\" output layer 10",
                              "filter \"TCC Video Renderer\" output enabled 0",
                              "filter \"TCC Video Renderer\" output enabled 1 rect 801,-1,811,490",
                              "filter \"TCC Video Renderer\" output rect 801,-1,811",
                              "filter \"TCC Video Renderer\" output rect 801,-1,811,491,0",
                              "no filter \"TCC Video Renderer\" output enabled 1"}) {
        EXPECT_FALSE(met(words)) << words;
    }
}

TEST_F(TapeLine, OfAMessageIsMetByAnyNameToo) {
    for (const char* words : {"message MSG_MovietoProcessManager 5 0", "message * 5 0",
                              "message * * * to Processmanager", "no message * * * from Orvi"}) {
        EXPECT_TRUE(met(words)) << words;
    }
    for (const char* words : {"message MSG_SystemBroadcast 5 0", "message * 4 0",
                              "message * * * to Orvi", "no message * * *"}) {
        EXPECT_FALSE(met(words)) << words;
    }
}

}  // namespace
}  // namespace headunit
