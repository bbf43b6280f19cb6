#include "probe/read_window.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace probe {

bool ReadWindow::size(std::uint64_t& bytes) {
    if (!sizeKnown_) {
        sizeKnown_ = file_.size(size_);
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
    return done;
}

bool ReadWindow::fill(std::uint64_t offset, std::size_t wanted) {
    // The next bytes or bytes shortly behind them are a walk; anything else starts small again.
    const bool goesOn = length_ != 0 && offset >= start_ && offset <= start_ + length_ + kSmallest;
    step_ = goesOn ? std::min(step_ * 2, kLargest) : kSmallest;
    std::size_t length = std::max(step_, wanted);
    std::uint8_t* buffer = small_.data();
    if (length > kSmallest) {
        if (!large_) {
            large_.reset(new (std::nothrow) std::uint8_t[kLargest]);
        }
        if (large_) {
            buffer = large_.get();
        } else if (wanted > kSmallest) {
            return false;
        } else {
            length = kSmallest;
        }
    }
    length_ = 0;
    window_ = buffer;
    start_ = offset;
    return readFile(offset, {buffer, length}, length_);
}

bool ReadWindow::viewSome(std::uint64_t offset, std::size_t least, std::size_t most,
                          std::span<const std::uint8_t>& bytes) {
    bytes = {};
    least = std::min(least, kLargest);
    const bool inside = offset >= start_ && offset - start_ <= length_ &&
                        least <= length_ - static_cast<std::size_t>(offset - start_);
    if (!inside && !fill(offset, least)) {
        return false;
    }
    const std::size_t skip = static_cast<std::size_t>(offset - start_);
    bytes = {window_ + skip, std::min(most, length_ - skip)};
    return true;
}

bool ReadWindow::readUpTo(std::uint64_t offset, std::span<std::uint8_t> out, std::size_t& read) {
    read = 0;
    if (out.size() > kLargest) {
        return readFile(offset, out, read);
    }
    std::span<const std::uint8_t> bytes;
    if (!view(offset, out.size(), bytes)) {
        return false;
    }
    std::copy(bytes.begin(), bytes.end(), out.begin());
    read = bytes.size();
    return true;
}

bool ReadWindow::readExact(std::uint64_t offset, std::span<std::uint8_t> out) {
    std::size_t read = 0;
    return readUpTo(offset, out, read) && read == out.size();
}

bool ReadWindow::readPast(std::uint64_t offset, std::span<std::uint8_t> out) {
    std::size_t read = 0;
    return readFile(offset, out, read) && read == out.size();
}

}  // namespace probe
