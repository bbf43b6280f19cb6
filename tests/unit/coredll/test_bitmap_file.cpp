// Which bitmap files may be handed to the system's loader.
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "simulator/coredll/bitmap_file.h"

namespace {

using Head = std::array<std::uint8_t, coredll::kBitmapHeadBytes>;

void put16(Head& head, std::size_t at, std::uint16_t value) {
    std::memcpy(head.data() + at, &value, sizeof(value));
}
void put32(Head& head, std::size_t at, std::uint32_t value) {
    std::memcpy(head.data() + at, &value, sizeof(value));
}

// 10 x 4 pixels of 24 bits: rows of 32 bytes from offset 54, 182 bytes in all.
Head sound() {
    Head head{};
    put16(head, 0, 0x4D42);
    put32(head, 10, 54);
    put32(head, 14, 40);
    put32(head, 18, 10);
    put32(head, 22, 4);
    put16(head, 26, 1);
    put16(head, 28, 24);
    return head;
}

TEST(BitmapFile, MustHoldEveryRow) {
    EXPECT_EQ(coredll::isSoundBitmap(sound(), 182), 1);
    EXPECT_EQ(coredll::isSoundBitmap(sound(), 183), 1);
    EXPECT_EQ(coredll::isSoundBitmap(sound(), 181), 0);
    Head topFirst = sound();
    put32(topFirst, 22, static_cast<std::uint32_t>(-4));
    EXPECT_EQ(coredll::isSoundBitmap(topFirst, 182), 1);
    EXPECT_EQ(coredll::isSoundBitmap(topFirst, 181), 0);
}

TEST(BitmapFile, IsRefusedForEachFieldThatCannotBe) {
    struct Case {
        const char* name;
        std::size_t at;
        std::uint32_t value;
    };
    constexpr Case kCases[] = {
        {"signature", 0, 0x4D43},
        {"rows inside the headers", 10, 53},
        {"rows far away", 10, 0xFFFFFFFF},
        {"short header", 14, 12},
        {"long header", 14, 0xFFFFFFF0},
        {"no width", 18, 0},
        {"negative width", 18, 0xFFFFFFF6},
        {"wide", 18, 8193},
        {"largest width", 18, 0x7FFFFFFF},
        {"no height", 22, 0},
        {"high", 22, 8193},
        {"lowest height", 22, 0x80000000},
        {"no planes", 26, 24u << 16},
        {"two planes", 26, 2 | 24u << 16},
        {"no bits", 26, 1},
        {"odd bits", 26, 1 | 23u << 16},
        {"run lengths", 30, 1},
        {"masks of 24 bits", 30, 3},
        {"too many colours", 46, 257},
        {"colours behind the end", 46, 200},
    };
    for (const Case& c : kCases) {
        Head head = sound();
        put32(head, c.at, c.value);
        EXPECT_EQ(coredll::isSoundBitmap(head, 400), 0) << c.name;
    }
}

TEST(BitmapFile, OtherDepths) {
    Head grey = sound();  // rows of 12 bytes behind 256 colours
    put16(grey, 28, 8);
    put32(grey, 10, 54 + 1024);
    EXPECT_EQ(coredll::isSoundBitmap(grey, 54 + 1024 + 48), 1);
    EXPECT_EQ(coredll::isSoundBitmap(grey, 54 + 1024 + 47), 0);
    put32(grey, 10, 54);  // rows where the palette should be
    EXPECT_EQ(coredll::isSoundBitmap(grey, 54 + 1023), 0);
    EXPECT_EQ(coredll::isSoundBitmap(grey, 54 + 1024 + 48), 0);
    put32(grey, 10, 54 + 1023);  // the last colour would lie in the first row
    EXPECT_EQ(coredll::isSoundBitmap(grey, 54 + 1024 + 48), 0);
    Head masked = sound();
    put16(masked, 28, 32);
    put32(masked, 30, 3);
    put32(masked, 10, 66);
    EXPECT_EQ(coredll::isSoundBitmap(masked, 66 + 160), 1);
}

}  // namespace
