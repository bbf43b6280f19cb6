#include "simulator/command/picture.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "simulator/command/display.h"

namespace headunit {
namespace {

constexpr char kConvert[] = "/usr/bin/convert";

// Portable pixmap, "P6 WIDTH HEIGHT 255" and one white-space character before the pixels.
bool parsePixmap(const std::string& data, Picture& picture) {
    int depth = 0;
    int head = 0;
    if (std::sscanf(data.c_str(), "P6 %d %d %d%n", &picture.width, &picture.height, &depth,
                    &head) != 3 ||
        depth != 255 || picture.width <= 0 || picture.height <= 0) {
        return false;
    }
    const auto start = static_cast<std::size_t>(head) + 1;
    const std::size_t wanted =
        static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) * 3;
    if (data.size() < start + wanted) {
        return false;
    }
    picture.bytes.assign(data.begin() + static_cast<std::ptrdiff_t>(start),
                         data.begin() + static_cast<std::ptrdiff_t>(start + wanted));
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

bool grab(const Unit& unit, Picture& picture) {
    Place place;
    if (!findPlace(unit, place)) {
        return false;
    }
    std::string data;
    const process::Arguments import = {"import", "-silent", "-window",     place.window, "-depth",
                                       "8",      "-crop",   "800x480+0+0", "+repage",    "ppm:-"};
    return process::runReading(import, {.environment = {"DISPLAY=" + readRunFile(unit, "display")}},
                               data) == 0 &&
           parsePixmap(data, picture);
}

bool readPicture(const fs::path& file, Picture& picture) {
    std::string data;
    return process::runReading({kConvert, file.string(), "-depth", "8", "ppm:-"}, {}, data) == 0 &&
           parsePixmap(data, picture);
}

bool writePicture(const Picture& picture, const Rect& part, const fs::path& file) {
    const Picture area = cut(picture, part);
    const std::string pixmap = file.string() + ".ppm";
    {
        std::ofstream out(pixmap, std::ios::binary | std::ios::trunc);
        out << "P6\n" << area.width << ' ' << area.height << "\n255\n";
        out.write(reinterpret_cast<const char*>(area.bytes.data()),
                  static_cast<std::streamsize>(area.bytes.size()));
    }
    const int status = process::run({kConvert, pixmap, "png:" + file.string()}, {});
    std::error_code error;
    fs::remove(pixmap, error);
    return status == 0;
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
    if (likeness(picture, cut(list, kList), kList) > kAlike) {
        return 2;
    }
    const double asBar = likeness(picture, bar, kBar);
    return asBar > kAlike && asBar > likeness(picture, cut(background, kBar), kBar) ? 0 : 3;
}

}  // namespace headunit
