// A 32-bit bitmap, blue first and the top row first, that is drawn on by GDI and pixel by pixel.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <span>

namespace filters {

class Canvas {
public:
    Canvas() = default;
    Canvas(int width, int height) { make(width, height); }
    ~Canvas() { clear(); }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    // A black one; without pixels when a side is 0 or memory is out.
    void make(int width, int height) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        clear();
        bitmap_ = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        if (bitmap_) {
            context_ = CreateCompatibleDC(nullptr);
            before_ = SelectObject(context_, bitmap_);
            pixels_ = {static_cast<std::uint32_t*>(bits),
                       static_cast<std::size_t>(width) * static_cast<std::size_t>(height)};
            width_ = width;
            height_ = height;
        }
    }
    void clear() {
        if (bitmap_) {
            SelectObject(context_, before_);
            DeleteObject(bitmap_);
            DeleteDC(context_);
        }
        bitmap_ = nullptr;
        context_ = nullptr;
        pixels_ = {};
        width_ = height_ = 0;
    }

    HDC context() const { return context_; }
    // All of them, after what GDI has drawn.
    std::span<std::uint32_t> pixels() const {
        GdiFlush();
        return pixels_;
    }
    int width() const { return width_; }
    int height() const { return height_; }
    RECT area() const { return {0, 0, width_, height_}; }

private:
    HDC context_ = nullptr;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ before_ = nullptr;
    std::span<std::uint32_t> pixels_;
    int width_ = 0;
    int height_ = 0;
};

}  // namespace filters
