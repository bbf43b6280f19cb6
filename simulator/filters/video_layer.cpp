#include "simulator/filters/video_layer.h"

#include "simulator/filters/module.h"

namespace filters {

namespace {

constexpr wchar_t kLayerClass[] = L"headunit.videolayer";

}  // namespace

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
            const std::lock_guard guard(layer.lock_);
            layer.paintAll();
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
        const std::lock_guard guard(lock_);
        if (client.right != canvas_.width() || client.bottom != canvas_.height()) {
            canvas_.make(client.right, client.bottom);
            compose(true);
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
    const std::lock_guard guard(lock_);
    canvas_.clear();
    drawn_ = {};
    DestroyWindow(window_);
    window_ = nullptr;
    owner_ = nullptr;
}

}  // namespace filters
