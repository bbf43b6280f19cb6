// The window onto the file that the parsers read through, and the search for start codes in it.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "bytes_builder.h"
#include "probe/read/read_window.h"
#include "probe/read/start_codes.h"
#include "probing.h"

namespace probe_test {
namespace {

struct Visit {
    std::uint64_t position;
    std::size_t shown;
    std::uint8_t code;
};

// The start codes in [start, end) of the file, whose first `seen` bytes the window holds before.
std::vector<Visit> visits(const Bytes& bytes, std::uint64_t start, std::uint64_t end,
                          std::size_t seen = 0) {
    TestFile file(bytes);
    probe::ReadWindow window(file);
    std::span<const std::uint8_t> before;
    EXPECT_TRUE(window.view(0, seen, before));
    std::vector<Visit> found;
    EXPECT_TRUE(probe::forEachStartCode(
        window, start, end, [&](std::uint64_t position, std::span<const std::uint8_t> rest) {
            found.push_back({position, rest.size(), rest.empty() ? std::uint8_t{0} : rest[0]});
            return true;
        }));
    return found;
}

constexpr std::size_t kCode = 4;  // bytes of a start code
constexpr std::size_t kShown = 32;

Bytes withCodeAt(std::size_t at, std::size_t length = 16'000) {
    Bytes bytes(length, 0x55);
    const std::array<std::uint8_t, kCode> code = {0, 0, 1, 0xB3};
    std::ranges::copy(code, bytes.begin() + static_cast<std::ptrdiff_t>(at));
    return bytes;
}

// The file is read in pieces of 4,096 bytes at first, then of twice as many.
TEST(StartCodes, EachIsFoundOnceWhereverItStands) {
    std::vector<std::size_t> places;
    for (const std::size_t end : {100u, 4096u, 12'288u, 16'000u}) {
        for (std::size_t before = 4; before <= 80; ++before) {
            places.push_back(end - before);
        }
    }
    for (const std::size_t at : places) {
        const Bytes bytes = withCodeAt(at);
        const std::vector<Visit> found = visits(bytes, 0, bytes.size());
        ASSERT_EQ(found.size(), 1u) << at;
        EXPECT_EQ(found[0].position, at);
        EXPECT_EQ(found[0].code, 0xB3);
        EXPECT_GE(found[0].shown, std::min(kShown, bytes.size() - at - 3)) << at;
    }
}

TEST(StartCodes, LiesWhollyInTheStretch) {
    constexpr std::size_t kAt = 1000;
    const Bytes bytes = withCodeAt(kAt);
    for (std::size_t end = kAt; end <= kAt + 2 * kShown; ++end) {
        EXPECT_EQ(visits(bytes, 0, end).size(), end >= kAt + kCode ? 1u : 0u) << end;
        EXPECT_EQ(visits(bytes, kAt, end).size(), end >= kAt + kCode ? 1u : 0u) << end;
    }
    for (std::size_t start = kAt - 5; start <= kAt + 5; ++start) {
        EXPECT_EQ(visits(bytes, start, bytes.size(), 4096).size(), start <= kAt ? 1u : 0u) << start;
    }
}

TEST(StartCodes, ZerosBeforeAnotherByteAreNone) {
    Bytes bytes(300, 0);
    bytes[100] = 2;
    bytes[200] = 1;
    const std::vector<Visit> found = visits(bytes, 0, bytes.size());
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].position, 198u);
}

TEST(StartCodes, TheSearchGoesOnWhereTheWindowEnds) {
    const Bytes bytes = withCodeAt(5000);
    for (std::size_t start = 4096 - 80; start <= 4096; ++start) {
        EXPECT_EQ(visits(bytes, start, bytes.size(), 4096).size(), 1u) << start;
    }
}

TEST(StartCodes, AReadThatFailsEndsTheSearch) {
    const Bytes bytes = withCodeAt(9000);
    TestFile file(bytes);
    file.badFrom = 4096;
    file.badTo = 4097;
    probe::ReadWindow window(file);
    int found = 0;
    EXPECT_FALSE(probe::forEachStartCode(window, 0, bytes.size(),
                                         [&](std::uint64_t, std::span<const std::uint8_t>) {
                                             ++found;
                                             return true;
                                         }));
    EXPECT_EQ(found, 0);
}

TEST(ReadWindow, ServesAWalkInSmallStepsWithFewReads) {
    Bytes bytes(200000);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 7);
    }
    TestFile file(bytes);
    probe::ReadWindow window(file);
    for (std::size_t at = 0; at + 8 <= bytes.size(); at += 9) {
        std::span<const std::uint8_t> header;
        ASSERT_TRUE(window.viewAll(at, 8, header));
        ASSERT_EQ(header[7], bytes[at + 7]);
    }
    EXPECT_LE(file.reads, 8u);
    EXPECT_LE(file.bytesRead, bytes.size() + 8 * 8);
    EXPECT_EQ(window.counts().reads, file.reads);
    EXPECT_EQ(window.counts().bytes, file.bytesRead);
}

TEST(ReadWindow, KeepsTheHeadOfTheFile) {
    Bytes bytes(300000, 1);
    bytes[5] = 77;
    TestFile file(bytes);
    probe::ReadWindow window(file);
    std::span<const std::uint8_t> head, out;
    ASSERT_TRUE(window.viewAll(0, 8, head));
    for (const std::uint64_t far : {std::uint64_t{200000}, std::uint64_t{100000}}) {
        ASSERT_TRUE(window.viewAll(far, 8, out));
    }
    EXPECT_EQ(file.reads, 3u);
    EXPECT_EQ(head[5], 77) << "what was shown of the head stays";
    ASSERT_TRUE(window.viewAll(0, 8, out));
    EXPECT_EQ(out[5], 77);
    ASSERT_TRUE(window.viewAll(probe::ReadWindow::kSmallest - 8, 8, out));
    EXPECT_EQ(file.reads, 3u) << "the head was still there";
    ASSERT_TRUE(window.viewAll(100008, 8, out));
    EXPECT_EQ(file.reads, 3u) << "and so was the window";
}

TEST(ReadWindow, ABadSectorThatNobodyNeedsIsNoFailure) {
    const Bytes bytes(100000, 1);
    TestFile file(bytes);
    file.badFrom = 3000;
    file.badTo = 3001;
    probe::ReadWindow window(file);
    std::span<const std::uint8_t> out;
    ASSERT_TRUE(window.viewAll(0, 64, out));
    EXPECT_EQ(file.reads, 2u) << "4096 bytes, then the first sector";
    EXPECT_EQ(file.bytesAsked, 4096u + 512u);
    ASSERT_TRUE(window.viewAll(500, 12, out));
    EXPECT_EQ(file.reads, 2u) << "the sector is at hand";
    // 5 x 512 bytes in front of the bad sector, in steps that are tried larger first.
    for (std::uint64_t at = 512; at + 512 <= 2560; at += 512) {
        ASSERT_TRUE(window.viewAll(at, 512, out)) << at;
    }
    EXPECT_LE(file.reads, 2u + 2 * 4);
    const std::uint64_t before = file.reads;
    EXPECT_FALSE(window.viewAll(2996, 8, out)) << "now it is needed";
    EXPECT_EQ(file.reads, before + 2);
    ASSERT_TRUE(window.viewAll(3001, 8, out)) << "the file goes on behind it";
}

TEST(ReadWindow, WhatWasWantedIsNotAskedForTwice) {
    const Bytes bytes(5000, 1);
    TestFile file(bytes);
    file.badFrom = 4999;
    file.badTo = 5000;
    probe::ReadWindow window(file);
    std::uint64_t size = 0;
    ASSERT_TRUE(window.size(size));
    std::span<const std::uint8_t> out;
    EXPECT_FALSE(window.view(4900, 100, out));
    EXPECT_EQ(file.reads, 1u);
}

TEST(ReadWindow, DoesNotAskForWhatTheSizeRulesOut) {
    const Bytes bytes(5000, 1);
    TestFile file(bytes);
    probe::ReadWindow window(file);
    std::uint64_t size = 0;
    ASSERT_TRUE(window.size(size));
    std::span<const std::uint8_t> view;
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(window.view(4990, 100, view));
        EXPECT_EQ(view.size(), 10u);
    }
    EXPECT_EQ(file.reads, 1u);
    EXPECT_EQ(file.bytesAsked, 10u);
}

TEST(ReadWindow, AWholeViewAcrossTheEndFails) {
    const Bytes bytes(100, 1);
    TestFile file(bytes);
    probe::ReadWindow window(file);
    std::span<const std::uint8_t> out;
    EXPECT_TRUE(window.viewAll(84, 16, out));
    EXPECT_FALSE(window.viewAll(85, 16, out));
    EXPECT_TRUE(window.view(90, 16, out));
    EXPECT_EQ(out.size(), 10u);
    EXPECT_TRUE(window.view(5000, 16, out));
    EXPECT_EQ(out.size(), 0u);
}

// A file that neither tells its size nor, when a read fails, how much it read.
class Untold final : public platform::ReadOnlyFile {
public:
    bool size(std::uint64_t& bytes) override {
        bytes = 0;
        return false;
    }
    bool readAt(std::uint64_t offset, std::span<std::uint8_t> buffer, std::size_t& read) override {
        asked.push_back({offset, buffer.size()});
        std::ranges::fill(buffer, std::uint8_t{0x42});
        read = buffer.size();
        return offset < 100'000;
    }
    std::vector<std::pair<std::uint64_t, std::size_t>> asked;
};

using Asked = decltype(Untold::asked);

TEST(ReadWindow, ReadsAFileOfUnknownSize) {
    Untold file;
    probe::ReadWindow window(file);
    std::uint64_t size = 0;
    EXPECT_FALSE(window.size(size));
    std::span<const std::uint8_t> bytes;
    ASSERT_TRUE(window.viewAll(0, 1, bytes));
    EXPECT_EQ(bytes[0], 0x42);
    EXPECT_FALSE(window.size(size)) << "asked again";
    EXPECT_TRUE(window.viewAll(50'000, 1, bytes));
}

TEST(ReadWindow, AReadThatFailsDeliversNothing) {
    Untold file;
    probe::ReadWindow window(file);
    std::span<const std::uint8_t> bytes;
    EXPECT_FALSE(window.view(100'000, 8, bytes));
    EXPECT_EQ(bytes.size(), 0u);
    EXPECT_EQ(window.counts().bytes, 0u);
    EXPECT_EQ(window.counts().reads, 2u);
    std::array<std::uint8_t, 8> out;
    std::size_t read = 7;
    EXPECT_FALSE(window.readAside(100'000, out, read));
    EXPECT_EQ(read, 0u);
    EXPECT_EQ(window.counts().bytes, 0u);
}

TEST(ReadWindow, TheFirstByteIsReadBeforeItIsShown) {
    Untold file, other;
    probe::ReadWindow window(file), aside(other);
    std::span<const std::uint8_t> bytes;
    ASSERT_TRUE(window.view(0, 1, bytes));
    EXPECT_EQ(file.asked, (Asked{{0, 4096}}));
    EXPECT_EQ(bytes[0], 0x42);
    std::array<std::uint8_t, 1> out = {};
    std::size_t read = 0;
    ASSERT_TRUE(aside.readAside(0, out, read));
    EXPECT_EQ(other.asked, (Asked{{0, 1}}));
    EXPECT_EQ(out[0], 0x42);
}

// It doubles while the reads go on where the last one ended, or at most 4,096 bytes behind.
TEST(ReadWindow, TheWindowGrowsWithAWalk) {
    struct Row {
        std::uint64_t next;
        std::size_t wanted, read;
    };
    for (const Row& row : {Row{20'000, 5000, 8192}, Row{19'999, 5000, 5000}, Row{24'096, 1, 8192},
                           Row{28'192, 1, 8192}, Row{28'193, 1, 4096}}) {
        Untold file;
        probe::ReadWindow window(file);
        std::span<const std::uint8_t> bytes;
        ASSERT_TRUE(window.view(20'000, 1, bytes));
        ASSERT_TRUE(window.view(row.next, row.wanted, bytes));
        EXPECT_EQ(file.asked, (Asked{{20'000, 4096}, {row.next, row.read}})) << row.next;
    }
}

TEST(ReadWindow, WhatEndsWithItsSectorNeedsNoOther) {
    const Bytes bytes(20'000, 7);
    for (const std::size_t wanted : {1u, 511u, 512u, 1023u, 1024u}) {
        TestFile file(bytes);
        file.badFrom = 5120 + (wanted + 511) / 512 * 512;
        file.badTo = bytes.size();
        probe::ReadWindow window(file);
        std::span<const std::uint8_t> out;
        EXPECT_TRUE(window.viewAll(5120, wanted, out)) << wanted;
        EXPECT_EQ(file.reads, 2u);
    }
}

TEST(ReadWindow, AReadAsideTakesWhatIsAtHand) {
    Bytes bytes(20'000, 7);
    bytes[10] = 8;
    bytes[15'000] = 9;
    TestFile file(bytes);
    probe::ReadWindow window(file);
    std::span<const std::uint8_t> out;
    ASSERT_TRUE(window.viewAll(0, 100, out));
    ASSERT_TRUE(window.viewAll(15'000, 100, out));
    ASSERT_EQ(file.reads, 2u);
    std::array<std::uint8_t, 4> aside = {};
    std::size_t read = 0;
    ASSERT_TRUE(window.readAside(10, aside, read));
    EXPECT_EQ(read, 4u);
    EXPECT_EQ(aside[0], 8) << "from the head of the file";
    ASSERT_TRUE(window.readAside(15'000, aside, read));
    EXPECT_EQ(aside[0], 9) << "from the window";
    EXPECT_EQ(file.reads, 2u);
    ASSERT_TRUE(window.readAside(14'999, aside, read));
    EXPECT_EQ(aside[1], 9);
    EXPECT_EQ(file.reads, 3u);
    std::uint64_t size = 0;
    ASSERT_TRUE(window.size(size));
    read = 7;
    ASSERT_TRUE(window.readAside(bytes.size(), aside, read));
    EXPECT_EQ(read, 0u) << "behind the end";
    EXPECT_EQ(file.reads, 3u);
}

}  // namespace
}  // namespace probe_test
