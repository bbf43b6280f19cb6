// The play time of Flash Video: the time stamp of its last tag, found from the end of the file.
#pragma once

#include <cstdint>

#include "probe/read/read_window.h"

namespace probe {

enum class FlvTags : std::uint8_t { Any, KeyFrames };

// Looks backwards from `end` (the file's size) for the last place that reads as the size of a
// previous tag followed by a tag header, and whose previous tag really has that size. Nothing
// before `dataStart` is taken for a tag. On success `milliseconds` is that tag's time stamp.
// Returns false when there is none, when a read fails, or when more headers are looked up than a
// ReadBudget of `end` bytes allows: a file of nothing but such places would have one read for every
// seventh byte.
[[nodiscard]] bool findLastFlvTimestamp(ReadWindow& file, std::uint64_t dataStart,
                                        std::uint64_t end, FlvTags wanted,
                                        std::uint32_t& milliseconds);

}  // namespace probe
