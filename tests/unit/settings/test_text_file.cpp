// Text files as the system hands them out: read to an error, written in one piece.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <string>

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
    platform::TextReader folder(u"Data");  // can be opened, not read
    ASSERT_TRUE(folder.ok());
    EXPECT_FALSE(folder.next(character));
    EXPECT_TRUE(folder.failed());
}

// Calls of write(2) that this process has made.
long writeCalls() {
    std::ifstream io("/proc/self/io");
    std::string name;
    for (long count = 0; io >> name >> count;) {
        if (name == "syscw:") {
            return count;
        }
    }
    return -1;
}

TEST_F(TextFile, IsWrittenInOnePiece) {
    std::u16string text(100000, u'x');
    text[5] = u'\n';
    ASSERT_GE(writeCalls(), 0);
    const long before = writeCalls();
    EXPECT_TRUE(platform::writeTextFile(u"a.txt", {text}));
    EXPECT_EQ(writeCalls() - before, 1);
    EXPECT_EQ(contents("a.txt").size(), 100001u);
    EXPECT_EQ(contents("a.txt").substr(0, 9), "xxxxx\r\nxx");
}

// The rights of nobody, where the tests run with all rights.
class AsNobody {
public:
    AsNobody() : root_(geteuid() == 0) {
        constexpr uid_t kNobody = 65534;
        EXPECT_TRUE(!root_ || seteuid(kNobody) == 0);
    }
    ~AsNobody() { EXPECT_TRUE(!root_ || seteuid(0) == 0); }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;

private:
    bool root_;
};

TEST_F(TextFile, OfOtherProgramsThatMayNotBeReadIsLeftAlone) {
    const std::string text = "[Sound]\r\nMUTE=1\r\n";
    put("Config.ini", text);
    ASSERT_EQ(chmod(root_.c_str(), 0777), 0);
    ASSERT_EQ(chmod((root_ / "Config.ini").c_str(), 0222), 0);  // written it may be
    {
        const AsNobody nobody;
        ASSERT_FALSE(std::ifstream(root_ / "Config.ini").is_open());
        ASSERT_TRUE(std::ofstream(root_ / "Config.ini", std::ios::app).is_open());
        EXPECT_EQ(settings::writeIniInt(u"MISC", u"DMB", 1, u"Config.ini"), 0);
        EXPECT_EQ(settings::readIniInt(u"Sound", u"MUTE", 7, u"Config.ini"), 7);
    }
    ASSERT_EQ(chmod((root_ / "Config.ini").c_str(), 0666), 0);
    EXPECT_EQ(contents("Config.ini"), text);
}

// A storage on which no file may grow beyond some bytes.
class SmallStorage {
public:
    explicit SmallStorage(rlim_t bytes) {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &before_), 0);
        handler_ = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit small = {bytes, before_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    }
    ~SmallStorage() {
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &before_), 0);
        std::signal(SIGXFSZ, handler_);
    }
    SmallStorage(const SmallStorage&) = delete;
    SmallStorage& operator=(const SmallStorage&) = delete;

private:
    rlimit before_{};
    void (*handler_)(int) = nullptr;
};

TEST_F(TextFile, KeepsWhatWasThereWhenTheNewTextHasNoRoom) {
    const std::string text = "[Sound]\r\nMUTE=1\r\n";
    put("Config.ini", text);
    const SmallStorage storage(text.size() + 3);
    EXPECT_FALSE(platform::writeTextFile(u"other.txt", {std::u16string(100, u'x')}));
    EXPECT_EQ(settings::writeIniInt(u"MISC", u"DMB", 1, u"Config.ini"), 0);
    EXPECT_EQ(contents("Config.ini"), text);
}

}  // namespace
