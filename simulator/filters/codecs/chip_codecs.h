// Which video codecs the simulated chip decodes.
#pragma once

#include <cstdint>

namespace filters {

// Four characters packed with the first in the lowest byte, as AVI stores them.
constexpr std::uint32_t packFourcc(char a, char b, char c, char d) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(a)) |
           static_cast<std::uint32_t>(static_cast<unsigned char>(b)) << 8 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(c)) << 16 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(d)) << 24;
}

// Whether the chip decodes video of this codec; the case of letters does not matter.
bool chipDecodes(std::uint32_t fourcc);

}  // namespace filters
