// Functions of Windows CE that the headers of the cross compiler do not declare, because the
// desktop lacks them or has them in another form. Source: Microsoft's reference for Windows
// Embedded CE 6.0. Windows only.
#pragma once

#include <windows.h>

extern "C" {

// Loads an uncompressed bitmap file as a device-independent bitmap, to be given back with
// DeleteObject. Null when the file is missing or is no such bitmap.
HBITMAP WINAPI SHLoadDIBitmap(LPCWSTR path);

// Stretches a rectangle of `source` (a device context or a bitmap) over one of `target`, leaving
// out every pixel of colour `key`. FALSE when nothing could be drawn.
BOOL WINAPI TransparentImage(HDC target, LONG left, LONG top, LONG width, LONG height,
                             HANDLE source, LONG sourceLeft, LONG sourceTop, LONG sourceWidth,
                             LONG sourceHeight, COLORREF key);

// Null when the library exports no such name.
FARPROC WINAPI GetProcAddressW(HMODULE library, LPCWSTR name);

}  // extern "C"

namespace platform {

// The handle that stands for the calling process itself: GetCurrentProcess() of Windows CE is this
// number and no function (kfuncs.h: SYS_HANDLE_BASE 64 + SH_CURPROC 2).
inline HANDLE currentProcess() {
    constexpr ULONG_PTR kCurrentProcess = 66;
    return reinterpret_cast<HANDLE>(kCurrentProcess);
}

}  // namespace platform
