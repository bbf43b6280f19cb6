#include <gtest/gtest.h>

#include "simulator/command/json.h"

namespace {

struct Case {
    const char* name;
    const char* text;
    bool valid;
};

class JsonText : public testing::TestWithParam<Case> {};

TEST_P(JsonText, IsTakenOrRefused) {
    EXPECT_EQ(json::parse(GetParam().text).has_value(), GetParam().valid);
}

INSTANTIATE_TEST_SUITE_P(
    Json, JsonText,
    testing::Values(Case{"EmptyObject", "{}", true}, Case{"EmptyArray", " [ ] ", true},
                    Case{"Nested", R"({"a": [1, {"b": null}], "c": true})", true},
                    Case{"Nothing", "", false}, Case{"OpenObject", "{", false},
                    Case{"OpenText", "\"abc", false}, Case{"OpenEscape", "\"abc\\", false},
                    Case{"ShortEscape", "\"\\u12\"", false}, Case{"BadEscape", "\"\\q\"", false},
                    Case{"MissingColon", R"({"a" 1})", false}, Case{"TrailingComma", "[1,]", false},
                    Case{"TwoValues", "1 2", false}, Case{"NoNumber", "-", false},
                    Case{"Word", "nul", false},
                    Case{"TooDeep", "[[[[[[[[[[[[[[[[[[1]]]]]]]]]]]]]]]]]]", false}),
    [](const auto& tested) { return tested.param.name; });

TEST(Json, GivesMembersByName) {
    const auto value =
        json::parse(R"({"kind": "post", "wParam": -7, "text": "한글\n\"q\" \u00e9"})");
    ASSERT_TRUE(value);
    EXPECT_EQ(value->textOf("kind"), "post");
    EXPECT_EQ(value->numberOf("wParam", 0), -7);
    EXPECT_EQ(value->numberOf("lParam", 5), 5);
    EXPECT_EQ(value->textOf("text"), "한글\n\"q\" \u00e9");
    EXPECT_EQ(value->find("nothing"), nullptr);
}

TEST(Json, QuotesWhatItReads) {
    const std::string text = "a \"b\" \\ \n \r \x01 한글";
    const auto value = json::parse(json::quoted(text));
    ASSERT_TRUE(value);
    EXPECT_EQ(value->text, text);
}

}  // namespace
