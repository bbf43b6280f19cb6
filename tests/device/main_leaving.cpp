// The end of a test program that has had Wine's media library in it. A stream whose opening never
// ended leaves threads behind in the library, which may fall when they are ended inside of it at
// the process's end; the tests have all been judged by then. The process is left without that end.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>

int main(int count, char** words) {
    testing::InitGoogleTest(&count, words);
    const int result = RUN_ALL_TESTS();
    std::fflush(nullptr);
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(result));
    return result;
}
