#include "golden.h"

#include <gtest/gtest.h>

#include <string>

extern bool updateGolden;

namespace ui_test {

void expectGolden(const Picture& actual, const char* name, int width) {
    const std::string narrow = name;
    const std::wstring wide(narrow.begin(), narrow.end());
    if (updateGolden) {
        EXPECT_TRUE(actual.save(GOLDEN_FOLDER + wide + L".png", width)) << name;
        return;
    }
    Picture golden, difference;
    if (!golden.load(GOLDEN_FOLDER + wide + L".png", width)) {
        ADD_FAILURE() << "no golden picture " << name;
        return;
    }
    std::string where;
    const int different = compare(actual, golden, width, difference, where);
    EXPECT_EQ(different, 0) << name << ": first at " << where << "; see " << name
                            << "_actual.png and _difference.png beside the test program";
    if (different != 0) {
        actual.save(ACTUAL_FOLDER + wide + L"_actual.png", width);
        difference.save(ACTUAL_FOLDER + wide + L"_difference.png", width);
    }
}

}  // namespace ui_test
