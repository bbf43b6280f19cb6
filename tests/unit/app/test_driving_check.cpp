#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "app/driving_check.h"

namespace {

class DrivingCheck : public ::testing::Test {
protected:
    // One second at each speed; the state after each as a row of 0 and 1.
    std::string drive(std::initializer_list<std::int32_t> speeds, std::int32_t dmb = 0) {
        std::string states;
        for (const std::int32_t speed : speeds) {
            const std::int32_t before = block_;
            const int changed = app::driveOneSecond(speed, dmb, counters_, block_);
            EXPECT_EQ(changed, before != block_ ? 1 : 0);
            states += block_ == 1 ? '1' : '0';
        }
        return states;
    }

    app::BlockCounters counters_;
    std::int32_t block_ = 0;
};

TEST_F(DrivingCheck, NoSignalBlocksAfterThreeSeconds) {
    EXPECT_EQ(drive({-1, -1, -1, -1}), "0011");
}

TEST_F(DrivingCheck, FastBlocksAfterThreeSeconds) {
    EXPECT_EQ(drive({20, 20, 20}), "001");
}

TEST_F(DrivingCheck, TenIsFastNineIsNot) {
    EXPECT_EQ(drive({10, 10, 10}), "001");
    block_ = 0;
    counters_ = {};
    EXPECT_EQ(drive({9, 9, 9, 9, 9, 9}), "000000");
}

TEST_F(DrivingCheck, SlowFreesAfterFiveSeconds) {
    drive({20, 20, 20});
    EXPECT_EQ(drive({5, 5, 5, 5, 5}), "11110");
}

TEST_F(DrivingCheck, DeadBandHoldsTheStateAndStartsTheCountsAnew) {
    drive({20, 20, 20});
    EXPECT_EQ(drive({9, 9, 9, 9, 9, 9}), "111111");
    EXPECT_EQ(drive({5, 5, 5, 5, 9, 5, 5, 5, 5, 5}), "1111111110");
}

TEST_F(DrivingCheck, EachStateStartsTheOthersAnew) {
    EXPECT_EQ(drive({20, 20, -1, -1, 20, 20, 5, 20, 20, 20}), "0000000001");
}

TEST_F(DrivingCheck, SignalLossAfterSlowBlocks) {
    EXPECT_EQ(drive({0, 0, 0, 0, 0, -1, -1, -1}), "00000001");
}

TEST_F(DrivingCheck, OtherNegativeValuesAreSlow) {
    drive({20, 20, 20});
    EXPECT_EQ(drive({-2, -2, -2, -2, -2}), "11110");
}

TEST_F(DrivingCheck, SettingSwitchesTheBlockOff) {
    drive({20, 20, 20});
    EXPECT_EQ(drive({20}, 1), "0");
    EXPECT_EQ(drive({20, 20, 20}), "001");  // counted from the start again
    EXPECT_EQ(drive({20, 20, 20, 20}, 2), "0000");
}

}  // namespace
