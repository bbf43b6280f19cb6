// The video object layer header of MPEG-4 Part 2 (ISO/IEC 14496-2, 6.2.3).
#pragma once

#include <cstdint>
#include <span>

#include "probe/codec/pixel_aspect.h"
#include "probe/read/read_window.h"

namespace probe {

// The pixel aspect of the bytes behind a start code prefix, the code byte included; false when
// they are no video object layer header or it gives no valid value.
bool aspectOfVol(std::span<const std::uint8_t> bytes, PixelAspect& aspect);

// Looks through [start, end) of the file for video object layer headers, the last four bytes
// included; of several valid values the last one wins. False when a read failed.
[[nodiscard]] bool FindAspectInVol(ReadWindow& file, std::uint64_t start, std::uint64_t end,
                                   PixelAspect& aspect);

}  // namespace probe
