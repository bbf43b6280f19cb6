// APE tags, versions 1 and 2 (the "APEv2 specification"): text items at the end of a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "probe/read/read_window.h"
#include "probe/record/media_record.h"

namespace probe {

//    0  8  "APETAGEX"
//    8  4  version: 1000 or 2000
//   12  4  size of the items and this footer
//   16  4  item count
//   20  4  flags
//   24  8  reserved
constexpr std::size_t kApeFooterBytes = 32;

// Reads the items in front of `footer` (the last 32 bytes of the file, "APETAGEX" has been seen)
// into title, album, artist, genre and track; a later item of a key overwrites. A tag larger than
// 16 MiB is passed over. Returns kFail when the tag would begin before the file does or when a
// read fails.
[[nodiscard]] Result readApeTag(ReadWindow& file, std::uint64_t fileSize,
                                std::span<const std::uint8_t, kApeFooterBytes> footer,
                                MediaRecord& record);

}  // namespace probe
