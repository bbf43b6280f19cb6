// test_screens [--update-golden]: with it the golden pictures are written instead of compared.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>

bool updateGolden = false;

int main(int count, char** words) {
    testing::InitGoogleTest(&count, words);
    updateGolden = count > 1 && std::strcmp(words[1], "--update-golden") == 0;
    CoInitializeEx(nullptr, 0);
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
