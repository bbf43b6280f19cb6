// Creation, painting and destruction of the main window.
#include <array>

#include "app/app_state.h"
#include "app/paths.h"
#include "app/timers.h"
#include "platform/board.h"
#include "platform/com.h"
#include "player/player.h"
#include "settings/hand_over.h"
#include "settings/ini_store.h"
#include "shell/handlers.h"
#include "shell/main_window.h"
#include "shell/peers/peers.h"
#include "shell/screens/refresh.h"
#include "shell/screens/screens.h"

namespace shell {
namespace {

constexpr std::array<std::int32_t, 4> kFontHeights = {18, 25, 24, 16};

constexpr char16_t kConnectExitText[] =
    u"\r\nTandema 영상재생을 종료합니다. \r\n녹화모드 전환을 위해 USB 케이블을\r\n"
    u"반드시 제거해 주시기바랍니다.";

void createFonts() {
    for (std::size_t i = 0; i < kFontHeights.size(); ++i) {
        appState.fonts[i] = platform::createFont({.height = kFontHeights[i],
                                                  .weight = 700,
                                                  .charSet = 1,
                                                  .quality = 5,
                                                  .face = u"나눔고딕"});
    }
}

// Reads what the second paint would need too late: everything but the set that the start has read.
void loadRestOfSkin() {
    appState.loadRestOfSkin = false;
    // By what is missing: the mode may have changed between the start and the first paint.
    for (const ScreenMode mode : {kFullWidth, kHalfWidth}) {
        if (!screens::isScreenLoaded(mode)) {
            screens::loadScreen(mode);
        }
    }
    screens::loadScreen(kFileList);
    screens::loadScreen(kSlideBanner);
    appState.imageLoaded = 1;
    postToProcessManager(kSkinLoaded, 0);
    if (appState.resumePending != 0) {
        // Its first tick at once, from the message loop: the screen starts the stored file.
        platform::postMessage(appState.mainWindow, platform::kTimerMessage, app::kScreenTimer, 0);
    }
}

void showExitMessage() {
    constexpr std::uint32_t kTimedMilliseconds = 1000;
    if (appState.connectMode != 1) {
        return;
    }
    if (appState.exitMessageTimed == 1) {
        platform::showTimedMessageBox(nullptr, kConnectExitText, u"", platform::kOneButton, 1,
                                      kTimedMilliseconds);
    } else {
        platform::showMessageBox(nullptr, kConnectExitText, u"", platform::kOneButton, 1);
    }
}

}  // namespace

Answer onCreate(Window window, std::uint32_t, WParam, LParam lParam) {
    openStartGate(lParam);
    appState.mainWindow = window;
    settings::ReadConnectPath(appState.connectMode, appState.connectPath);
    createFonts();
    platform::enterCom();
    appState.imagingFactory = platform::createImagingFactory();
    appState.filterControl.setBoxOpens(screens::forgetTouch);
    screens::loadScreen(appState.screenMode);
    Player::initialisePlayback();
    if (appState.screenMode == kFullWidth) {
        app::startTimer(app::kBarTimer);
    }
    app::startTimer(app::kScreenTimer);
    app::startTimer(app::kDrivingTimer);
    appState.dmbSetting =
        settings::readIniInt(u"MISC", u"DMB", appState.dmbSetting, app::kConfigFile);
    if (appState.screenMode == kHalfWidth) {
        postToProcessManager(kHalfWidthShown, 0);
    }
    return 0;
}

Answer onPaint(Window, std::uint32_t, WParam, LParam) {
    screens::paintWindow();
    if (appState.loadRestOfSkin) {
        loadRestOfSkin();
    }
    return 0;
}

Answer onClose(Window window, std::uint32_t, WParam, LParam) {
    if (!appState.exiting) {
        appState.exiting = true;
        platform::destroyWindow(window);
    }
    return 0;
}

Answer onDestroy(Window, std::uint32_t, WParam, LParam) {
    app::stopTimer(app::kScreenTimer);
    app::stopTimer(app::kDrivingTimer);
    for (std::int32_t mode = kFullWidth; mode <= kSlideBanner; ++mode) {
        screens::unloadScreen(mode);
    }
    // After an exit request it has been given back, and COM been left, already.
    platform::releaseObject(appState.imagingFactory);
    appState.imagingFactory = nullptr;
    for (platform::FontHandle& font : appState.fonts) {
        platform::deleteFont(font);
        font = nullptr;
    }
    // After an exit request nothing of it is left; a closed window must not play on behind the
    // exit message.
    app::stopTimer(app::kPositionTimer);
    Player::releaseGraph();
    platform::leaveCom();
    showExitMessage();
    platform::postQuit(0);
    return 0;
}

}  // namespace shell
