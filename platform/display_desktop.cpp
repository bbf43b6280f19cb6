#include "platform/display.h"

namespace platform {

const DWORD kMainWindowStyle = WS_POPUP | WS_VISIBLE;

HBITMAP loadBitmapFile(const wchar_t* path) {
    return static_cast<HBITMAP>(
        LoadImageW(nullptr, path, IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE | LR_CREATEDIBSECTION));
}

void drawTransparent(HDC target, int x, int y, int width, int height, HDC source, COLORREF key) {
    TransparentBlt(target, x, y, width, height, source, 0, 0, width, height, key);
}

}  // namespace platform
