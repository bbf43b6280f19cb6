// An 800 x 480 picture in memory, its comparison, and its PNG files.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace ui_test {

inline constexpr int kWidth = 800, kHeight = 480;

// A device context with a bitmap of its own that can be looked into.
class Picture {
public:
    Picture();
    ~Picture();
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    [[nodiscard]] HDC device() const { return device_; }
    // 0x00rrggbb
    [[nodiscard]] std::uint32_t at(int x, int y) const;
    void fill(std::uint32_t colour);
    void copyFrom(const Picture& other);

    bool save(const std::wstring& path, int width) const;
    // False when there is no such file or it has another size.
    bool load(const std::wstring& path, int width);

private:
    HDC device_;
    HBITMAP bitmap_;
    HGDIOBJ previous_;
    std::uint32_t* pixels_ = nullptr;
};

// Number of different pixels among the first `width` columns; `difference` gets them in red.
// `where` names the first.
int compare(const Picture& a, const Picture& b, int width, Picture& difference, std::string& where);

}  // namespace ui_test
