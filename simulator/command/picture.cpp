#include "simulator/command/picture.h"

#include <png.h>

#include <cstring>
#include <fstream>
#include <iterator>

namespace headunit {
namespace {

// BITMAPFILEHEADER and BITMAPINFOHEADER of the Windows SDK, little-endian; rows from the bottom,
// blue first, each filled up to four bytes.
bool readBitmap(const fs::path& file, Picture& picture) {
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> data((std::istreambuf_iterator<char>(stream)), {});
    const auto le32 = [&data](std::size_t at) {
        std::uint32_t value = 0;
        std::memcpy(&value, data.data() + at, sizeof(value));
        return value;
    };
    if (data.size() < 54 || data[0] != 'B' || data[1] != 'M' || data[28] != 24) {
        return false;
    }
    const std::size_t start = le32(10);
    const std::size_t width = le32(18);
    const std::size_t height = le32(22);
    const std::size_t row = (3 * width + 3) / 4 * 4;
    if (width > 8192 || height > 8192 || start > data.size() ||
        data.size() - start < row * height) {
        return false;
    }
    picture = {static_cast<int>(width), static_cast<int>(height), {}};
    for (std::size_t y = height; y-- > 0;) {
        for (std::size_t x = 0; x < width; ++x) {
            const char* pixel = data.data() + start + y * row + 3 * x;
            for (const int channel : {2, 1, 0}) {
                picture.bytes.push_back(static_cast<std::uint8_t>(pixel[channel]));
            }
        }
    }
    return true;
}

// Share of the pixels of `part` that equal those of `image` put at the part's corner.
double likeness(const Picture& screen, const Picture& image, const Rect& part) {
    int same = 0;
    int all = 0;
    for (int y = part.top; y < part.bottom; ++y) {
        for (int x = part.left; x < part.right; ++x) {
            same += screen.at(x, y) == image.at(x - part.left, y - part.top) ? 1 : 0;
            ++all;
        }
    }
    return all == 0 ? 0.0 : static_cast<double>(same) / all;
}

}  // namespace

std::uint32_t Picture::at(int x, int y) const {
    if (x < 0 || y < 0 || x >= width || y >= height) {
        return 0;
    }
    const std::size_t place = (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                               static_cast<std::size_t>(x)) *
                              3;
    return static_cast<std::uint32_t>(bytes[place] << 16 | bytes[place + 1] << 8 |
                                      bytes[place + 2]);
}

Picture cut(const Picture& from, const Rect& part) {
    Picture out{part.right - part.left, part.bottom - part.top, {}};
    for (int y = part.top; y < part.bottom; ++y) {
        for (int x = part.left; x < part.right; ++x) {
            const std::uint32_t colour = from.at(x, y);
            out.bytes.push_back(static_cast<std::uint8_t>(colour >> 16));
            out.bytes.push_back(static_cast<std::uint8_t>(colour >> 8));
            out.bytes.push_back(static_cast<std::uint8_t>(colour));
        }
    }
    return out;
}

bool readPicture(const fs::path& file, Picture& picture) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (file.extension() == ".bmp") {
        return readBitmap(file, picture);
    }
    if (png_image_begin_read_from_file(&image, file.c_str()) == 0) {
        return false;
    }
    image.format = PNG_FORMAT_RGB;
    picture = {static_cast<int>(image.width), static_cast<int>(image.height),
               std::vector<std::uint8_t>(PNG_IMAGE_SIZE(image))};
    return png_image_finish_read(&image, nullptr, picture.bytes.data(), 0, nullptr) != 0;
}

bool writePicture(const Picture& picture, const Rect& part, const fs::path& file) {
    const Picture area = cut(picture, part);
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.format = PNG_FORMAT_RGB;
    image.width = static_cast<png_uint_32>(area.width);
    image.height = static_cast<png_uint_32>(area.height);
    return png_image_write_to_file(&image, file.c_str(), 0, area.bytes.data(), 0, nullptr) != 0;
}

int countDifferences(const Picture& a, const Picture& b, const Rect& part, int& x, int& y) {
    int count = 0;
    for (int row = part.top; row < part.bottom; ++row) {
        for (int column = part.left; column < part.right; ++column) {
            if (a.at(column, row) != b.at(column, row)) {
                if (count == 0) {
                    x = column;
                    y = row;
                }
                ++count;
            }
        }
    }
    return count;
}

int judgeFullWidthMode(const Unit& unit, const Picture& picture) {
    constexpr Rect kList = {630, 66, 800, 480};  // paging keys and scroll track
    constexpr Rect kBar = {0, 329, 800, 480};
    constexpr double kAlike = 0.5;
    const fs::path skin = unit.device / "ResidentFlash/Image/Movie";
    Picture list;
    Picture bar;
    Picture background;
    readPicture(skin / "C/list_bg.bmp", list);
    readPicture(skin / "A/video_bg_control.bmp", bar);
    readPicture(skin / "A/movie.bmp", background);
    // Where there is no picture both backgrounds are dark: the one that is more like it shows.
    const double asList = likeness(picture, cut(list, kList), kList);
    if (asList > kAlike && asList > likeness(picture, cut(background, kList), kList)) {
        return 2;
    }
    const double asBar = likeness(picture, bar, kBar);
    return asBar > kAlike && asBar > likeness(picture, cut(background, kBar), kBar) ? 0 : 3;
}

}  // namespace headunit
