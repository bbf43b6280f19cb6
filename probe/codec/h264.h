// The sequence parameter set of H.264 (ITU-T H.264, 7.3.2.1.1 and Annex E).
#pragma once

#include <cstdint>
#include <span>

#include "probe/codec/pixel_aspect.h"
#include "probe/read/read_window.h"

namespace probe {

// The pixel aspect of one sequence parameter set, given from the byte behind its NAL unit header,
// emulation prevention bytes included. Bits beyond the end count as 0; none found gives 0:0.
PixelAspect FindAspectInSps(std::span<const std::uint8_t> parameterSet);

// The same for the first sequence parameter set behind a start code that begins in
// [start, lastPosition] of the file; bytes from `end` on are not looked at. False when a read
// failed.
[[nodiscard]] bool findAspectInH264(ReadWindow& file, std::uint64_t start, std::uint64_t end,
                                    std::uint64_t lastPosition, PixelAspect& aspect);

}  // namespace probe
