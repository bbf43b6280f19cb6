// The player finds its files below the root of the drive it runs on: drive H is a folder of its own
// for each run.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>

int main(int count, char** words) {
    testing::InitGoogleTest(&count, words);
    if (SetCurrentDirectoryW(L"H:\\") == 0) {
        std::fputs("test_player: drive H: is missing; run it by .ci/wine-run\n", stderr);
        return 2;
    }
    return RUN_ALL_TESTS();
}
