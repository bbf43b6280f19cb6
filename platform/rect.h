// A rectangle in pixels; its right and bottom edges lie outside of it.
#pragma once

#include <cstdint>

namespace platform {

struct Rect {
    std::int32_t left, top, right, bottom;
    friend constexpr bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace platform
