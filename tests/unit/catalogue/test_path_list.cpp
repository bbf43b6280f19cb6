// The list's memory: where it grows, and what stays when there is none.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

#include "catalogue/path_list.h"

namespace {

int allocationsLeft = -1;  // without an end below 0
int allocations = 0;

}  // namespace

void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
    if (allocationsLeft == 0) {
        return nullptr;
    }
    allocationsLeft -= allocationsLeft > 0 ? 1 : 0;
    ++allocations;
    return ::operator new[](bytes);
}

namespace {

class PathListTest : public ::testing::Test {
protected:
    void TearDown() override { allocationsLeft = -1; }

    // Appends "\\USB\\<number>" until `count` are there.
    void fill(std::int32_t count) {
        while (list_.count() < count) {
            ASSERT_TRUE(list_.append(u"\\USB", name(list_.count()).c_str()));
        }
    }

    static std::u16string name(std::int32_t number) {
        const std::string digits = std::to_string(number);
        return {digits.begin(), digits.end()};
    }

    void expectFilled(std::int32_t count) {
        ASSERT_EQ(list_.count(), count);
        for (std::int32_t i = 0; i < count; ++i) {
            EXPECT_EQ(std::u16string_view(list_.at(i)), u"\\USB\\" + name(i));
        }
        EXPECT_EQ(list_.at(count), nullptr);
        EXPECT_EQ(list_.at(-1), nullptr);
    }

    catalogue::PathList list_;
};

TEST_F(PathListTest, IsEmptyAtFirst) {
    expectFilled(0);
    list_.sort();
    expectFilled(0);
}

TEST_F(PathListTest, KeepsItsPathsWhileItGrows) {
    for (const std::int32_t count : {1, 63, 64, 65, 128, 129, 1000}) {
        fill(count);
        expectFilled(count);
    }
    list_.clear();
    expectFilled(0);
    fill(3);
    expectFilled(3);
}

TEST_F(PathListTest, TakesRoomForManyAtATime) {
    allocations = 0;
    fill(64);
    EXPECT_EQ(allocations, 2);  // the text and its starts
    fill(10000);
    EXPECT_EQ(allocations, 2 + 5 + 8);  // each doubles: 98,890 units of text, 10,000 starts
}

TEST_F(PathListTest, StaysAsItWasWithoutMemory) {
    allocationsLeft = 0;
    EXPECT_FALSE(list_.append(u"\\USB", u"0"));
    expectFilled(0);
    allocationsLeft = 1;  // for the text, not for the starts
    EXPECT_FALSE(list_.append(u"\\USB", u"0"));
    expectFilled(0);
    allocationsLeft = -1;
    fill(64);
    allocationsLeft = 0;
    EXPECT_FALSE(list_.append(u"\\USB", u"64"));
    expectFilled(64);
    allocationsLeft = -1;
    fill(70);
    expectFilled(70);
}

}  // namespace
