// Division and conversion as the compiler asks for them on ARM Windows, with their results in the
// registers where it looks for them.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

extern "C" {
std::uint64_t __rt_udiv(std::uint32_t divisor, std::uint32_t dividend);
std::uint64_t __rt_sdiv(std::int32_t divisor, std::int32_t dividend);
void __rt_udiv64();
void __rt_sdiv64();
std::int64_t __dtoi64(double value);
double __u64tod(std::uint64_t value);
double __i64tod(std::int64_t value);
}

namespace {

struct Parts {
    std::uint64_t quotient, remainder;
};

// Divisor in r0 and r1, dividend in r2 and r3; back come quotient and remainder in the same.
Parts call(void (*function)(), std::uint64_t divisor, std::uint64_t dividend) {
    register std::uint64_t first asm("r0") = divisor;
    register std::uint64_t second asm("r2") = dividend;
    asm volatile("blx %2"
                 : "+r"(first), "+r"(second)
                 : "r"(function)
                 : "r12", "lr", "memory", "cc");
    return {first, second};
}

constexpr std::uint64_t kNumbers[] = {
    1,          2,          3,          7,           10,
    0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0x100000000, 0x123456789ABCDEF,
    1ull << 62, 1ull << 63, ~0ull - 1,  ~0ull,       1000000007,
};

TEST(Arithmetic, DividesWithoutSign) {
    for (const std::uint64_t dividend : kNumbers) {
        for (const std::uint64_t divisor : kNumbers) {
            const Parts parts = call(__rt_udiv64, divisor, dividend);
            EXPECT_EQ(dividend / divisor, parts.quotient) << dividend << " / " << divisor;
            EXPECT_EQ(dividend % divisor, parts.remainder) << dividend << " % " << divisor;
            const auto small = static_cast<std::uint32_t>(divisor);
            const auto large = static_cast<std::uint32_t>(dividend);
            if (small != 0) {
                const std::uint64_t both = __rt_udiv(small, large);
                EXPECT_EQ(large / small, static_cast<std::uint32_t>(both));
                EXPECT_EQ(large % small, static_cast<std::uint32_t>(both >> 32));
            }
        }
    }
}

TEST(Arithmetic, DividesWithSignTowardsZero) {
    constexpr std::int64_t kSigned[] = {1, -1, 7, -7, 10, -10, 0x7FFFFFFF, -0x7FFFFFFF, 1ll << 40};
    for (const std::int64_t dividend : kSigned) {
        for (const std::int64_t divisor : kSigned) {
            const Parts parts = call(__rt_sdiv64, static_cast<std::uint64_t>(divisor),
                                     static_cast<std::uint64_t>(dividend));
            EXPECT_EQ(dividend / divisor, static_cast<std::int64_t>(parts.quotient));
            EXPECT_EQ(dividend % divisor, static_cast<std::int64_t>(parts.remainder));
            const auto small = static_cast<std::int32_t>(divisor);
            const auto large = static_cast<std::int32_t>(dividend);
            if (small != 0) {
                const std::uint64_t both = __rt_sdiv(small, large);
                EXPECT_EQ(large / small, static_cast<std::int32_t>(both));
                EXPECT_EQ(large % small, static_cast<std::int32_t>(both >> 32));
            }
        }
    }
}

TEST(Arithmetic, ConvertsBetweenDoublesAndIntegers) {
    constexpr std::int64_t kIntegers[] = {
        0, 1, -1, 4294967295, 4294967296, -4294967297, 9007199254740993, -9007199254740993};
    for (const std::int64_t value : kIntegers) {
        EXPECT_EQ(static_cast<double>(value), __i64tod(value)) << value;
        if (value >= 0) {
            EXPECT_EQ(static_cast<double>(value), __u64tod(static_cast<std::uint64_t>(value)));
        }
    }
    EXPECT_EQ(18446744073709551615.0, __u64tod(~0ull));
    EXPECT_EQ(40, __dtoi64(40.99));
    EXPECT_EQ(-40, __dtoi64(-40.99));
    EXPECT_EQ(1234567890123456768, __dtoi64(1234567890123456768.0));
    EXPECT_EQ(-4294967297, __dtoi64(-4294967297.5));
    EXPECT_EQ(std::numeric_limits<std::int64_t>::max(), __dtoi64(1e300));
    EXPECT_EQ(std::numeric_limits<std::int64_t>::min(), __dtoi64(-1e300));
}

}  // namespace
