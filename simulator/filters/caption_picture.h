// A caption drawn once, to be laid over many pictures: 32-bit pixels with premultiplied alpha.
#pragma once

#include <windows.h>

#include <string>

#include "graph/vendor_interfaces.h"
#include "simulator/filters/canvas.h"

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
    // Lays it over the lower part of a picture that covers `area`; what reaches beyond is cut off.
    void blend(HDC target, const RECT& area) const;

private:
    Canvas picture_;
    int bottomMargin_ = 0;
};

}  // namespace filters
