#include "ui/gdi_canvas.h"

#include <string_view>

#include "platform/unit_api.h"
#include "platform/wide.h"

namespace ui {
namespace {

RECT toRect(const Rect& r) {
    return {r.left, r.top, r.right, r.bottom};
}

}  // namespace

GdiCanvas::GdiCanvas(HDC target, HDC source, const ScreenState& screens,
                     std::span<const HFONT> fonts, const Rect& damaged)
    : target_(target), source_(source), screens_(screens), fonts_(fonts), damaged_(damaged) {
    if (target_ != nullptr) {
        IntersectClipRect(target_, damaged.left, damaged.top, damaged.right, damaged.bottom);
        SetBkMode(target_, TRANSPARENT);
    }
}

GdiCanvas::~GdiCanvas() {
    if (firstBitmap_ != nullptr) {
        SelectObject(source_, firstBitmap_);
    }
    if (firstFont_ != nullptr) {
        SelectObject(target_, firstFont_);
    }
}

HBITMAP GdiCanvas::handleOf(Bitmap bitmap) const {
    const auto& set = screens_.bitmaps[static_cast<std::size_t>(bitmap.set)];
    const auto slot = static_cast<std::size_t>(bitmap.slot);
    return slot < set.size() ? static_cast<HBITMAP>(set[slot]) : nullptr;
}

bool GdiCanvas::covers(Bitmap bitmap, const Rect& area) const {
    BITMAP info{};
    const HBITMAP handle = handleOf(bitmap);
    return handle != nullptr && GetObjectW(handle, sizeof(info), &info) != 0 &&
           info.bmWidth >= area.right && info.bmHeight >= area.bottom;
}

bool GdiCanvas::select(Bitmap bitmap, Point at, SIZE& size) {
    const HBITMAP handle = handleOf(bitmap);
    BITMAP info{};
    if (handle == nullptr || target_ == nullptr || source_ == nullptr ||
        GetObjectW(handle, sizeof(info), &info) == 0) {
        return false;
    }
    size = {info.bmWidth, info.bmHeight};
    const std::int64_t right = std::int64_t{at.x} + size.cx, bottom = std::int64_t{at.y} + size.cy;
    if (at.x >= damaged_.right || at.y >= damaged_.bottom || right <= damaged_.left ||
        bottom <= damaged_.top) {
        return false;
    }
    const HGDIOBJ before = SelectObject(source_, handle);
    if (firstBitmap_ == nullptr) {
        firstBitmap_ = before;
    }
    return before != nullptr;
}

void GdiCanvas::draw(Bitmap bitmap, Point at) {
    SIZE size;
    if (select(bitmap, at, size)) {
        BitBlt(target_, at.x, at.y, size.cx, size.cy, source_, 0, 0, SRCCOPY);
    }
}

// One pixel to one: only what is damaged, and only what the bitmap has.
void GdiCanvas::copy(Bitmap bitmap, const Rect& area, Point from) {
    const Rect wanted = intersection(area, damaged_);
    SIZE size;
    if (isEmpty(wanted) || !select(bitmap, {wanted.left, wanted.top}, size)) {
        return;
    }
    const std::int32_t x = from.x + wanted.left - area.left, y = from.y + wanted.top - area.top;
    const std::int32_t width = std::min<std::int32_t>(wanted.right - wanted.left, size.cx - x);
    const std::int32_t height = std::min<std::int32_t>(wanted.bottom - wanted.top, size.cy - y);
    if (width > 0 && height > 0) {
        StretchBlt(target_, wanted.left, wanted.top, width, height, source_, x, y, width, height,
                   SRCCOPY);
    }
}

void GdiCanvas::drawRegion(Bitmap bitmap, const Rect& area) {
    copy(bitmap, area, {area.left, area.top});
}

void GdiCanvas::drawInto(Bitmap bitmap, const Rect& area) {
    copy(bitmap, area, {0, 0});
}

void GdiCanvas::drawTransparent(Bitmap bitmap, Point at) {
    SIZE size;
    if (select(bitmap, at, size)) {
        TransparentImage(target_, at.x, at.y, size.cx, size.cy, source_, 0, 0, size.cx, size.cy,
                         kTransparent);
    }
}

void GdiCanvas::drawTransparentInto(Bitmap bitmap, const Rect& area) {
    SIZE size;
    if (!isEmpty(area) && select(bitmap, {area.left, area.top}, size)) {
        const LONG width = std::min<LONG>(size.cx, area.right - area.left);
        const LONG height = std::min<LONG>(size.cy, area.bottom - area.top);
        TransparentImage(target_, area.left, area.top, width, height, source_, 0, 0, width, height,
                         kTransparent);
    }
}

void GdiCanvas::fill(const Rect& area, Colour colour) {
    if (target_ == nullptr) {
        return;
    }
    const HBRUSH brush = CreateSolidBrush(colour);
    const RECT rectangle = toRect(area);
    FillRect(target_, &rectangle, brush);
    DeleteObject(brush);
}

HFONT GdiCanvas::fontOf(Font font) const {
    const auto index = static_cast<std::size_t>(font);
    return index < fonts_.size() ? fonts_[index] : nullptr;
}

void GdiCanvas::text(const char16_t* text, Font font, Colour colour, const Rect& area,
                     TextPlace place) {
    if (target_ == nullptr || !meets(area, damaged_)) {
        return;
    }
    const HGDIOBJ before = SelectObject(target_, fontOf(font));
    if (firstFont_ == nullptr) {
        firstFont_ = before;
    }
    SetTextColor(target_, colour);
    RECT rectangle = toRect(area);
    // The vertical places hold for single lines alone, and an ampersand in a name is a letter.
    DrawTextW(target_, platform::wide(text), -1, &rectangle,
              static_cast<UINT>(place) | DT_SINGLELINE | DT_NOPREFIX);
}

std::int32_t GdiCanvas::textWidth(const char16_t* text, Font font) {
    const HGDIOBJ before = SelectObject(target_, fontOf(font));
    if (firstFont_ == nullptr) {
        firstFont_ = before;
    }
    SIZE size{};
    const auto length = static_cast<int>(std::u16string_view(text).size());
    GetTextExtentExPointW(target_, platform::wide(text), length, 0, nullptr, nullptr, &size);
    return size.cx;
}

}  // namespace ui
