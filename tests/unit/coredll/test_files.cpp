// Files and folders of the unit, as the player's own reading, writing and listing meets them. The
// unit's root is the drive of the current folder.
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <string>

#include "platform/file.h"
#include "platform/folder.h"
#include "platform/wide.h"

namespace {

using platform::utf16;

constexpr wchar_t kFolder[] = L"\\coredll-test";

class Files : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(SetCurrentDirectoryW(L"H:\\"));
        ASSERT_TRUE(CreateDirectoryW(L"H:\\coredll-test", nullptr));
    }
    void TearDown() override {
        DeleteFileW(L"H:\\coredll-test\\large");
        DeleteFileW(L"H:\\coredll-test\\one");
        RemoveDirectoryW(L"H:\\coredll-test\\inner");
        EXPECT_TRUE(RemoveDirectoryW(L"H:\\coredll-test"));
    }

    static std::u16string listed(const wchar_t* folder, bool& any) {
        std::u16string names;
        any = platform::walkFolder(
            utf16(folder),
            [](void* context, const char16_t* name, platform::EntryKind) {
                *static_cast<std::u16string*>(context) += std::u16string(name) + u"/";
                return true;
            },
            &names);
        return names;
    }
};

TEST_F(Files, AnEmptyFolderHasNoEntries) {
    bool any = true;
    EXPECT_EQ(u"", listed(kFolder, any));
    EXPECT_FALSE(any);
}

TEST_F(Files, NeitherTheFolderItselfNorItsParentIsAnEntry) {
    ASSERT_TRUE(platform::ensureFolder(u"\\coredll-test\\inner"));
    ASSERT_TRUE(platform::writeFile(u"\\coredll-test\\one", {}));
    bool any = false;
    EXPECT_EQ(u"inner/one/", listed(kFolder, any));
    EXPECT_TRUE(any);
}

TEST_F(Files, APathWithoutBackslashBeginsAtTheRoot) {
    ASSERT_TRUE(CreateDirectoryW(L"H:\\coredll-test\\inner", nullptr));
    ASSERT_TRUE(SetCurrentDirectoryW(L"H:\\coredll-test\\inner"));
    EXPECT_TRUE(platform::writeFile(u"coredll-test\\one", {}));
    EXPECT_EQ(1, platform::pathKind(u"\\coredll-test\\one"));
    EXPECT_EQ(2, platform::pathKind(u"coredll-test"));
    EXPECT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(L"H:\\coredll-test\\one"));
    ASSERT_TRUE(SetCurrentDirectoryW(L"H:\\"));
}

// The low half of this size is the number that stands for a failure, and the last error is what an
// earlier call has left.
TEST_F(Files, AFileOfFourGibibytesLessOneHasASizeAndAnEnd) {
    const HANDLE file = CreateFileW(L"H:\\coredll-test\\large", GENERIC_WRITE, 0, nullptr,
                                    CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, file);
    LONG high = 0;
    SetFilePointer(file, -1, &high, FILE_BEGIN);  // 0x0'FFFFFFFF
    ASSERT_TRUE(SetEndOfFile(file));
    CloseHandle(file);

    std::uint32_t error = 0;
    const auto large = platform::openFile(u"\\coredll-test\\large", error);
    ASSERT_NE(nullptr, large);
    constexpr std::uint64_t kSize = 0xFFFFFFFF;
    std::uint64_t size = 0;
    SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_TRUE(large->size(size));
    EXPECT_EQ(kSize, size);
    std::array<std::uint8_t, 4> bytes{};
    std::size_t read = 99;
    SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_TRUE(large->readAt(kSize, bytes, read));
    EXPECT_EQ(0u, read);
    SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_TRUE(large->readAt(kSize - 1, bytes, read));
    EXPECT_EQ(1u, read);
}

}  // namespace
