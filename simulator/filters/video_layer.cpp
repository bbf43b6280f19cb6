#include "simulator/filters/video_layer.h"

#include <algorithm>
#include <cstring>

#include "simulator/filters/lock.h"
#include "simulator/filters/module.h"

namespace filters {

namespace {

constexpr wchar_t kLayerClass[] = L"headunit.videolayer";

// What a thread draws reaches the screen when some thread of the process asks for messages. The
// painting thread does so itself, without waiting, so that a picture never waits for the
// application's thread.
void bringToScreen() {
    MsgWaitForMultipleObjectsEx(0, nullptr, 0, QS_ALLINPUT, 0);
}

}  // namespace

VideoLayer::VideoLayer() {
    InitializeCriticalSection(&lock_);
}

VideoLayer& VideoLayer::instance() {
    // Never destroyed: a decoder's thread may still be in it when the process ends.
    static VideoLayer* layer = new VideoLayer;
    return *layer;
}

LRESULT CALLBACK VideoLayer::layerProcedure(HWND window, UINT message, WPARAM w, LPARAM l) {
    VideoLayer& layer = instance();
    switch (message) {
        case WM_MOUSEACTIVATE:
            return MA_NOACTIVATE;
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT: {
            PAINTSTRUCT paintInfo;
            BeginPaint(window, &paintInfo);
            EndPaint(window, &paintInfo);
            Guard guard(layer.lock_);
            layer.paint({0, 0, layer.width_, layer.height_});
            return 0;
        }
        default:
            break;
    }
    if (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) {
        // A touch on the picture is a touch on the application. The client areas coincide.
        if (layer.owner_ && IsWindowEnabled(layer.owner_)) {
            PostMessageW(layer.owner_, message, w, l);
        }
        return 0;
    }
    return DefWindowProcW(window, message, w, l);
}

LRESULT CALLBACK VideoLayer::ownerProcedure(HWND window, UINT message, WPARAM w, LPARAM l) {
    VideoLayer& layer = instance();
    const WNDPROC before = layer.ownerBefore_;
    if (message == WM_NCDESTROY) {
        layer.ownerGone();
    }
    const LRESULT result = CallWindowProcW(before, window, message, w, l);
    if (message == WM_WINDOWPOSCHANGED || message == WM_SHOWWINDOW) {
        layer.followOwner();
    }
    return result;
}

bool VideoLayer::createWindow() {
    WNDCLASSW windowClass{};
    windowClass.style = CS_OWNDC;
    windowClass.lpfnWndProc = layerProcedure;
    windowClass.hInstance = moduleHandle();
    windowClass.lpszClassName = kLayerClass;
    RegisterClassW(&windowClass);
    window_ = CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kLayerClass, L"", WS_POPUP, 0, 0,
                              1, 1, nullptr, nullptr, windowClass.hInstance, nullptr);
    return window_ != nullptr;
}

void VideoLayer::setOwner(HWND owner) {
    if (!owner || owner == owner_ || !IsWindow(owner)) {
        return;
    }
    if (owner_) {
        SetWindowLongPtrW(owner_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ownerBefore_));
        ownerGone();
    }
    if (!createWindow()) {
        return;
    }
    owner_ = owner;
    ownerBefore_ = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(
        owner, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&VideoLayer::ownerProcedure)));
    applyKey();
    followOwner();
}

void VideoLayer::setKey(COLORREF key, bool enabled) {
    if (key == key_ && enabled == keyEnabled_) {
        return;
    }
    key_ = key;
    keyEnabled_ = enabled;
    applyKey();
}

void VideoLayer::applyKey() {
    if (!owner_) {
        return;
    }
    const LONG_PTR style = GetWindowLongPtrW(owner_, GWL_EXSTYLE);
    if (!(style & WS_EX_LAYERED)) {
        SetWindowLongPtrW(owner_, GWL_EXSTYLE, style | WS_EX_LAYERED);
    }
    SetLayeredWindowAttributes(owner_, key_, 255, keyEnabled_ ? LWA_COLORKEY : LWA_ALPHA);
}

void VideoLayer::followOwner() {
    if (!owner_ || !window_) {
        return;
    }
    if (!IsWindowVisible(owner_)) {
        ShowWindow(window_, SW_HIDE);
        return;
    }
    RECT client;
    GetClientRect(owner_, &client);
    POINT origin = {0, 0};
    ClientToScreen(owner_, &origin);
    {
        Guard guard(lock_);
        if (client.right != width_ || client.bottom != height_) {
            createBitmap(client.right, client.bottom);
        }
    }
    const bool appears = !IsWindowVisible(window_);
    SetWindowPos(window_, owner_, origin.x, origin.y, client.right, client.bottom,
                 SWP_NOACTIVATE | SWP_SHOWWINDOW | SWP_NOOWNERZORDER);
    if (appears) {
        // A window that appears stands in front on the screen, whatever its place among the
        // program's windows, and only a window that really changes its place is moved on the
        // screen: so the layer goes to the front first and the owner then before it.
        constexpr UINT kOrderOnly = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;
        SetWindowPos(window_, HWND_TOP, 0, 0, 0, 0, kOrderOnly);
        SetWindowPos(owner_, HWND_TOP, 0, 0, 0, 0, kOrderOnly);
    }
    redraw();
}

void VideoLayer::ownerGone() {
    Guard guard(lock_);
    releaseBitmap();
    DestroyWindow(window_);
    window_ = nullptr;
    owner_ = nullptr;
}

void VideoLayer::releaseBitmap() {
    if (bitmapContext_) {
        SelectObject(bitmapContext_, bitmapBefore_);
        DeleteObject(bitmap_);
        DeleteDC(bitmapContext_);
    }
    bitmapContext_ = nullptr;
    pixels_ = nullptr;
    width_ = height_ = 0;
    drawn_ = {};
}

void VideoLayer::createBitmap(int width, int height) {
    releaseBitmap();
    if (width <= 0 || height <= 0) {
        return;
    }
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // the first row on top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    bitmap_ = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (!bitmap_) {
        return;
    }
    bitmapContext_ = CreateCompatibleDC(nullptr);
    bitmapBefore_ = SelectObject(bitmapContext_, bitmap_);
    pixels_ = static_cast<std::uint32_t*>(bits);
    width_ = width;
    height_ = height;
    compose(true);
}

void VideoLayer::place(const void* user, const Placement& placement) {
    Guard guard(lock_);
    if (user != user_) {
        user_ = user;
        picture_.clear();
    }
    placement_ = placement;
    compose(true);
    paint({0, 0, width_, height_});
}

void VideoLayer::show(const void* user, const PictureFormat& format, const std::uint8_t* picture) {
    Guard guard(lock_);
    if (user != user_) {
        return;
    }
    format_ = format;
    const auto bytes = static_cast<std::size_t>(format.bytes());
    picture_.resize(bytes + kPictureSpare);
    std::memcpy(picture_.data(), picture, bytes);
    const RECT before = drawn_;
    const RECT wanted = destination();
    compose(!EqualRect(&before, &wanted));
    paint(EqualRect(&before, &wanted) ? drawn_ : RECT{0, 0, width_, height_});
}

void VideoLayer::setCaption(const std::wstring& text, const CaptionLook& look) {
    Guard guard(lock_);
    captionText_ = text;
    captionLook_ = look;
    captionWidth_ = 0;
    compose(false);
    paint(drawn_);
}

void VideoLayer::redraw() {
    Guard guard(lock_);
    paint({0, 0, width_, height_});
}

void VideoLayer::leave(const void* user) {
    Guard guard(lock_);
    if (user != user_) {
        return;
    }
    user_ = nullptr;
    picture_.clear();
    placement_ = {};
    compose(true);
    paint({0, 0, width_, height_});
}

RECT VideoLayer::pictureArea() {
    Guard guard(lock_);
    return drawn_;
}

RECT VideoLayer::destination() const {
    RECT place = placement_.output.rectangle;
    const LONG width = place.right - place.left;
    const LONG height = place.bottom - place.top;
    if (!placement_.output.enabled || !placement_.shown || picture_.empty() || width <= 0 ||
        height <= 0) {
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
    const RECT layer = {0, 0, width_, height_};
    RECT visible;
    return IntersectRect(&visible, &place, &layer) ? place : RECT{};
}

void VideoLayer::compose(bool everything) {
    if (!pixels_) {
        return;
    }
    GdiFlush();
    if (everything) {
        std::memset(pixels_, 0,
                    static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) * 4);
    }
    drawn_ = destination();
    if (IsRectEmpty(&drawn_)) {
        return;
    }
    const RECT layer = {0, 0, width_, height_};
    scaler_.draw(format_, picture_.data(), {pixels_, width_, drawn_, layer});
    if (captionText_.empty()) {
        return;
    }
    if (captionWidth_ != drawn_.right - drawn_.left) {
        captionWidth_ = drawn_.right - drawn_.left;
        caption_.draw(captionText_, captionLook_, captionWidth_);
    }
    caption_.blend(pixels_, width_, drawn_, layer);
}

void VideoLayer::paint(const RECT& area) {
    RECT visible;
    const RECT layer = {0, 0, width_, height_};
    if (!window_ || !bitmapContext_ || !IntersectRect(&visible, &area, &layer)) {
        return;
    }
    const HDC context = GetDC(window_);
    BitBlt(context, visible.left, visible.top, visible.right - visible.left,
           visible.bottom - visible.top, bitmapContext_, visible.left, visible.top, SRCCOPY);
    ReleaseDC(window_, context);
    bringToScreen();
}

}  // namespace filters
