// The shape of a pixel, as a video stream declares it.
#pragma once

#include <cstdint>

namespace probe {

struct PixelAspect {
    std::uint32_t horizontal = 0;  // both 0: none was found
    std::uint32_t vertical = 0;
};

}  // namespace probe
