// The board's message box as it stands on the screen: a long file name in it is cut whole.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <thread>

#include "golden.h"
#include "picture.h"

namespace {

using ui_test::Picture;
using Show = int(WINAPI*)(HWND, const wchar_t*, const wchar_t*, UINT, int);

constexpr wchar_t kBoxClass[] = L"headunit.box";
constexpr int kTextBottom = 170;  // above the keys

// A box on a thread of its own, until it has been looked at.
class OpenBox {
public:
    explicit OpenBox(const std::wstring& text) {
        const HMODULE library = LoadLibraryW(BOX_LIBRARY);
        const auto show = reinterpret_cast<Show>(
            reinterpret_cast<void*>(GetProcAddress(library, "ZEL_MessageBox")));
        thread_ = std::thread([show, text] {
            if (show != nullptr) {
                show(nullptr, text.c_str(), L"", MB_OK, 0);
            }
        });
        while (show != nullptr && IsWindowVisible(window_) == FALSE) {
            Sleep(1);
            window_ = FindWindowW(kBoxClass, nullptr);
        }
    }
    ~OpenBox() {
        PostMessageW(window_, WM_COMMAND, IDOK, 0);
        thread_.join();
    }
    OpenBox(const OpenBox&) = delete;
    OpenBox& operator=(const OpenBox&) = delete;

    // What stands above the keys, in the picture's corner.
    void copyTo(Picture& picture) const {
        RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        RECT area;
        GetClientRect(window_, &area);
        const HDC source = GetDC(window_);
        BitBlt(picture.device(), 0, 0, area.right, kTextBottom, source, 0, 0, SRCCOPY);
        ReleaseDC(window_, source);
        GdiFlush();
    }

private:
    HWND window_ = nullptr;
    std::thread thread_;
};

TEST(BoardBox, ALongNameEndsInAnEllipsis) {
    const OpenBox box(
        L"\n\nGH010042_coming_home_from_the_sea_in_heavy_rain_front_camera_part_one.avi\n"
        L"재생 할 수 없는 파일 입니다.");
    Picture picture;
    box.copyTo(picture);
    ui_test::expectGolden(picture, "box_long_name", ui_test::kWidth);
}

TEST(BoardBox, ALongSentenceIsBrokenAtItsBlanks) {
    const OpenBox box(
        L"\r\nTandema 영상재생을 종료합니다. \r\n녹화모드 전환을 위해 USB 케이블을\r\n"
        L"반드시 제거해 주시기바랍니다. 길게 쓰인 문장은 빈칸에서 나뉘어 모두 보입니다.");
    Picture picture;
    box.copyTo(picture);
    ui_test::expectGolden(picture, "box_long_sentence", ui_test::kWidth);
}

}  // namespace
