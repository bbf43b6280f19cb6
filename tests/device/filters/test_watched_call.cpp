// A call that never returns is left behind, one that is only slow is not.
#include <gtest/gtest.h>

#include <memory>

#include "simulator/filters/watched_call.h"

namespace test {
namespace {

using filters::callWatched;
using filters::Patience;

struct Shared {
    filters::Activity activity;
    std::atomic<bool> done = false;
    HANDLE never = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ~Shared() { CloseHandle(never); }
};

class WatchedCall : public testing::Test {
protected:
    // Whether a call that never returns was waited for, and for how long.
    DWORD waitFor(const Patience& patience) {
        const auto work = [shared = shared] {
            WaitForSingleObject(shared->never, INFINITE);
            shared->done = true;
        };
        const DWORD begun = GetTickCount();
        EXPECT_FALSE(callWatched(work, shared->activity, patience));
        return GetTickCount() - begun;
    }

    const std::shared_ptr<Shared> shared = std::make_shared<Shared>();
    static constexpr DWORD kLong = 60'000;
};

TEST_F(WatchedCall, ReturnsWhenTheCallDoes) {
    EXPECT_TRUE(callWatched([shared = shared] { shared->done = true; }, shared->activity, {}));
    EXPECT_TRUE(shared->done);
}

TEST_F(WatchedCall, WaitsAsLongAsThereAreSteps) {
    const auto work = [shared = shared] {
        for (int i = 0; i < 15; ++i) {
            Sleep(100);
            ++shared->activity.steps;
        }
        shared->done = true;
    };
    EXPECT_TRUE(callWatched(work, shared->activity, {700, 700, 700, kLong}));
    EXPECT_TRUE(shared->done);
}

TEST_F(WatchedCall, LeavesBehindWhatNeverReturns) {
    EXPECT_GE(waitFor({500, kLong, 10'000, kLong}), 500u);
    EXPECT_FALSE(shared->done);
    // What the call uses lives on until it returns after all.
    SetEvent(shared->never);
    while (!shared->done) {
        Sleep(20);
    }
}

TEST_F(WatchedCall, IsLessPatientOnceAReadHasFailed) {
    shared->activity.failed = true;
    EXPECT_LT(waitFor({kLong, 300, kLong, kLong}), kLong);
}

TEST_F(WatchedCall, IsMorePatientWithAReadUnderWay) {
    shared->activity.reading = 1;
    EXPECT_GE(waitFor({100, 100, 900, kLong}), 900u);
}

TEST_F(WatchedCall, DoesNotTakeWorkOfTheProcessorForAnAnswer) {
    const auto work = [shared = shared] {
        while (!shared->done) {
        }
    };
    EXPECT_FALSE(callWatched(work, shared->activity, {kLong, kLong, 800, kLong}));
    shared->done = true;
}

TEST_F(WatchedCall, EndsEvenWhileThereAreSteps) {
    const auto work = [shared = shared] {
        while (!shared->done) {
            ++shared->activity.steps;
            Sleep(10);
        }
    };
    EXPECT_FALSE(callWatched(work, shared->activity, {kLong, kLong, kLong, 600}));
    shared->done = true;
}

}  // namespace
}  // namespace test
