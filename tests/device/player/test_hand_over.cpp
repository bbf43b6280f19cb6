// The dash camera's folder in the registry.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/wide.h"
#include "settings/hand_over.h"

namespace {

constexpr wchar_t kKey[] = L"SOFTWARE\\BLACKBOX";
constexpr wchar_t kValue[] = L"ConnectPath";

class HandOver : public ::testing::Test {
protected:
    void TearDown() override {
        RegDeleteKeyW(HKEY_LOCAL_MACHINE, kKey);
        RemoveDirectoryW((folder_ + L"\\inside").c_str());
        RemoveDirectoryW(folder_.c_str());
    }

    // Registers a folder of so many characters that holds something.
    void handOver(std::size_t length) {
        folder_ = L"F" + std::wstring(length - 1, L'o');
        CreateDirectoryW(folder_.c_str(), nullptr);
        ASSERT_NE(CreateDirectoryW((folder_ + L"\\inside").c_str(), nullptr), 0) << length;
        write(folder_);
    }

    static void write(const std::wstring& text) {
        ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, kKey, kValue, REG_SZ, text.c_str(),
                                  static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))),
                  ERROR_SUCCESS);
    }

    static bool stillThere() {
        return RegGetValueW(HKEY_LOCAL_MACHINE, kKey, kValue, RRF_RT_REG_SZ, nullptr, nullptr,
                            nullptr) == ERROR_SUCCESS;
    }

    std::wstring folder_ = L"none";
    std::int32_t connectMode_ = 7;
    char16_t connectPath_[platform::kPathCapacity] = {u'x'};
};

TEST_F(HandOver, IsTakenOnceWhateverTheLengthOfItsPath) {
    for (const std::size_t length : {1u, 129u, 130u, 131u, 240u}) {
        handOver(length);
        settings::ReadConnectPath(connectMode_, connectPath_);
        EXPECT_EQ(connectMode_, 1) << length;
        EXPECT_EQ(platform::wide(connectPath_), folder_) << length;
        EXPECT_FALSE(stillThere()) << length;
        settings::ReadConnectPath(connectMode_, connectPath_);
        EXPECT_EQ(connectMode_, 0);
        EXPECT_EQ(connectPath_[0], u'\0');
        RemoveDirectoryW((folder_ + L"\\inside").c_str());
        RemoveDirectoryW(folder_.c_str());
    }
}

TEST_F(HandOver, StaysWhenItsFolderIsEmptyMissingOrTooLong) {
    CreateDirectoryW(L"EmptyFolder", nullptr);
    for (const std::wstring& path :
         {std::wstring(L"EmptyFolder"), std::wstring(L"Missing"), std::wstring(300, L'o')}) {
        write(path);
        settings::ReadConnectPath(connectMode_, connectPath_);
        EXPECT_EQ(connectMode_, 0);
        EXPECT_TRUE(stillThere());
        EXPECT_EQ(platform::wide(connectPath_), path.size() < 260 ? path : L"");
    }
    RemoveDirectoryW(L"EmptyFolder");
}

}  // namespace
