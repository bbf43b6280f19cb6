// The tests run in the apartment that the player uses.
#include <gtest/gtest.h>
#include <objbase.h>

#include <cstdio>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    // Left without the end of the media library, as in main_leaving.cpp.
    std::fflush(nullptr);
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(result));
    return result;
}
