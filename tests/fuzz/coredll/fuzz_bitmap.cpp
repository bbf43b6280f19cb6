// Fuzz target: a bitmap's header, and behind it a size for its file (eight bytes, or the input's
// own).
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include "simulator/coredll/bitmap_file.h"

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

std::int32_t le32(std::span<const std::uint8_t> bytes) {
    std::int32_t value = 0;
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::array<std::uint8_t, coredll::kBitmapHeadBytes> head{};
    std::copy_n(data, std::min(size, head.size()), head.begin());
    std::uint64_t fileBytes = size;
    if (size >= head.size() + sizeof fileBytes) {
        std::memcpy(&fileBytes, data + head.size(), sizeof fileBytes);
    }
    if (coredll::isSoundBitmap(head, fileBytes) == 0) {
        return 0;
    }
    constexpr std::int32_t kLargest = 8192;
    const std::span<const std::uint8_t> bytes = head;
    const std::int32_t width = le32(bytes.subspan(18)), height = le32(bytes.subspan(22));
    require(width >= 1 && width <= kLargest && height != 0 && std::abs(height) <= kLargest);
    const std::size_t needed = coredll::soundBitmapBytes(head);
    require(needed >= head.size() && needed <= fileBytes);
    // Whatever is true of a file is true of a longer one, and no more of one a byte too short.
    require(coredll::isSoundBitmap(head, needed) == 1);
    require(coredll::isSoundBitmap(head, needed - 1) == 0);
    return 0;
}
