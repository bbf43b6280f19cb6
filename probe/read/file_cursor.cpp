#include "probe/read/file_cursor.h"

#include <algorithm>

namespace probe {

const std::uint8_t* FileCursor::advance(std::size_t count) {
    if (!ok_ || count > remaining()) {
        ok_ = false;
        return nullptr;
    }
    std::span<const std::uint8_t> bytes;
    if (!file_.viewAll(position_, count, bytes)) {
        ok_ = false;
        readFailed_ = true;
        return nullptr;
    }
    position_ += count;
    return bytes.data();
}

std::uint8_t FileCursor::u8() {
    const std::uint8_t* p = advance(1);
    return p ? *p : std::uint8_t{0};
}

void FileCursor::skip(std::uint64_t count) {
    if (!ok_ || count > remaining()) {
        ok_ = false;
        return;
    }
    position_ += count;
}

void FileCursor::moveTo(std::uint64_t position) {
    if (!ok_ || position < begin_ || position > end_) {
        ok_ = false;
        return;
    }
    position_ = position;
}

bool FileCursor::take(std::span<std::uint8_t> out) {
    const std::uint8_t* p = advance(out.size());
    if (p) {
        std::copy_n(p, out.size(), out.begin());
    }
    return ok_;
}

}  // namespace probe
