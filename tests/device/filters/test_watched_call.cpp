// A call that never returns is left behind, one that is only slow is not.
#include <gtest/gtest.h>

#include <memory>

#include "simulator/filters/watched_call.h"

namespace test {
namespace {

struct Shared {
    std::atomic<unsigned> progress = 0;
    std::atomic<bool> done = false;
    HANDLE never = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ~Shared() { CloseHandle(never); }
};

TEST(WatchedCall, ReturnsWhenTheCallDoes) {
    const auto shared = std::make_shared<Shared>();
    EXPECT_TRUE(filters::callWatched([shared] { shared->done = true; }, shared->progress, 500));
    EXPECT_TRUE(shared->done);
}

TEST(WatchedCall, WaitsAsLongAsThereIsProgress) {
    const auto shared = std::make_shared<Shared>();
    const auto work = [shared] {
        for (int i = 0; i < 15; ++i) {
            Sleep(100);
            ++shared->progress;
        }
        shared->done = true;
    };
    EXPECT_TRUE(filters::callWatched(work, shared->progress, 700));
    EXPECT_TRUE(shared->done);
}

TEST(WatchedCall, LeavesBehindWhatNeverReturns) {
    const auto shared = std::make_shared<Shared>();
    const auto work = [shared] {
        WaitForSingleObject(shared->never, INFINITE);
        shared->done = true;
    };
    EXPECT_FALSE(filters::callWatched(work, shared->progress, 500));
    EXPECT_FALSE(shared->done);
    // What the call uses lives on until it returns after all.
    SetEvent(shared->never);
    for (int i = 0; i < 100 && !shared->done; ++i) {
        Sleep(20);
    }
    EXPECT_TRUE(shared->done);
}

}  // namespace
}  // namespace test
