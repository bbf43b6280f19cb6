// What the compiler calls on 32-bit ARM for arithmetic that the processor has no instruction for.
// coredll.dll has such functions too, but for doubles in integer registers and with other names for
// 64 bits. Names, registers and results: "Overview of ARM32 ABI Conventions" of Microsoft and the
// division helpers of LLVM's ARM target for Windows.
#include <cstdint>

namespace {

struct Division {
    std::uint64_t quotient;
    std::uint64_t remainder;
};

// Bit by bit. A division by nothing gives nothing; recordings are read with divisors that were
// looked at before.
Division divide(std::uint64_t dividend, std::uint64_t divisor) {
    Division result{};
    if (divisor == 0) {
        return result;
    }
    for (int bit = 63; bit >= 0; --bit) {
        const bool carry = (result.remainder >> 63) != 0;
        result.remainder = result.remainder << 1 | (dividend >> bit & 1);
        if (carry || result.remainder >= divisor) {
            result.remainder -= divisor;
            result.quotient |= std::uint64_t{1} << bit;
        }
    }
    return result;
}

std::uint64_t magnitude(std::int64_t value) {
    return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

std::uint64_t withSign(std::uint64_t value, bool negative) {
    return negative ? 0 - value : value;
}

// Two 32-bit results in r0 and r1.
std::uint64_t pair(std::uint32_t quotient, std::uint32_t remainder) {
    return static_cast<std::uint64_t>(remainder) << 32 | quotient;
}

constexpr double kTwoTo32 = 4294967296.0;

}  // namespace

extern "C" {

std::uint64_t __rt_udiv(std::uint32_t divisor, std::uint32_t dividend) {
    std::uint32_t quotient = 0, remainder = 0;
    for (int bit = 31; divisor != 0 && bit >= 0; --bit) {
        const bool carry = (remainder >> 31) != 0;
        remainder = remainder << 1 | (dividend >> bit & 1);
        if (carry || remainder >= divisor) {
            remainder -= divisor;
            quotient |= std::uint32_t{1} << bit;
        }
    }
    return pair(quotient, remainder);
}

// The remainder has the sign of the dividend.
std::uint64_t __rt_sdiv(std::int32_t divisor, std::int32_t dividend) {
    const auto parts = __rt_udiv(static_cast<std::uint32_t>(magnitude(divisor)),
                                 static_cast<std::uint32_t>(magnitude(dividend)));
    const auto quotient =
        static_cast<std::uint32_t>(withSign(parts & 0xFFFFFFFF, (divisor < 0) != (dividend < 0)));
    return pair(quotient, static_cast<std::uint32_t>(withSign(parts >> 32, dividend < 0)));
}

std::uint64_t divideUnsigned(std::uint64_t divisor, std::uint64_t dividend,
                             std::uint64_t* remainder) {
    const Division result = divide(dividend, divisor);
    *remainder = result.remainder;
    return result.quotient;
}

std::uint64_t divideSigned(std::int64_t divisor, std::int64_t dividend, std::uint64_t* remainder) {
    const Division result = divide(magnitude(dividend), magnitude(divisor));
    *remainder = withSign(result.remainder, dividend < 0);
    return withSign(result.quotient, (divisor < 0) != (dividend < 0));
}

// Divisor in r0 and r1, dividend in r2 and r3; quotient back in r0 and r1, remainder in r2 and r3.
#define DIVIDE_64(name, function)              \
    __attribute__((naked)) void name() {       \
        asm(".syntax unified\npush {r4, lr}\n" \
            "sub sp, #16\n"                    \
            "add r4, sp, #8\n"                 \
            "str r4, [sp]\n"                   \
            "bl " #function                    \
            "\n"                               \
            "ldrd r2, r3, [sp, #8]\n"          \
            "add sp, #16\n"                    \
            "pop {r4, pc}\n");                 \
    }
DIVIDE_64(__rt_udiv64, divideUnsigned)
DIVIDE_64(__rt_sdiv64, divideSigned)
#undef DIVIDE_64

// Towards zero. Beyond the range: the outermost number.
std::int64_t __dtoi64(double value) {
    constexpr double kBeyond = kTwoTo32 * 2147483648.0;
    if (value >= kBeyond) {
        return INT64_MAX;
    }
    if (value <= -kBeyond) {
        return INT64_MIN;
    }
    const double size = value < 0 ? -value : value;
    const auto high = static_cast<std::uint32_t>(size / kTwoTo32);
    const auto low = static_cast<std::uint32_t>(size - high * kTwoTo32);
    return static_cast<std::int64_t>(
        withSign(static_cast<std::uint64_t>(high) << 32 | low, value < 0));
}

double __u64tod(std::uint64_t value) {
    return static_cast<std::uint32_t>(value >> 32) * kTwoTo32 + static_cast<std::uint32_t>(value);
}

double __i64tod(std::int64_t value) {
    return static_cast<std::int32_t>(value >> 32) * kTwoTo32 + static_cast<std::uint32_t>(value);
}

// Touches every page of a frame of more than one, so that the stack grows page by page. In r4 the
// frame's size in words, and back in bytes.
__attribute__((naked)) void __chkstk() {
    asm(".syntax unified\npush {r5, r6}\n"
        "lsl r4, r4, #2\n"
        "mov r5, sp\n"
        "sub r6, r5, r4\n"
        "1: sub r5, r5, #4096\n"
        "cmp r5, r6\n"
        "blo 2f\n"
        "ldr r12, [r5]\n"
        "b 1b\n"
        "2: pop {r5, r6}\n"
        "bx lr\n");
}

}  // extern "C"
