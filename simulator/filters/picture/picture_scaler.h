// The chip's scaler and colour converter: brings a decoded picture to the size of the output and to
// 32-bit RGB in one pass, bilinear, row by row. One thread at a time.
#pragma once

#include <cstdint>
#include <vector>

#include "simulator/filters/picture/picture_format.h"

namespace filters {

// In pixels; right and bottom lie outside.
struct Area {
    int left, top, right, bottom;
};

// Destination in pixels of a top-down 32-bit bitmap (blue first).
struct PixelTarget {
    std::uint32_t* pixels;  // of the bitmap's upper left corner
    int stride;             // pixels a row
    Area place;             // where the whole picture goes; may reach beyond `clip`
    Area clip;              // the part that may be written
};

class PictureScaler {
public:
    // `picture` holds format.bytes() bytes; no other is read.
    void draw(const PictureFormat& format, const std::uint8_t* picture, const PixelTarget& target);

private:
    struct Step {
        std::uint16_t index;   // left or upper neighbour
        std::uint16_t weight;  // of the right or lower neighbour, 0 to 256
    };
    using Steps = std::vector<Step>;

    void prepare(const PictureFormat& format, int width, int height);
    static Steps makeSteps(int source, int target);
    // The row itself, or a copy of it when whole vectors would be read from behind `end`.
    static const std::uint8_t* spared(const std::uint8_t* row, int width, const std::uint8_t* end,
                                      std::vector<std::uint8_t>& copy);
    // One row of one plane, brought to the target's width; the result may be the source itself.
    const std::uint8_t* planeRow(const std::uint8_t* plane, int stride, int width, Step vertical,
                                 const Steps& horizontal, std::vector<std::uint8_t>& row);

    PictureFormat format_;
    int width_ = 0;
    int height_ = 0;
    Steps lumaColumns_, lumaRows_, chromaColumns_, chromaRows_;
    std::vector<std::uint8_t> blended_, y_, u_, v_;
};

}  // namespace filters
