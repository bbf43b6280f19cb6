#include "simulator/filters/caption_picture.h"

#include <algorithm>

namespace filters {

namespace {

// White on black: the grey of a pixel is how much of it the letters cover.
void drawText(const Canvas& canvas, const std::wstring& text, HFONT font, RECT place, UINT format) {
    SetBkMode(canvas.context(), TRANSPARENT);
    SetTextColor(canvas.context(), RGB(255, 255, 255));
    const HGDIOBJ before = SelectObject(canvas.context(), font);
    DrawTextW(canvas.context(), text.c_str(), -1, &place, format);
    SelectObject(canvas.context(), before);
}

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
    picture_.clear();
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

    const Canvas letters(pictureWidth, height);
    const Canvas around(pictureWidth, height);
    const RECT place = {outline, outline, outline + width, height};
    drawText(letters, text, font, place, format);
    for (int y = -outline; outline && y <= outline; ++y) {
        for (int x = -outline; x <= outline; ++x) {
            RECT moved = place;
            OffsetRect(&moved, x, y);
            if (x * x + y * y <= outline * outline + 1) {
                drawText(around, text, font, moved, format);
            }
        }
    }
    DeleteObject(font);
    bottomMargin_ = static_cast<int>(std::min<DWORD>(look.style.bottomMargin, 480));
    picture_.make(pictureWidth, height);
    const auto inside = letters.pixels();
    const auto outside = around.pixels();
    const auto pixels = picture_.pixels();
    for (std::size_t i = 0; i < std::min({pixels.size(), inside.size(), outside.size()}); ++i) {
        pixels[i] = mix(inside[i] & 0xFF, outside[i] & 0xFF, look.style.textColour,
                        look.style.outlineColour);
    }
}

void CaptionPicture::blend(HDC target, const RECT& area) const {
    const int left = area.left + (area.right - area.left - picture_.width()) / 2;
    const int top = area.bottom - bottomMargin_ - picture_.height();
    const int state = SaveDC(target);
    IntersectClipRect(target, area.left, area.top, area.right, area.bottom);
    GdiAlphaBlend(target, left, top, picture_.width(), picture_.height(), picture_.context(), 0, 0,
                  picture_.width(), picture_.height(), {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA});
    RestoreDC(target, state);
}

}  // namespace filters
