#include "simulator/filters/codecs/chip_codecs.h"

#include <algorithm>
#include <cctype>
#include <string>

namespace filters {

namespace {

// The chip's video decoders, under the names that files give their codecs (upper case). To give
// the chip another codec, add its names here.
// clang-format off
constexpr const char* kCodecs[] = {
    // H.264 / MPEG-4 part 10
    "H264", "X264", "AVC1", "AVC3", "DAVC", "VSSH",
    // MPEG-4 part 2
    "MP4V", "DIVX", "DX50", "XVID", "FMP4", "MP4S", "M4S2", "RMP4", "3IV2", "BLZ0", "UMP4",
    // MS MPEG-4 (the forerunners)
    "DIV1", "DIV2", "DIV3", "DIV4", "DIV5", "DIV6", "MP41", "MP42", "MP43", "MPG4", "COL1", "AP41",
    // MPEG-1 and MPEG-2
    "MPEG", "MPG1", "MPG2", "MP1V", "MP2V", "M1V1", "M2V1", "PIM1", "HDV1", "HDV2",
    // Windows Media 7 to 9
    "WMV1", "WMV2", "WMV3", "WVC1", "WMVA",
    // Motion JPEG
    "MJPG", "MJPA", "JPEG", "AVRN", "DMB1",
    // H.263
    "H263", "S263", "I263", "U263", "X263", "FLV1",
    // RealVideo 8 to 10
    "RV30", "RV40"};
// clang-format on

}  // namespace

bool chipDecodes(std::uint32_t fourcc) {
    std::string name;
    for (const int shift : {0, 8, 16, 24}) {
        name += static_cast<char>(std::toupper(static_cast<int>(fourcc >> shift & 0xFF)));
    }
    return std::ranges::find(kCodecs, name) != std::end(kCodecs);
}

}  // namespace filters
