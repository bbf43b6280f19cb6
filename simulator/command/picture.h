// Pictures of the unit's screen, as pixels.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/command/unit.h"

namespace headunit {

struct Rect {
    int left = 0;
    int top = 0;
    int right = 0;   // exclusive
    int bottom = 0;  // exclusive
};

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bytes;  // three a pixel: red, green, blue; rows from the top

    // 0xRRGGBB; 0 outside.
    [[nodiscard]] std::uint32_t at(int x, int y) const;
};

// A PNG file, or a Windows bitmap of 24 bits a pixel without compression.
bool readPicture(const fs::path& file, Picture& picture);
// Writes a part of a picture as PNG.
bool writePicture(const Picture& picture, const Rect& part, const fs::path& file);

// A part of a picture.
Picture cut(const Picture& from, const Rect& part);

// Number of pixels of the part that differ; where the first one is.
int countDifferences(const Picture& a, const Picture& b, const Rect& part, int& x, int& y);

// Which of its screens the player shows, judged from the picture and the skin on the unit:
// 0 full width with its control bar, 2 file list, 3 full width without the bar.
int judgeFullWidthMode(const Unit& unit, const Picture& picture);

}  // namespace headunit
