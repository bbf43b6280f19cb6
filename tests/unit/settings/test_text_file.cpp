// A text file whose reading fails: a folder can be opened, not read.
#include <gtest/gtest.h>

#include "platform/text_file.h"
#include "settings/ini_store.h"
#include "tests/unit/support/unit_folder.h"

namespace {

class TextFile : public test::UnitFolder {};

TEST_F(TextFile, TellsAFailedReadFromItsEnd) {
    put("Data/a.txt", "a");
    char16_t character = 0;
    platform::TextReader whole(u"Data\\a.txt");
    ASSERT_TRUE(whole.ok());
    EXPECT_TRUE(whole.next(character));
    EXPECT_FALSE(whole.next(character));
    EXPECT_FALSE(whole.failed());
    platform::TextReader folder(u"Data");
    ASSERT_TRUE(folder.ok());
    EXPECT_FALSE(folder.next(character));
    EXPECT_TRUE(folder.failed());
    EXPECT_EQ(settings::writeIniInt(u"MISC", u"DMB", 1, u"Data"), 0);
}

}  // namespace
