#include "probe/read/read_window.h"

#include <algorithm>
#include <new>

namespace probe {

bool ReadWindow::size(std::uint64_t& bytes) {
    constexpr std::uint32_t kInvalidFileSize = 0xFFFFFFFF;  // of the high word
    if (!sizeKnown_) {
        sizeKnown_ = file_.size(size_) && (size_ >> 32) != kInvalidFileSize;
        end_ = sizeKnown_ ? size_ : end_;
    }
    bytes = size_;
    return sizeKnown_;
}

bool ReadWindow::readFile(std::uint64_t offset, std::span<std::uint8_t> out, std::size_t& read) {
    ++counts_.reads;
    const bool done = file_.readAt(offset, out, read);
    if (!done) {
        read = 0;
    }
    counts_.bytes += read;
    if (done && read < out.size()) {
        end_ = offset + read;
    }
    return done;
}

// How much of `length` bytes at `offset` the file holds, as far as is known: to ask for more would
// cost a call that only finds its end.
std::size_t ReadWindow::withinFile(std::uint64_t offset, std::size_t length) const {
    return offset < end_ ? static_cast<std::size_t>(std::min<std::uint64_t>(length, end_ - offset))
                         : 0;
}

// The buffer for a window of `length` bytes, which is shortened when the large one cannot be had;
// null when not even `wanted` bytes would fit then.
std::uint8_t* ReadWindow::bufferFor(std::uint64_t offset, std::size_t wanted, std::size_t& length) {
    if (length > small_.size()) {
        if (!large_) {
            large_.reset(new (std::nothrow) std::uint8_t[kLargest]);
        }
        if (large_) {
            return large_.get();
        }
        if (wanted > small_.size()) {
            return nullptr;
        }
        length = small_.size();
    }
    return offset == 0 && length <= head_.size() ? head_.data() : small_.data();
}

bool ReadWindow::fill(std::uint64_t offset, std::size_t wanted) {
    // The next bytes or bytes shortly behind them are a walk; anything else starts small again.
    const bool goesOn = length_ != 0 && offset >= start_ && offset <= start_ + length_ + kSmallest;
    step_ = goesOn ? std::clamp(step_ * 2, kSmallest, kLargest) : kSmallest;
    std::size_t length = withinFile(offset, std::max(step_, wanted));
    std::uint8_t* const buffer = bufferFor(offset, wanted, length);
    if (!buffer) {
        return false;
    }
    length_ = 0;
    window_ = buffer;
    start_ = offset;
    bool done = readFile(offset, {buffer, length}, length_);
    if (!done) {
        // To the end of the sector: not a byte of another one is touched by that.
        const std::uint64_t end = (offset + wanted + kSector - 1) / kSector * kSector;
        const auto needed = static_cast<std::size_t>(std::min<std::uint64_t>(end - offset, length));
        step_ = 0;  // so that a walk towards the bad sector does not fall behind by halves
        done = needed < length && readFile(offset, {buffer, needed}, length_);
    }
    if (buffer == head_.data()) {
        headLength_ = length_;
    }
    return done;
}

bool ReadWindow::view(std::uint64_t offset, std::size_t least, std::size_t most,
                      std::span<const std::uint8_t>& bytes) {
    bytes = {};
    least = withinFile(offset, std::min(least, kLargest));
    if (least == 0) {
        return true;  // behind the end
    }
    if (!atHand(offset, least)) {
        if (const std::uint8_t* kept = inHead(offset, least)) {
            bytes = {kept, std::min(most, headLength_ - static_cast<std::size_t>(offset))};
            return true;
        }
        if (!fill(offset, least)) {
            return false;
        }
    }
    const std::size_t skip = static_cast<std::size_t>(offset - start_);
    bytes = {window_ + skip, std::min(most, length_ - skip)};
    return true;
}

bool ReadWindow::readAside(std::uint64_t offset, std::span<std::uint8_t> out, std::size_t& read) {
    const std::size_t length = withinFile(offset, out.size());
    read = 0;
    if (length == 0) {
        return true;
    }
    const std::uint8_t* bytes = atHand(offset, length);
    if (!bytes) {
        bytes = inHead(offset, length);
    }
    if (!bytes) {
        return readFile(offset, out.first(length), read);
    }
    std::copy_n(bytes, length, out.data());
    read = length;
    return true;
}

}  // namespace probe
