// Creation, painting and destruction of the main window.
#include <windows.h>

#include <array>
#include <cwchar>

#include "app/app_state.h"
#include "app/paths.h"
#include "platform/board.h"
#include "player/player.h"
#include "settings/hand_over.h"
#include "settings/ini_store.h"
#include "shell/handlers.h"
#include "shell/screens/screens.h"
#include "shell/shell.h"
#include "shell/start.h"

namespace shell {
namespace {

constexpr std::array<LONG, 4> kFontHeights = {18, 25, 24, 16};
constexpr wchar_t kFontFace[] = L"나눔고딕";

// The imaging factory of Windows CE; other systems have none and go on without.
constexpr CLSID kImagingFactoryClass = {
    0x327ABDA8, 0x072B, 0x11D3, {0x9D, 0x7B, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
constexpr IID kImagingFactory = {
    0x327ABDA7, 0x072B, 0x11D3, {0x9D, 0x7B, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

constexpr wchar_t kConnectExitText[] =
    L"\r\nTandema 영상재생을 종료합니다. \r\n녹화모드 전환을 위해 USB 케이블을\r\n"
    L"반드시 제거해 주시기바랍니다.";

void createFonts() {
    for (std::size_t i = 0; i < kFontHeights.size(); ++i) {
        LOGFONTW font{};
        font.lfHeight = kFontHeights[i];
        font.lfWeight = FW_BOLD;
        font.lfCharSet = DEFAULT_CHARSET;
        font.lfQuality = CLEARTYPE_QUALITY;
        std::wcscpy(font.lfFaceName, kFontFace);
        appState.fonts[i] = CreateFontIndirectW(&font);
    }
}

// Reads what the second paint would need too late: everything but the set that the start has read.
void loadRestOfSkin() {
    appState.loadRestOfSkin = 0;
    // By what is missing: the mode may have changed between the start and the first paint.
    for (const int mode : {kFullWidth, kHalfWidth}) {
        if (!ui::isScreenLoaded(mode)) {
            ui::loadScreen(mode);
        }
    }
    ui::loadScreen(kFileList);
    ui::loadScreen(kSlideBanner);
    appState.imageLoaded = 1;
    postToProcessManager(kSkinLoaded, 0);
    if (appState.resumePending != 0) {
        // Its first tick at once, from the message loop: the screen starts the stored file.
        PostMessageW(appState.mainWindow, WM_TIMER, kScreenTimer, 0);
    }
}

void drawInto(HDC window, RECT damaged) {
    const HDC target = CreateCompatibleDC(window);
    const HDC source = CreateCompatibleDC(window);
    const HBITMAP backBuffer = CreateCompatibleBitmap(window, kScreenWidth, kScreenHeight);
    const HGDIOBJ previous = SelectObject(target, backBuffer);
    if (appState.screenMode >= kFullWidth && appState.screenMode <= kSlideBanner) {
        ui::paintScreen(target, source, damaged);
    } else {
        GetClientRect(appState.mainWindow, &damaged);
    }
    BitBlt(window, damaged.left, damaged.top, damaged.right - damaged.left,
           damaged.bottom - damaged.top, target, damaged.left, damaged.top, SRCCOPY);
    SelectObject(target, previous);
    DeleteObject(backBuffer);
    DeleteDC(source);
    DeleteDC(target);
}

void showExitMessage() {
    constexpr DWORD kTimedMilliseconds = 1000;
    if (appState.connectMode != 1) {
        return;
    }
    if (appState.exitMessageTimed == 1) {
        platform::showTimedMessageBox(nullptr, kConnectExitText, L"", 0, 1, kTimedMilliseconds);
    } else {
        platform::showMessageBox(nullptr, kConnectExitText, L"", 0, 1);
    }
}

}  // namespace

LRESULT onCreate(HWND window, UINT, WPARAM, LPARAM lParam) {
    const auto* const creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    if (creation->lpCreateParams != nullptr) {
        static_cast<StartGate*>(creation->lpCreateParams)->open();
    }
    appState.mainWindow = window;
    settings::ReadConnectPath(appState.connectMode, appState.connectPath);
    createFonts();
    CoInitializeEx(nullptr, 0);
    CoCreateInstance(kImagingFactoryClass, nullptr, CLSCTX_INPROC_SERVER, kImagingFactory,
                     appState.imagingFactory.outVoid());
    ui::loadScreen(appState.screenMode);
    Player::initialisePlayback();
    if (appState.screenMode == kFullWidth) {
        SetTimer(window, kBarTimer, kBarPeriod, nullptr);
    }
    SetTimer(window, kScreenTimer, kScreenPeriod, nullptr);
    SetTimer(window, kDrivingTimer, kDrivingPeriod, nullptr);
    appState.dmbSetting =
        settings::readIniInt(u"MISC", u"DMB", appState.dmbSetting, app::kConfigFile);
    if (appState.screenMode == kHalfWidth) {
        postToProcessManager(kHalfWidthShown, 0);
    }
    return 0;
}

LRESULT onPaint(HWND window, UINT, WPARAM, LPARAM) {
    PAINTSTRUCT paint{};
    const HDC device = BeginPaint(window, &paint);
    drawInto(device, paint.rcPaint);
    EndPaint(window, &paint);
    if (appState.loadRestOfSkin != 0) {
        loadRestOfSkin();
    }
    return 0;
}

LRESULT onClose(HWND window, UINT, WPARAM, LPARAM) {
    if (appState.exiting == 0) {
        appState.exiting = 1;
        DestroyWindow(window);
    }
    return 0;
}

LRESULT onDestroy(HWND window, UINT, WPARAM, LPARAM) {
    KillTimer(window, kScreenTimer);
    KillTimer(window, kDrivingTimer);
    for (int mode = kFullWidth; mode <= kSlideBanner; ++mode) {
        ui::unloadScreen(mode);
    }
    // After an exit request COM has been left already. Required: saveAndClose() leaves it, and
    // comes before the window goes away. The library is still loaded, so the reference can be given
    // back.
    appState.imagingFactory.reset();
    for (HFONT& font : appState.fonts) {
        DeleteObject(font);
        font = nullptr;
    }
    // After an exit request nothing of it is left; a closed window must not play on behind the
    // exit message.
    KillTimer(window, kPositionTimer);
    Player::releaseGraph();
    showExitMessage();
    PostQuitMessage(0);
    return 0;
}

}  // namespace shell
