// What a file may still cost where its own offsets lead the reader about. A hostile file could have
// the same bytes read without end: as many as it has, and 512 KiB, are enough for every sound one.
#pragma once

#include <algorithm>
#include <cstdint>

#include "probe/read/read_window.h"

namespace probe {

class ReadBudget {
public:
    explicit ReadBudget(std::uint64_t fileSize) : left_(fileSize + kAlways) {}

    // Takes one read of `bytes`, which counts as a sector at least; false, and nothing is left,
    // when it is too much.
    [[nodiscard]] bool take(std::uint64_t bytes) {
        const std::uint64_t cost = std::max<std::uint64_t>(bytes, ReadWindow::kSector);
        const bool enough = cost <= left_;
        left_ = enough ? left_ - cost : 0;
        return enough;
    }

private:
    static constexpr std::uint64_t kAlways = 512 << 10;

    std::uint64_t left_;
};

}  // namespace probe
