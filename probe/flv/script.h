// Script data of Flash Video: the AMF0 values (Action Message Format 0, sections 2.1 to 2.18) that
// an "onMetaData" tag carries. Of all that only five numbers are kept.
#pragma once

#include <cstdint>

#include "probe/read/file_cursor.h"

namespace probe {

// The number that the next number value stands for.
enum class FlvKey : std::uint8_t {
    Width,
    Height,
    AudioDataRate,
    FrameRate,
    VideoDataRate,
    None,
};

struct FlvMetadata {
    std::uint32_t width = 0;          // pixels
    std::uint32_t height = 0;         // pixels
    std::uint32_t audioDataRate = 0;  // bits per second
    std::uint32_t videoDataRate = 0;  // bits per second
    double frameRate = 0.0;           // frames per second
    FlvKey pendingKey = FlvKey::None;
};

enum class FlvScript : std::uint8_t { GoOn, Stop };

// Values nested deeper than this end the whole script; no writer comes near.
constexpr int kFlvScriptDepth = 64;

// Reads one value, with all that it holds, at the cursor. Returns Stop when the value says so
// (object end, type 17, an unknown type), when it is cut by the end of the cursor's range (a cut
// number is not stored), when the cursor stood at its end already, or beyond kFlvScriptDepth; then
// the cursor fails too, and with it every value around.
[[nodiscard]] FlvScript parseFlvScriptValue(FileCursor& cursor, FlvMetadata& metadata,
                                            int depth = 0);

}  // namespace probe
