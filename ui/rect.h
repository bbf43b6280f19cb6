// Points and rectangles in window pixels. A rectangle's right and bottom edges lie outside of it
// when it is drawn; for a touch all four edges lie outside.
#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/rect.h"

namespace ui {

// Of the unit's screen, pixels.
inline constexpr std::int32_t kScreenWidth = 800;
inline constexpr std::int32_t kScreenHeight = 480;

struct Point {
    std::int32_t x, y;
    friend constexpr bool operator==(const Point&, const Point&) = default;
};

using platform::Rect;

struct Size {
    std::int32_t width, height;
    friend constexpr bool operator==(const Size&, const Size&) = default;
};

constexpr bool isEmpty(const Rect& r) {
    return r.left >= r.right || r.top >= r.bottom;
}

// A touch on an edge does not hit: touch panels are coarse, and neighbours share their edges.
constexpr bool hits(const Rect& r, Point p) {
    return r.left < p.x && p.x < r.right && r.top < p.y && p.y < r.bottom;
}

// The part that both have; an empty rectangle (0, 0, 0, 0) without one.
constexpr Rect intersection(const Rect& a, const Rect& b) {
    const Rect both = {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                       std::min(a.bottom, b.bottom)};
    return isEmpty(both) ? Rect{0, 0, 0, 0} : both;
}

// The smallest rectangle that holds both; neither may be empty.
constexpr Rect bounds(const Rect& a, const Rect& b) {
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

constexpr bool meets(const Rect& a, const Rect& b) {
    return !isEmpty(intersection(a, b));
}

}  // namespace ui
