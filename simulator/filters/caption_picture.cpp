#include "simulator/filters/caption_picture.h"

#include <algorithm>

namespace filters {

namespace {

// Draws text white on black; the grey of a pixel is how much of it the letters cover.
class CoverageBitmap {
public:
    CoverageBitmap(int width, int height) : width_(width), height_(height) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        context_ = CreateCompatibleDC(nullptr);
        bitmap_ = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        pixels_ = static_cast<std::uint32_t*>(bits);
        before_ = SelectObject(context_, bitmap_);
        SetBkMode(context_, TRANSPARENT);
        SetTextColor(context_, RGB(255, 255, 255));
    }
    ~CoverageBitmap() {
        SelectObject(context_, before_);
        DeleteObject(bitmap_);
        DeleteDC(context_);
    }
    CoverageBitmap(const CoverageBitmap&) = delete;
    CoverageBitmap& operator=(const CoverageBitmap&) = delete;

    void text(const std::wstring& text, HFONT font, RECT place, UINT format) {
        const HGDIOBJ before = SelectObject(context_, font);
        DrawTextW(context_, text.c_str(), -1, &place, format);
        SelectObject(context_, before);
        GdiFlush();
    }
    // 0 to 255.
    std::uint32_t at(std::size_t index) const { return pixels_ ? pixels_[index] >> 8 & 0xFF : 0; }

private:
    int width_;
    int height_;
    HDC context_ = nullptr;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ before_ = nullptr;
    std::uint32_t* pixels_ = nullptr;
};

// Korean letters and everything behind them: Chinese characters and full-width forms are in Korean
// captions too, and of the unit's faces only the Korean one has them.
bool needsKoreanFace(const std::wstring& text) {
    constexpr wchar_t kFirstKoreanLetter = 0x3130;
    return std::any_of(text.begin(), text.end(), [](wchar_t c) { return c >= kFirstKoreanLetter; });
}

HFONT makeFont(const CaptionLook& look, const std::wstring& text) {
    // A face without Korean letters is replaced by one that has them.
    const DWORD charset = needsKoreanFace(text) ? HANGEUL_CHARSET : DEFAULT_CHARSET;
    return CreateFontW(static_cast<int>(look.style.height), 0, 0, 0,
                       static_cast<int>(look.style.weight), FALSE, FALSE, FALSE, charset,
                       OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY, DEFAULT_PITCH,
                       look.face.c_str());
}

std::uint32_t mix(std::uint32_t text, std::uint32_t outline, COLORREF textColour,
                  COLORREF outlineColour) {
    const std::uint32_t alpha = std::max(text, outline);
    const std::uint32_t rest = alpha - text;  // what the outline adds around the letters
    const auto channel = [&](std::uint32_t of, std::uint32_t around) {
        return (of * text + around * rest) / 255;
    };
    return alpha << 24 | channel(GetRValue(textColour), GetRValue(outlineColour)) << 16 |
           channel(GetGValue(textColour), GetGValue(outlineColour)) << 8 |
           channel(GetBValue(textColour), GetBValue(outlineColour));
}

}  // namespace

void CaptionPicture::draw(const std::wstring& text, const CaptionLook& look, int pictureWidth) {
    clear();
    const int outline = static_cast<int>(std::min<DWORD>(look.style.outlineWidth, 8));
    const int width = pictureWidth - 2 * outline;
    if (width < 32 || text.empty() || !look.visible) {
        return;
    }
    constexpr UINT kAlignments[] = {DT_LEFT, DT_CENTER, DT_RIGHT};
    const UINT format =
        DT_WORDBREAK | DT_NOPREFIX | kAlignments[std::min<DWORD>(look.style.alignment, 2)];
    const HFONT font = makeFont(look, text);
    RECT bounds = {0, 0, width, 0};
    const HDC screen = CreateCompatibleDC(nullptr);
    const HGDIOBJ before = SelectObject(screen, font);
    DrawTextW(screen, text.c_str(), -1, &bounds, format | DT_CALCRECT);
    SelectObject(screen, before);
    DeleteDC(screen);
    const int height = std::clamp<int>(bounds.bottom, 1, 1024) + 2 * outline;

    CoverageBitmap letters(pictureWidth, height);
    CoverageBitmap around(pictureWidth, height);
    const RECT place = {outline, outline, outline + width, height};
    letters.text(text, font, place, format);
    for (int y = -outline; outline && y <= outline; ++y) {
        for (int x = -outline; x <= outline; ++x) {
            RECT moved = place;
            OffsetRect(&moved, x, y);
            if (x * x + y * y <= outline * outline + 1) {
                around.text(text, font, moved, format);
            }
        }
    }
    DeleteObject(font);
    width_ = pictureWidth;
    height_ = height;
    bottomMargin_ = static_cast<int>(std::min<DWORD>(look.style.bottomMargin, 480));
    pixels_.resize(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
    for (std::size_t i = 0; i < pixels_.size(); ++i) {
        pixels_[i] =
            mix(letters.at(i), around.at(i), look.style.textColour, look.style.outlineColour);
    }
}

void CaptionPicture::blend(std::uint32_t* pixels, int stride, const RECT& area,
                           const RECT& clip) const {
    const int left = area.left + (area.right - area.left - width_) / 2;
    const int top = area.bottom - bottomMargin_ - height_;
    for (int y = 0; y < height_; ++y) {
        const int row = top + y;
        if (row < std::max(area.top, clip.top) || row >= std::min(area.bottom, clip.bottom)) {
            continue;
        }
        const std::uint32_t* source = pixels_.data() + static_cast<std::ptrdiff_t>(y) * width_;
        std::uint32_t* target = pixels + static_cast<std::ptrdiff_t>(row) * stride;
        for (int x = std::max<int>(0, clip.left - left);
             x < width_ && left + x < std::min(area.right, clip.right); ++x) {
            const std::uint32_t over = source[x];
            const std::uint32_t keep = 255 - (over >> 24);
            if (keep == 255) {
                continue;
            }
            std::uint32_t& under = target[left + x];
            const std::uint32_t redBlue = ((under & 0xFF00FF) * keep / 255) & 0xFF00FF;
            const std::uint32_t green = ((under & 0x00FF00) * keep / 255) & 0x00FF00;
            under = (over & 0xFFFFFF) + redBlue + green;
        }
    }
}

}  // namespace filters
