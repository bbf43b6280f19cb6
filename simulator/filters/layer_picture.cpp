// What stands on the video layer: the last picture at its place, the caption over it, black around.
#include <algorithm>

#include "simulator/filters/video_layer.h"

namespace filters {

namespace {

// What a thread draws reaches the screen when some thread of the process asks for messages. The
// painting thread does so itself, without waiting, so that a picture never waits for the
// application's thread.
void bringToScreen() {
    MsgWaitForMultipleObjectsEx(0, nullptr, 0, QS_ALLINPUT, 0);
}

Area areaOf(const RECT& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

}  // namespace

void VideoLayer::place(const void* user, const Placement& placement) {
    const std::lock_guard guard(lock_);
    if (user != user_) {
        user_ = user;
        forget();
    }
    placement_ = placement;
    compose(true);
    paintAll();
}

void VideoLayer::show(const void* user, const PictureFormat& format, IMediaSample* sample,
                      bool keep) {
    const std::lock_guard guard(lock_);
    BYTE* bytes = nullptr;
    if (user != user_ || FAILED(sample->GetPointer(&bytes))) {
        return;
    }
    format_ = format;
    sample_ = keep ? sample : nullptr;
    if (!keep) {
        copy_.assign(bytes, bytes + format.bytes());
    }
    picture_ = keep ? bytes : copy_.data();
    const RECT before = drawn_;
    const RECT wanted = destination();
    compose(!EqualRect(&before, &wanted));
    paint(EqualRect(&before, &wanted) ? drawn_ : canvas_.area());
}

void VideoLayer::forget() {
    picture_ = nullptr;
    sample_.Reset();
}

void VideoLayer::setCaption(const std::wstring& text, const CaptionLook& look) {
    const std::lock_guard guard(lock_);
    captionText_ = text;
    captionLook_ = look;
    captionWidth_ = 0;
    compose(false);
    paint(drawn_);
}

void VideoLayer::redraw() {
    const std::lock_guard guard(lock_);
    paintAll();
}

void VideoLayer::leave(const void* user) {
    const std::lock_guard guard(lock_);
    if (user != user_) {
        return;
    }
    user_ = nullptr;
    forget();
    placement_ = {};
    compose(true);
    paintAll();
}

RECT VideoLayer::destination() const {
    RECT place = placement_.output.rectangle;
    const LONG width = place.right - place.left;
    const LONG height = place.bottom - place.top;
    if (!placement_.output.enabled || !placement_.shown || !picture_ || width <= 0 || height <= 0) {
        return {};
    }
    if (placement_.modeFlags & vendor::kKeepAspectRatio) {
        const bool known = placement_.aspectX && placement_.aspectY;
        const LONG64 x = known ? static_cast<LONG64>(placement_.aspectX) : format_.width;
        const LONG64 y = known ? static_cast<LONG64>(placement_.aspectY) : format_.height;
        if (width * y > height * x) {  // too wide: bars left and right
            const auto used = std::max<LONG>(1, static_cast<LONG>(height * x / y));
            place.left += (width - used) / 2;
            place.right = place.left + used;
        } else {
            const auto used = std::max<LONG>(1, static_cast<LONG>(width * y / x));
            place.top += (height - used) / 2;
            place.bottom = place.top + used;
        }
    }
    const RECT layer = canvas_.area();
    RECT visible;
    return IntersectRect(&visible, &place, &layer) ? place : RECT{};
}

void VideoLayer::compose(bool everything) {
    const auto pixels = canvas_.pixels();
    if (everything) {
        std::ranges::fill(pixels, 0U);
    }
    drawn_ = destination();
    if (IsRectEmpty(&drawn_)) {
        return;
    }
    scaler_.draw(format_, picture_,
                 {pixels.data(), canvas_.width(), areaOf(drawn_), areaOf(canvas_.area())});
    if (captionText_.empty()) {
        return;
    }
    if (captionWidth_ != drawn_.right - drawn_.left) {
        captionWidth_ = drawn_.right - drawn_.left;
        caption_.draw(captionText_, captionLook_, captionWidth_);
    }
    caption_.blend(canvas_.context(), drawn_);
}

void VideoLayer::paint(const RECT& area) {
    RECT visible;
    const RECT layer = canvas_.area();
    if (!window_ || !IntersectRect(&visible, &area, &layer)) {
        return;
    }
    const HDC context = GetDC(window_);
    BitBlt(context, visible.left, visible.top, visible.right - visible.left,
           visible.bottom - visible.top, canvas_.context(), visible.left, visible.top, SRCCOPY);
    ReleaseDC(window_, context);
    bringToScreen();
}

}  // namespace filters
