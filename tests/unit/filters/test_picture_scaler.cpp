// The chip's scaler: colours after the two television standards, sizes and clipping.
#include <gtest/gtest.h>

#include <cstdlib>

#include "simulator/filters/picture/picture_scaler.h"

namespace {

using filters::Area;
using filters::PictureFormat;
using Pixels = std::vector<std::uint32_t>;

constexpr std::uint32_t kUntouched = 0x12345678;

PictureFormat format(int width, int height) {
    return {width, height, false};
}

// A picture of one colour.
std::vector<std::uint8_t> filled(const PictureFormat& format, int y, int u, int v) {
    std::vector<std::uint8_t> picture(static_cast<std::size_t>(format.bytes()));
    const int luma = format.lumaStride() * format.lumaRows();
    const int chroma = format.chromaStride() * (format.lumaRows() / 2);
    for (int i = 0; i < format.bytes(); ++i) {
        const int value = i < luma ? y : (i < luma + chroma ? u : v);
        picture[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(value);
    }
    return picture;
}

Pixels draw(const PictureFormat& format, const std::vector<std::uint8_t>& picture, Area place,
            int width, int height, Area clip) {
    Pixels pixels(static_cast<std::size_t>(width * height), kUntouched);
    filters::PictureScaler scaler;
    scaler.draw(format, picture.data(), {pixels.data(), width, place, clip});
    return pixels;
}

Pixels draw(const PictureFormat& format, const std::vector<std::uint8_t>& picture, int width,
            int height) {
    return draw(format, picture, {0, 0, width, height}, width, height, {0, 0, width, height});
}

void expectColour(std::uint32_t pixel, int red, int green, int blue, int tolerance) {
    EXPECT_NEAR(static_cast<int>(pixel >> 16 & 0xFF), red, tolerance) << std::hex << pixel;
    EXPECT_NEAR(static_cast<int>(pixel >> 8 & 0xFF), green, tolerance) << std::hex << pixel;
    EXPECT_NEAR(static_cast<int>(pixel & 0xFF), blue, tolerance) << std::hex << pixel;
}

struct Colour {
    int y, u, v;
    int red, green, blue;
};
// Studio range, ITU-R BT.601-7: R = 1.164 (Y-16) + 1.596 (V-128), G = 1.164 (Y-16) - 0.392 (U-128)
// - 0.813 (V-128), B = 1.164 (Y-16) + 2.017 (U-128).
constexpr Colour kStandard[] = {{16, 128, 128, 0, 0, 0},        {235, 128, 128, 255, 255, 255},
                                {126, 128, 128, 128, 128, 128}, {81, 90, 240, 255, 0, 0},
                                {145, 54, 34, 0, 255, 0},       {41, 240, 110, 0, 0, 255},
                                {0, 128, 128, 0, 0, 0},         {255, 128, 128, 255, 255, 255}};
// ITU-R BT.709-6: 1.793 V, -0.213 U - 0.533 V, 2.112 U.
constexpr Colour kHighDefinition[] = {
    {63, 102, 240, 255, 0, 0}, {173, 42, 26, 0, 255, 0}, {32, 240, 118, 0, 0, 255}};

TEST(PictureScaler, ColoursAreThoseOfTheStandards) {
    PictureFormat picture = format(32, 8);
    for (const bool scaled : {false, true}) {
        for (const Colour& c : kStandard) {
            const auto pixels =
                draw(picture, filled(picture, c.y, c.u, c.v), scaled ? 45 : 32, scaled ? 13 : 8);
            for (const std::uint32_t pixel : pixels) {
                expectColour(pixel, c.red, c.green, c.blue, 4);
            }
        }
    }
    picture.fullHd = true;
    for (const Colour& c : kHighDefinition) {
        for (const auto pixel : draw(picture, filled(picture, c.y, c.u, c.v), 32, 8)) {
            expectColour(pixel, c.red, c.green, c.blue, 5);
        }
    }
}

TEST(PictureScaler, EveryWidthIsDrawnToItsLastPixel) {
    for (int width = 1; width <= 40; ++width) {
        const PictureFormat picture = format(width, 3);
        const auto bytes = filled(picture, 235, 128, 128);
        for (const int target : {width, width + 1, 2 * width, std::max(1, width / 2)}) {
            for (const std::uint32_t pixel : draw(picture, bytes, target, 5)) {
                expectColour(pixel, 255, 255, 255, 1);
            }
        }
    }
}

// Columns 0 to 15 are black, 16 to 31 white.
TEST(PictureScaler, EdgesStayWhereTheyAre) {
    const PictureFormat picture = format(32, 2);
    auto bytes = filled(picture, 16, 128, 128);
    for (const std::size_t row : {0u, 32u}) {
        std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(row + 16), 16, std::uint8_t{235});
    }
    const auto same = draw(picture, bytes, 32, 2);
    const auto twice = draw(picture, bytes, 64, 4);
    for (std::size_t x = 0; x < 32; ++x) {
        expectColour(same[x], x < 16 ? 0 : 255, x < 16 ? 0 : 255, x < 16 ? 0 : 255, 1);
    }
    for (std::size_t x = 0; x < 64; ++x) {
        if (x < 31 || x > 32) {
            const int level = x < 32 ? 0 : 255;
            expectColour(twice[x], level, level, level, 1);
        }
    }
    // Between them the two neighbours are mixed, a quarter and three quarters.
    expectColour(twice[31], 64, 64, 64, 3);
    expectColour(twice[32], 191, 191, 191, 3);
}

TEST(PictureScaler, WhatIsClippedStaysUntouched) {
    const PictureFormat picture = format(16, 16);
    const Area place = {-5, -3, 27, 21};
    const Area clip = {3, 2, 13, 9};
    const auto pixels = draw(picture, filled(picture, 235, 128, 128), place, 20, 12, clip);
    for (int y = 0; y < 12; ++y) {
        for (int x = 0; x < 20; ++x) {
            const bool inside =
                x >= clip.left && x < clip.right && y >= clip.top && y < clip.bottom;
            const auto pixel = pixels[static_cast<std::size_t>(y * 20 + x)];
            EXPECT_EQ(pixel != kUntouched, inside) << x << ' ' << y;
        }
    }
}

TEST(PictureFormat, CountsPaddedRowsAndHalfPlanes) {
    struct {
        int width, height, bytes;
    } constexpr kRows[] = {
        {800, 480, 576'000}, {6, 3, 8 * 4 + 2 * 4 * 2}, {5, 2, 8 * 2 + 2 * 4}, {9, 1, 12 * 2 + 16}};
    for (const auto& row : kRows) {
        EXPECT_EQ(format(row.width, row.height).bytes(), row.bytes) << row.bytes;
    }
}

}  // namespace
