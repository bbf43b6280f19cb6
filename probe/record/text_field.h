// The text fields of the record.
#pragma once

#include <cstdint>
#include <span>

#include "platform/text.h"
#include "probe/record/media_record.h"

namespace probe {

// Converts `bytes` up to the first zero byte into `field`, cut to its size, and sets `flag` to 1
// when that gave any character, else to 0.
inline void setText(platform::CodePage codePage, std::span<const std::uint8_t> bytes,
                    std::span<char16_t, kTextLength> field, std::uint32_t& flag) {
    flag = platform::decodeText(codePage, bytes, field) != 0 ? 1 : 0;
}

}  // namespace probe
