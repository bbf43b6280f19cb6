// Text of a unit of another country, and text that cannot be read.
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <string>
#include <string_view>

#include "platform/folder.h"
#include "platform/text.h"
#include "settings/ini_store.h"
#include "simulator/coredll/unit.h"

namespace {

using coredll::Setting;
using platform::CodePage;

constexpr DWORD kKorean = 949, kUtf8 = 65001;

class Text : public testing::Test {
protected:
    void TearDown() override {
        coredllSet(Setting::CodePage, 0);
        coredllSet(Setting::UnreadableCharacter, 0);
    }

    template <std::size_t kCapacity>
    static std::u16string decoded(std::string_view bytes) {
        std::array<char16_t, kCapacity> out;
        out.fill(u'#');
        const std::size_t units = platform::decodeText(
            CodePage::System, {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()},
            out);
        EXPECT_LT(units, out.size());
        EXPECT_EQ(u'\0', out[units]);
        return std::u16string(out.data());
    }
};

// "영화" in code page 949 is BF B5 C8 AD.
TEST_F(Text, ACharacterOfTwoBytesIsOne) {
    coredllSet(Setting::CodePage, kKorean);
    EXPECT_EQ(u"영화", decoded<8>("\xBF\xB5\xC8\xAD"));
    EXPECT_EQ(u"a영화b", decoded<8>("a\xBF\xB5\xC8\xAD"
                                    "b"));
    EXPECT_EQ(u"영", decoded<2>("\xBF\xB5\xC8\xAD"));
}

TEST_F(Text, HalfACharacterAtTheEndIsNone) {
    coredllSet(Setting::CodePage, kKorean);
    EXPECT_EQ(u"영", decoded<8>("\xBF\xB5\xC8"));
    EXPECT_EQ(u"", decoded<8>("\xBF"));
    EXPECT_EQ(u"영", decoded<8>(std::string_view("\xBF\xB5\xC8\0\xAD", 5)));
}

// 1024 bytes are looked at; the last of them begins a character.
TEST_F(Text, ALongTextIsNotCutInsideACharacter) {
    coredllSet(Setting::CodePage, kKorean);
    std::string text = "a";
    while (text.size() < 1100) {
        text += "\xBF\xB5";
    }
    EXPECT_EQ(u"a" + std::u16string(511, u'영'), decoded<1100>(text));
}

TEST_F(Text, ASurrogatePairIsNotCut) {
    coredllSet(Setting::CodePage, kUtf8);
    EXPECT_EQ(u"ab\U0001F600", decoded<5>("ab\xF0\x9F\x98\x80"));
    EXPECT_EQ(u"ab", decoded<4>("ab\xF0\x9F\x98\x80"));
}

TEST_F(Text, ASettingsFileThatCannotBeReadToItsEndIsNotWritten) {
    ASSERT_TRUE(SetCurrentDirectoryW(L"H:\\"));
    constexpr char kText[] = "[TRIP]\nAppProgram=1\n[MISC]\nDMB=7\n";
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(kText);
    ASSERT_TRUE(platform::writeFile(u"\\settings.ini", {bytes, sizeof kText - 1}));
    coredllSet(Setting::UnreadableCharacter, 10);
    EXPECT_EQ(0, settings::writeIniInt(u"TRIP", u"AppProgram", 2, u"\\settings.ini"));
    EXPECT_EQ(1, settings::readIniInt(u"TRIP", u"AppProgram", 9, u"\\settings.ini"));
    EXPECT_EQ(7, settings::readIniInt(u"MISC", u"DMB", 9, u"\\settings.ini"));
    EXPECT_EQ(1, settings::writeIniInt(u"TRIP", u"AppProgram", 2, u"\\settings.ini"));
    EXPECT_EQ(2, settings::readIniInt(u"TRIP", u"AppProgram", 9, u"\\settings.ini"));
    EXPECT_TRUE(platform::deleteFile(u"\\settings.ini"));
}

}  // namespace
