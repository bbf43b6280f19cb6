// What Windows CE does differently from a desktop: windows, processes, libraries, the registry,
// memory.
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "platform/unit_api.h"
#include "simulator/coredll/unit.h"

namespace {

constexpr wchar_t kKey[] = L"SOFTWARE\\CoredllTest";

TEST(System, AWindowHasNoCaptionThatWasNotAskedFor) {
    WNDCLASSW description{};
    description.lpfnWndProc = DefWindowProcW;
    description.lpszClassName = L"coredll test";
    ASSERT_NE(0, RegisterClassW(&description));
    const HWND window = CreateWindowExW(0, L"coredll test", L"", WS_VISIBLE, 10, 20, 300, 200,
                                        nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(nullptr, window);
    RECT client{}, whole{};
    GetClientRect(window, &client);
    GetWindowRect(window, &whole);
    EXPECT_EQ(300, client.right);
    EXPECT_EQ(200, client.bottom);
    EXPECT_EQ(10, whole.left);
    EXPECT_EQ(20, whole.top);
    DestroyWindow(window);
}

TEST(System, AProcessTakesNothingThatAUnitDoesNotHave) {
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    constexpr wchar_t kProgram[] = L"C:\\windows\\system32\\rundll32.exe";
    EXPECT_FALSE(CreateProcessW(kProgram, nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                &start, &process));
    EXPECT_EQ(DWORD{ERROR_INVALID_PARAMETER}, GetLastError());
    EXPECT_FALSE(CreateProcessW(kProgram, nullptr, nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                nullptr, &process));
    ASSERT_TRUE(CreateProcessW(kProgram, nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                               nullptr, &process));
    WaitForSingleObject(process.hProcess, INFINITE);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

TEST(System, ALibraryIsAskedByAWideName) {
    const HMODULE library = GetModuleHandleW(L"kernel32.dll");
    EXPECT_EQ(GetProcAddress(library, "Sleep"), GetProcAddressW(library, L"Sleep"));
    EXPECT_EQ(nullptr, GetProcAddressW(library, L"NoSuchFunction"));
}

TEST(System, AKeyIsDeletedWithItsSubKeys) {
    HKEY key = nullptr;
    ASSERT_EQ(ERROR_SUCCESS,
              RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\CoredllTest\\Inner\\Innermost", 0,
                              nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr));
    RegCloseKey(key);
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteKeyW(HKEY_LOCAL_MACHINE, kKey));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, KEY_READ, &key));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, RegDeleteKeyW(HKEY_LOCAL_MACHINE, kKey));
}

TEST(System, ATextThatDoesNotFitHasNoEnd) {
    std::array<char, 4> text{'#', '#', '#', '#'};
    EXPECT_EQ(-1, _snprintf(text.data(), 3, "%s", "abcdef"));
    EXPECT_EQ('c', text[2]);
    EXPECT_EQ('#', text[3]);
    std::array<wchar_t, 4> wideText{L'#', L'#', L'#', L'#'};
    EXPECT_EQ(-1, _snwprintf(wideText.data(), 3, L"%ls", L"abcdef"));
    EXPECT_EQ(L'c', wideText[2]);
    EXPECT_EQ(L'#', wideText[3]);
}

TEST(System, TheAskedForAllocationFailsAndNoOther) {
    coredllSet(coredll::Setting::AllocationFails, 2);
    const HDC first = CreateCompatibleDC(nullptr);
    const HDC second = CreateCompatibleDC(nullptr);
    const HDC third = CreateCompatibleDC(nullptr);
    EXPECT_NE(nullptr, first);
    EXPECT_EQ(nullptr, second);
    EXPECT_NE(nullptr, third);
    DeleteDC(first);
    DeleteDC(third);
}

}  // namespace
