// The parsers' view of a file: exact reads at absolute offsets through one window, so that a walk
// in small steps costs one linear pass and few system calls, and that the ten recognisers share
// one read of the file's head, which is kept. The window starts at 4 KiB and doubles while the
// reads go on where the last one ended, up to 64 KiB. Larger reads go past it straight into the
// caller's buffer. What the file's size rules out is not asked for. Lives for one probe; one
// thread.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/file.h"

namespace probe {

struct ReadCounts {
    std::uint64_t reads = 0;  // calls of ReadOnlyFile::readAt
    std::uint64_t bytes = 0;  // bytes that those calls delivered
};

class ReadWindow {
public:
    static constexpr std::size_t kSmallest = 4096;
    static constexpr std::size_t kLargest = 65536;

    // `file` must outlive the window.
    explicit ReadWindow(platform::ReadOnlyFile& file) : ReadWindow(file, ownCounts_) {}
    // A second window over the file of a first one, in whose counts its reads are counted.
    ReadWindow(platform::ReadOnlyFile& file, ReadCounts& counts) : file_(file), counts_(counts) {}
    ReadWindow(const ReadWindow&) = delete;
    ReadWindow& operator=(const ReadWindow&) = delete;

    // Size of the file in bytes, asked for once. False when it cannot be told, or when its upper 32
    // bits are all ones, by which Windows tells the same.
    [[nodiscard]] bool size(std::uint64_t& bytes);

    // Fills `out` from `offset`. False when a read failed or the file ends before.
    [[nodiscard]] bool readExact(std::uint64_t offset, std::span<std::uint8_t> out) {
        const std::uint8_t* bytes = atHand(offset, out.size());
        if (!bytes) {
            return readExactSlowly(offset, out);
        }
        std::copy_n(bytes, out.size(), out.data());
        return true;
    }

    // The same straight from the file, without a look at the window and without moving it: for
    // large blocks, and for single small reads that lie scattered.
    [[nodiscard]] bool readPast(std::uint64_t offset, std::span<std::uint8_t> out);

    // For reads that lie apart from a walk: takes what is at hand from the window, anything else
    // straight from the file, and never moves the window. `read` tells how much of `out` was
    // filled, less than all of it only where the file ends. False when a read failed.
    [[nodiscard]] bool readAside(std::uint64_t offset, std::span<std::uint8_t> out,
                                 std::size_t& read);

    // As readExact, but the end of the file is no failure: `read` tells how much of `out` was
    // filled.
    [[nodiscard]] bool readUpTo(std::uint64_t offset, std::span<std::uint8_t> out,
                                std::size_t& read);

    // Shows up to `wanted` bytes (at most kLargest) at `offset` without copying them; fewer only
    // where the file ends. Valid until the next call. False when a read failed.
    [[nodiscard]] bool view(std::uint64_t offset, std::size_t wanted,
                            std::span<const std::uint8_t>& bytes) {
        if (const std::uint8_t* first = atHand(offset, wanted)) {
            bytes = {first, wanted};
            return true;
        }
        return viewSome(offset, wanted, wanted, bytes);
    }

    // The same for a search: at least `least` bytes, and up to `most` as far as they are at hand.
    // A search that takes what there is reads no byte twice.
    [[nodiscard]] bool viewSome(std::uint64_t offset, std::size_t least, std::size_t most,
                                std::span<const std::uint8_t>& bytes);

    // The file itself, for a second window over it.
    platform::ReadOnlyFile& file() { return file_; }

    const ReadCounts& counts() const { return counts_; }
    // The same, for a second window to count in.
    ReadCounts& counts() { return counts_; }

private:
    // `count` bytes of the window at `offset`, or null when it does not hold them all.
    const std::uint8_t* atHand(std::uint64_t offset, std::size_t count) const {
        const std::uint64_t skip = offset - start_;
        return offset >= start_ && skip <= length_ && count <= length_ - skip ? window_ + skip
                                                                              : nullptr;
    }
    // The same of the file's head, which is kept.
    const std::uint8_t* inHead(std::uint64_t offset, std::size_t count) const {
        return offset <= headLength_ && count <= headLength_ - offset ? head_.data() + offset
                                                                      : nullptr;
    }
    bool readExactSlowly(std::uint64_t offset, std::span<std::uint8_t> out);
    bool readFile(std::uint64_t offset, std::span<std::uint8_t> out, std::size_t& read);
    bool fill(std::uint64_t offset, std::size_t wanted);
    std::size_t withinFile(std::uint64_t offset, std::size_t length) const;
    std::uint8_t* bufferFor(std::uint64_t offset, std::size_t wanted, std::size_t& length);

    platform::ReadOnlyFile& file_;
    // The window while it is small, without an allocation; at the file's start one of its own,
    // which later windows leave alone.
    std::array<std::uint8_t, kSmallest> head_;
    std::array<std::uint8_t, 2 * kSmallest> small_;
    std::unique_ptr<std::uint8_t[]> large_;
    const std::uint8_t* window_ = nullptr;
    std::uint64_t start_ = 0;
    std::size_t length_ = 0;
    std::size_t step_ = 0;
    std::size_t headLength_ = 0;
    std::uint64_t size_ = 0;
    bool sizeKnown_ = false;
    ReadCounts ownCounts_;
    ReadCounts& counts_;
};

}  // namespace probe
