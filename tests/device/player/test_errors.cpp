// The debug output for a file that could not be rendered.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "player/player.h"

namespace {

std::string debugOutput;  // collected from this process's own debug strings

// A debug string is raised as an exception with its length and its address.
LONG CALLBACK collect(EXCEPTION_POINTERS* raised) {
    constexpr DWORD kWideDebugString = 0x4001000A, kDebugString = 0x40010006;
    const EXCEPTION_RECORD& record = *raised->ExceptionRecord;
    if (record.ExceptionCode == kWideDebugString) {
        for (const auto* c = reinterpret_cast<const wchar_t*>(record.ExceptionInformation[1]);
             *c != L'\0'; ++c) {
            debugOutput += static_cast<char>(*c);
        }
        return EXCEPTION_CONTINUE_EXECUTION;
    }
    if (record.ExceptionCode == kDebugString) {
        debugOutput += reinterpret_cast<const char*>(record.ExceptionInformation[1]);
        return EXCEPTION_CONTINUE_EXECUTION;
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

std::string reported(long result, int flag) {
    debugOutput.clear();
    void* const handler = AddVectoredExceptionHandler(1, collect);
    EXPECT_EQ(Player::reportRenderError(result, flag), 0);
    RemoveVectoredExceptionHandler(handler);
    return debugOutput;
}

TEST(RenderErrors, ShowTheirNumberInPlaceOfTheResult) {
    constexpr char kFail[] =
        "[TCMovieManager]Render File Error : [E_FAIL]Unspecified error(0x4d8)\n";
    EXPECT_EQ(reported(E_FAIL, 1), kFail);
    EXPECT_EQ(reported(E_FAIL, 0), kFail);
    EXPECT_EQ(reported(E_OUTOFMEMORY, 1),
              "[TCMovieManager]Render File Error : [E_OUTOFMEMORY]Ran out of memory(0x4c0)\n");
}

TEST(RenderErrors, OthersAndSuccessSayNothing) {
    for (const unsigned long result : {0x00000000ul, 0x00000001ul, 0x00040242ul, 0x80004006ul,
                                       0x80040209ul, 0x8007000Ful, 0xFFFFFFFFul}) {
        EXPECT_EQ(reported(static_cast<long>(result), 1), "") << std::hex << result;
    }
}

}  // namespace
