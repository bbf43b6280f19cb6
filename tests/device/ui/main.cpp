// test_screens [--update-golden]: with it the golden pictures are written instead of compared.
// In continuous integration (CI=true) they are never written: exit status 2.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

bool updateGolden = false;

int main(int count, char** words) {
    testing::InitGoogleTest(&count, words);
    updateGolden = count > 1 && std::strcmp(words[1], "--update-golden") == 0;
    const char* integration = std::getenv("CI");
    if (updateGolden && integration != nullptr && std::strcmp(integration, "true") == 0) {
        std::fputs("test_screens: golden pictures are not written in CI; look at them first\n",
                   stderr);
        return 2;
    }
    CoInitializeEx(nullptr, 0);
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
