// The parsers' view of a file: exact reads at absolute offsets through one window, so that a walk
// in small steps costs one linear pass and few system calls, and that the ten recognisers share
// one read of the file's head, which is kept. The window starts at 4 KiB and doubles while the
// reads go on where the last one ended, up to 64 KiB. What the file's size rules out is not asked
// for, and a read ahead that fails is no failure: what was wanted is asked for once more by itself,
// as the bad sector may be one that nobody needs. Lives for one probe; one thread.
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
    static constexpr std::size_t kSector = 512;  // a card reads no less, however little is wanted

    // `file` must outlive the window.
    explicit ReadWindow(platform::ReadOnlyFile& file) : file_(file) {}
    ReadWindow(const ReadWindow&) = delete;
    ReadWindow& operator=(const ReadWindow&) = delete;

    // Size of the file in bytes, asked for once. False when it cannot be told, or when its upper 32
    // bits are all ones, by which Windows tells the same.
    [[nodiscard]] bool size(std::uint64_t& bytes);

    // Shows the `count` bytes (at most kLargest) at `offset` without copying them; fewer only
    // where the file ends. Valid until the next call that moves the window; what lies in the
    // first kSmallest bytes of the file stays valid as long as the window. False when a read
    // failed.
    [[nodiscard]] bool view(std::uint64_t offset, std::size_t count,
                            std::span<const std::uint8_t>& bytes) {
        if (const std::uint8_t* first = atHand(offset, count)) {
            bytes = {first, count};
            return true;
        }
        return view(offset, count, count, bytes);
    }
    // The same for a search: at least `least` bytes, and up to `most` as far as they are at hand.
    // A search that takes what there is reads no byte twice.
    [[nodiscard]] bool view(std::uint64_t offset, std::size_t least, std::size_t most,
                            std::span<const std::uint8_t>& bytes);

    // As view, but a file that ends before all `count` bytes is a failure.
    [[nodiscard]] bool viewAll(std::uint64_t offset, std::size_t count,
                               std::span<const std::uint8_t>& bytes) {
        return view(offset, count, bytes) && bytes.size() == count;
    }

    // For reads that lie apart from a walk: takes what is at hand, anything else straight from the
    // file, and never moves the window. `read` tells how much of `out` was filled, less than all
    // of it only where the file ends. False when a read failed.
    [[nodiscard]] bool readAside(std::uint64_t offset, std::span<std::uint8_t> out,
                                 std::size_t& read);

    const ReadCounts& counts() const { return counts_; }

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
    std::uint64_t end_ =
        UINT64_MAX;  // no byte lies behind: the size, or where a read came up short
    ReadCounts counts_;
};

}  // namespace probe
