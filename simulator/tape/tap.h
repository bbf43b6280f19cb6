// The functions that stand in for the system's own while the player is being watched. Each records
// what nobody outside the player can see and then does what was asked for. Windows only.
#pragma once

#include <windows.h>

#include <cstdio>

namespace tap {

// tap_messages.cpp
void WINAPI debugString(const wchar_t* text);
BOOL WINAPI postMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT WINAPI sendMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// tap_windows.cpp
HWND WINAPI createWindow(DWORD extended, const wchar_t* className, const wchar_t* title,
                         DWORD style, int left, int top, int width, int height, HWND parent,
                         HMENU menu, HINSTANCE program, void* parameter);

// tap_files.cpp
HANDLE WINAPI createFile(const wchar_t* path, DWORD access, DWORD share,
                         SECURITY_ATTRIBUTES* security, DWORD creation, DWORD flags,
                         HANDLE pattern);
BOOL WINAPI deleteFile(const wchar_t* path);
std::FILE* openFile(const wchar_t* path, const wchar_t* mode);
HANDLE WINAPI findFirstFile(const wchar_t* pattern, WIN32_FIND_DATAW* entry);
BOOL WINAPI findNextFile(HANDLE find, WIN32_FIND_DATAW* entry);
BOOL WINAPI findClose(HANDLE find);

}  // namespace tap
