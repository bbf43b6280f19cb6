#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "simulator/shared/describe.h"
#include "simulator/shared/json.h"
#include "simulator/shared/messages.h"

namespace headunit {
namespace {

TEST(OneLine, KeepsTheOrderAndPutsBlanks) {
    const Json value = {
        {"ms", 12}, {"kind", "post"}, {"list", {1, "a", nullptr}}, {"none", Json::object()}};
    EXPECT_EQ(oneLine(value), R"({"ms": 12, "kind": "post", "list": [1, "a", null], "none": {}})");
}

TEST(OneLine, WritesWholeNumbersWholeAndNoInfinities) {
    EXPECT_EQ(oneLine(Json(60.0)), "60");
    EXPECT_EQ(oneLine(Json(-0.25)), "-0.25");
    EXPECT_EQ(oneLine(Json(1e300)), "1e+300");
    EXPECT_EQ(oneLine(Json(std::numeric_limits<double>::infinity())), "null");
}

TEST(OneLine, IsReadAgain) {
    const std::string text = "a \"b\" \\ \n \r \x01 한글";
    EXPECT_EQ(parseJson(oneLine(Json(text))), Json(text));
}

TEST(OneLine, ReplacesWhatIsNoUtf8) {
    EXPECT_EQ(oneLine(Json("a\xFFz")), "\"a\xEF\xBF\xBDz\"");
}

TEST(ParseJson, DiscardsWhatIsNone) {
    for (const char* text : {"", "{", "\"abc", R"({"a" 1})", "[1,]", "1 2", "nul"}) {
        EXPECT_TRUE(parseJson(text).is_discarded()) << text;
    }
}

TEST(Members, AreGivenByName) {
    const Json value = parseJson(R"({"kind": "post", "wParam": -7, "text": 3})");
    EXPECT_EQ(textOf(value, "kind"), "post");
    EXPECT_EQ(textOf(value, "text"), "");
    EXPECT_EQ(textOf(value, "nothing"), "");
    EXPECT_EQ(numberOf(value, "wParam", 0), -7);
    EXPECT_EQ(numberOf(value, "kind", 5), 5);
    EXPECT_EQ(numberOf(value, "nothing", 5), 5);
}

TEST(Describe, TellsWhatAMessageMeans) {
    EXPECT_EQ(
        describe(parseJson(R"({"ms": 1500, "kind": "post", "from": "Video", "to": "Processmanager",
                               "message": "MSG_MovietoProcessManager", "wParam": 7, "lParam": 1})")),
        "    1.500  post      Video -> Processmanager  MSG_MovietoProcessManager (7, 1)  ready "
        "to exit");
}

TEST(Describe, QuotesTextsAsScenariosTakeThem) {
    EXPECT_EQ(describe(parseJson(
                  R"({"ms": 1, "kind": "print", "from": "movie.exe", "text": "a\r\n\u0001"})")),
              "    0.001  print     movie.exe  \"a\\r\\n\\x01\"");
}

TEST(Messages, KnowTheirMeanings) {
    const tape::Message* command = tape::findMessage("MSG_ProcessManagertoMovie");
    ASSERT_NE(command, nullptr);
    EXPECT_STREQ(tape::meaningOf(*command, 3, 3), "prepare to exit");
    EXPECT_STREQ(tape::meaningOf(*command, 3, 2), "exit");
    EXPECT_STREQ(tape::meaningOf(*command, 99, 0), "");
    EXPECT_EQ(tape::findMessage("MSG_Unknown"), nullptr);
}

}  // namespace
}  // namespace headunit
