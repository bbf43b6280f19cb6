// The board's libraries: message boxes and the key click. Both are loaded when first needed; on a
// unit without them a message box answers at once with "no" and a click is silent. Windows only.
#pragma once

#include <windows.h>

namespace platform {

// Names and signatures of what the libraries export.
inline constexpr wchar_t kMessageBoxLibrary[] = L"Zel_MessageBox.dll";
inline constexpr wchar_t kCommonLibrary[] = L"BoardCommon.dll";
// `style` is 0 (one button, OK) or MB_YESNO; `topmost` 1 keeps the box above every other window.
// The result is IDOK, IDYES or IDNO. The box runs a message loop of its own until it is answered.
using MessageBoxFunction = int(WINAPI*)(HWND owner, const wchar_t* text, const wchar_t* title,
                                        UINT style, int topmost);
// The same, closing itself (with IDOK) after `milliseconds`.
using MessageBoxTimerFunction = int(WINAPI*)(HWND owner, const wchar_t* text, const wchar_t* title,
                                             UINT style, int topmost, DWORD milliseconds);
// 0 is the key click.
using PlaySoundFunction = void(WINAPI*)(int sound);

int showMessageBox(HWND owner, const wchar_t* text, const wchar_t* title, UINT style, int topmost);
int showTimedMessageBox(HWND owner, const wchar_t* text, const wchar_t* title, UINT style,
                        int topmost, DWORD milliseconds);
void playSound(int sound);

}  // namespace platform
