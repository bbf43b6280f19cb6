// A caption drawn once, to be laid over many pictures: 32-bit pixels with premultiplied alpha.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "graph/vendor_interfaces.h"

namespace filters {

struct CaptionLook {
    std::wstring face = L"나눔고딕";
    vendor::CaptionStyle style = {30, FW_BOLD, RGB(255, 255, 255), RGB(0, 0, 0), 2, 14, 1};
    bool visible = true;
};

class CaptionPicture {
public:
    // Draws `text` for a picture of this width, broken into lines that fit it.
    void draw(const std::wstring& text, const CaptionLook& look, int pictureWidth);
    void clear() { width_ = height_ = 0; }
    bool empty() const { return width_ == 0; }
    // Lays it over a picture that covers `area` of a 32-bit bitmap with rows of `stride` pixels;
    // what reaches beyond `area` or `clip` is cut off.
    void blend(std::uint32_t* pixels, int stride, const RECT& area, const RECT& clip) const;

private:
    std::vector<std::uint32_t> pixels_;
    int width_ = 0;
    int height_ = 0;
    int bottomMargin_ = 0;
};

}  // namespace filters
