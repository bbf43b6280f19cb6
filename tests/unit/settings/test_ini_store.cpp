#include <gtest/gtest.h>

#include <string>

#include "settings/ini_store.h"
#include "tests/unit/support/unit_folder.h"

namespace {

constexpr char16_t kPath[] = u"ResidentFlash2\\Data\\Config.ini";
constexpr char kFile[] = "ResidentFlash2/Data/Config.ini";
constexpr std::int32_t kFallback = -77;

class IniStore : public test::UnitFolder {
protected:
    std::int32_t read(std::string_view text, const char16_t* section = u"MISC",
                      const char16_t* key = u"DMB") {
        put(kFile, text);
        return settings::readIniInt(section, key, kFallback, kPath);
    }

    // Line ends as they are in memory.
    std::string rewritten(std::string_view text, std::int32_t value,
                          const char16_t* section = u"MISC", const char16_t* key = u"DMB") {
        put(kFile, text);
        EXPECT_EQ(settings::writeIniInt(section, key, value, kPath), 1);
        return lines();
    }

    std::string lines() {
        std::string now = contents(kFile);
        for (std::size_t at; (at = now.find("\r\n")) != std::string::npos;) {
            now.erase(at, 1);
        }
        return now;
    }
};

struct ReadCase {
    const char* name;
    std::string_view text;
    std::int32_t expected;
};

TEST_F(IniStore, ReadsWhatTheMachineFinds) {
    using namespace std::string_view_literals;
    const ReadCase cases[] = {
        {"plain", "[MISC]\nDMB=1\n", 1},
        {"line ends of the desktop", "[MISC]\r\nDMB=4\r\n", 4},
        {"second key", "[MISC]\nA=1\nDMB=2\n", 2},
        {"last line without newline is not found", "[MISC]\nDMB=1", kFallback},
        {"blank line hides the next key", "[MISC]\n\nDMB=1\n", kFallback},
        {"key behind the hidden one is found", "[MISC]\n\nA=1\nDMB=3\n", 3},
        {"space before the closing bracket", "[MISC ]\nDMB=1\n", kFallback},
        {"key in lower case", "[MISC]\ndmb=1\n", kFallback},
        {"space before the equals sign", "[MISC]\nDMB =1\n", kFallback},
        {"space behind the equals sign", "[MISC]\nDMB= 1\n", 1},
        {"digits followed by letters", "[MISC]\nDMB=12abc\n", 12},
        {"no digits", "[MISC]\nDMB=abc\n", 0},
        {"empty value", "[MISC]\nDMB=\n", 0},
        {"sign", "[MISC]\nDMB=-5\n", -5},
        {"beyond 32 bits", "[MISC]\nDMB=99999999999\n", 2147483647},
        {"comment line", ";[MISC]\nDMB=1\n", kFallback},
        {"comment in the middle of its line", "; [MISC]\nDMB=1\n", kFallback},
        {"closing bracket in a comment", ";MISC]\nDMB=1\n", kFallback},
        {"comment in the section", "[MISC]\n;DMB=9\nDMB=1\n", 1},
        {"comment without an equals sign", "[MISC]\n;note\nDMB=1\n", 1},
        {"text behind the section header is skipped", "[MISC] DMB=9\nDMB=1\n", 1},
        {"bracket inside a line outside the section opens a name", "x[MISC]\nDMB=6\n", 6},
        {"other section first", "[Sound]\nMUTE=1\n[MISC]\nDMB=8\n", 8},
        {"key of another section", "[Sound]\nDMB=1\n", kFallback},
        {"next section ends the search", "[MISC]\nA=1\n[X]\nDMB=1\n[MISC]\nDMB=2\n", kFallback},
        {"a name may run over line ends", "[MISC]\nA\nDMB=1\n", kFallback},
        {"first of two equal keys", "[MISC]\nDMB=1\nDMB=2\n", 1},
        {"NUL characters", "[MISC]\n\0=1\nDMB=5\n"sv, 5},
        {"empty file", "", kFallback},
    };
    for (const ReadCase& c : cases) {
        EXPECT_EQ(read(c.text), c.expected) << c.name;
    }
}

TEST_F(IniStore, MissingFileGivesTheFallback) {
    EXPECT_EQ(settings::readIniInt(u"MISC", u"DMB", 5, kPath), 5);
}

TEST_F(IniStore, NamesAndValuesAreCutAt127Characters) {
    const std::string name(127, 'k'), tail(40, 'x');
    const std::u16string key(200, u'k');
    EXPECT_EQ(read("[MISC]\n" + name + tail + "=3\n", u"MISC", key.c_str()), 3);
    // The last character that counts, and the first that does not.
    const std::string inKey(126, 'k');
    const std::u16string other = std::u16string(126, u'k') + u"b";
    EXPECT_EQ(read("[MISC]\n" + inKey + "a=4\n", u"MISC", other.c_str()), kFallback);
    EXPECT_EQ(read("[MISC]\n" + inKey + "bc=4\n", u"MISC", (other + u"d").c_str()), 4);
    EXPECT_EQ(read("[" + inKey + "a]\nDMB=5\n", other.c_str()), kFallback);
    EXPECT_EQ(read("[" + inKey + "bc]\nDMB=5\n", (other + u"d").c_str()), 5);
    EXPECT_EQ(read("[MISC]\nDMB=" + std::string(126, '0') + "78\n"), 7);
    EXPECT_EQ(read("[MISC]\nDMB=7" + std::string(500, ' ') + "\n"), 7);
}

struct WriteCase {
    const char* name;
    const char* before;
    const char* after;
};

TEST_F(IniStore, WritesInPlace) {
    const WriteCase cases[] = {
        {"empty file", "", "[MISC]\nDMB=42\n"},
        {"value replaced", "[MISC]\nDMB=1\nA=2\n", "[MISC]\nDMB=42\nA=2\n"},
        {"text behind the value goes", "[MISC]\nDMB=1 ; old\n", "[MISC]\nDMB=42\n"},
        {"value empty before", "[MISC]\nDMB=\n", "[MISC]\nDMB=42\n"},
        {"added before the next section", "[MISC]\nA=1\n[X]\nB=2\n",
         "[MISC]\nA=1\nDMB=42\n[X]\nB=2\n"},
        {"added at the end of the last section", "[X]\n[MISC]\nA=1\n",
         "[X]\n[MISC]\nA=1\nDMB=42\n"},
        {"section added", "[X]\nA=1\n", "[X]\nA=1\n[MISC]\nDMB=42\n"},
        {"newline added first", "[X]\nA=1", "[X]\nA=1\n[MISC]\nDMB=42\n"},
        {"last line without newline gets a second line", "[MISC]\nDMB=1",
         "[MISC]\nDMB=1\nDMB=42\n"},
        {"key behind a blank line gets a second line", "[MISC]\n\nDMB=1\n",
         "[MISC]\n\nDMB=1\nDMB=42\n"},
    };
    for (const WriteCase& c : cases) {
        EXPECT_EQ(rewritten(c.before, 42), c.after) << c.name;
    }
}

// The end of the last line, the section's line and the key's, each name of 127 characters or more.
TEST_F(IniStore, AddsTheLongestSectionKeyAndValueWhole) {
    for (const std::size_t length : {127u, 128u, 300u}) {
        const std::u16string section(length, u's'), key(length, u'k'), value(length, u'v');
        put(kFile, "[X]\nA=1");
        EXPECT_EQ(settings::writeIniString(section.c_str(), key.c_str(), value.c_str(), kPath), 1);
        EXPECT_EQ(lines(), "[X]\nA=1\n[" + std::string(127, 's') + "]\n" + std::string(127, 'k') +
                               "=" + std::string(127, 'v') + "\n");
    }
}

TEST_F(IniStore, WritesAMissingFile) {
    makeFolder("ResidentFlash2/Data");
    EXPECT_EQ(settings::writeIniInt(u"TRIP", u"AppProgram", 5, kPath), 1);
    EXPECT_EQ(settings::readIniInt(u"TRIP", u"AppProgram", 0, kPath), 5);
}

TEST_F(IniStore, WritesEveryInteger) {
    for (const std::int32_t value : {-2147483647 - 1, -1, 0, 2147483647}) {
        EXPECT_EQ(rewritten("", value), "[MISC]\nDMB=" + std::to_string(value) + "\n");
        EXPECT_EQ(settings::readIniInt(u"MISC", u"DMB", kFallback, kPath), value);
    }
}

TEST_F(IniStore, ReportsAFileThatCannotBeWritten) {
    EXPECT_EQ(settings::writeIniInt(u"TRIP", u"AppProgram", 5, u"nowhere\\Config.ini"), 0);
}

TEST_F(IniStore, KeepsEveryOtherByte) {
    std::string korean = "; 설정\r\n[Sound]\r\nMUTE=0\r\n";
    put(kFile, korean + "[MISC]\r\nDMB=0\r\n");
    settings::writeIniInt(u"MISC", u"DMB", 1, kPath);
    EXPECT_EQ(contents(kFile), korean + "[MISC]\r\nDMB=1\r\n");
}

TEST_F(IniStore, SurvivesTenMegabytesWithoutAnEnd) {
    put(kFile, std::string(10 << 20, 'x'));
    EXPECT_EQ(settings::readIniInt(u"MISC", u"DMB", 3, kPath), 3);
    put(kFile, "[MISC]\n" + std::string(10 << 20, 'k') + "=1\nDMB=2\n");
    EXPECT_EQ(settings::readIniInt(u"MISC", u"DMB", 3, kPath), 2);
}

}  // namespace
