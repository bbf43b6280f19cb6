// What the window manager and GDI of Windows CE have and the desktop lacks. Windows only.
#pragma once

#include <windows.h>

namespace platform {

// Style of the player's window: visible, without a caption and borders.
extern const DWORD kMainWindowStyle;

// Loads an uncompressed bitmap file as a device-independent bitmap; null when it cannot be loaded.
HBITMAP loadBitmapFile(const wchar_t* path);

// Draws the whole bitmap that is selected into `source` (width x height pixels) at (x, y), leaving
// out every pixel of colour `key`.
void drawTransparent(HDC target, int x, int y, int width, int height, HDC source, COLORREF key);

}  // namespace platform
