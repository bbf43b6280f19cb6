// Zel_MessageBox.dll for tests: hands each box to the test that loaded it, instead of showing it.
#include "tests/device/graph/box_stub.h"

namespace {

test::BoxHandler currentHandler = nullptr;

int answer(const wchar_t* text, const wchar_t* title, UINT style) {
    return currentHandler != nullptr ? currentHandler(text, title, style) : IDNO;
}

}  // namespace

extern "C" {

__declspec(dllexport) void setBoxHandler(test::BoxHandler handler) {
    currentHandler = handler;
}

__declspec(dllexport) int WINAPI
    ZEL_MessageBox(HWND, const wchar_t* text, const wchar_t* title, UINT style, int) {
    return answer(text, title, style);
}

__declspec(dllexport) int WINAPI
    ZEL_MessageBoxTimer(HWND, const wchar_t* text, const wchar_t* title, UINT style, int, DWORD) {
    return answer(text, title, style);
}
}
