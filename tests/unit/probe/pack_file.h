// A program stream of any length, made up as it is read, and the measuring of its play time alone.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "build_mpegps.h"
#include "probe/mpegps/duration.h"
#include "probe/record/diagnostics.h"

namespace probe_test {

constexpr std::int64_t kMillisecond = 10'000;
constexpr std::uint64_t kPackEvery = 2048;  // bytes
constexpr std::uint64_t kClockBytes = 10;   // start code and clock: what a pack is known by
constexpr std::int64_t kNone = -1;          // in place of a clock: no pack stands there

// A read of the file.
struct Look {
    std::uint64_t offset, bytes;
    bool operator==(const Look&) const = default;
};

inline void PrintTo(const Look& look, std::ostream* out) {
    *out << look.offset << "+" << look.bytes;
}

// What the clock of the pack with this number shows, in milliseconds.
using Clock = std::function<std::int64_t(std::uint64_t)>;

// Packs of 2,048 bytes, and what is laid over them.
class PackFile final : public platform::ReadOnlyFile {
public:
    PackFile(std::uint64_t bytes, Clock clock) : bytes_(bytes), clock_(std::move(clock)) {}

    bool size(std::uint64_t& bytes) override {
        bytes = bytes_;
        return true;
    }
    bool readAt(std::uint64_t offset, std::span<std::uint8_t> buffer, std::size_t& read) override {
        looks.push_back({offset, buffer.size()});
        read = static_cast<std::size_t>(
            std::min<std::uint64_t>(buffer.size(), bytes_ - std::min(bytes_, offset)));
        std::ranges::fill(buffer, std::uint8_t{0x55});
        const std::uint64_t end = offset + read;
        for (std::uint64_t pack = offset / kPackEvery; pack * kPackEvery < end; ++pack) {
            if (const std::int64_t time = clock_(pack); time >= 0) {
                lay(ps::pack2(static_cast<std::uint64_t>(time) * 90), pack * kPackEvery, offset,
                    buffer.first(read));
            }
        }
        for (const auto& [at, bytes] : over) {
            lay(bytes, at, offset, buffer.first(read));
        }
        return looks.size() < failFrom;
    }

    std::map<std::uint64_t, Bytes> over;  // by its place in the file
    std::size_t failFrom = SIZE_MAX;      // this look and those behind it fail, counted from 1
    std::vector<Look> looks;

private:
    static void lay(const Bytes& bytes, std::uint64_t at, std::uint64_t offset,
                    std::span<std::uint8_t> buffer) {
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            if (at + i >= offset && at + i - offset < buffer.size()) {
                buffer[static_cast<std::size_t>(at + i - offset)] = bytes[i];
            }
        }
    }

    std::uint64_t bytes_;
    Clock clock_;
};

struct Measured {
    std::int64_t duration = 0;  // units of 100 ns
    probe::Result result = probe::kOk;
    std::string lines;
};

// What the walk over the first packs and packets hands on: the first pack's place and clock, and
// up to where the packs have been told of.
struct Start {
    std::uint64_t offset = 0;
    std::int64_t time = 0;
    std::uint64_t packsReadTo = 0;
};

inline Measured measure(PackFile& file, const Start& start = {}) {
    probe::ReadWindow window(file);
    probe::MpegPsReader reader{.file = window};
    EXPECT_TRUE(window.size(reader.end));
    reader.firstClock = {start.offset, start.time};
    reader.packsReadTo = start.packsReadTo;
    static std::string printed;
    printed.clear();
    const probe::DiagnosticSink before =
        probe::setDiagnosticSink([](const char* line) { printed += line; });
    Measured measured;
    measured.duration = 99;  // not left as it was
    measured.result = probe::measureMpegPs(reader, measured.duration);
    probe::setDiagnosticSink(before);
    measured.lines = printed;
    return measured;
}

}  // namespace probe_test
