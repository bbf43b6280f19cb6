// Screen modes and where the picture stands in them.
#include <windows.h>

#include "app/app_state.h"
#include "shell/screens/screens.h"
#include "shell/shell.h"

namespace shell {
namespace {

void placeWindow(int left, int width) {
    SetWindowPos(appState.mainWindow, HWND_BOTTOM, left, 0, width, kScreenHeight, SWP_SHOWWINDOW);
}

void leave(int mode) {
    if (mode == kFileList) {
        ui::leaveFileList();
    } else if (mode == kHalfWidth) {
        placeWindow(0, kScreenWidth);
    }
}

void enter(int mode) {
    if (mode == kHalfWidth) {
        placeWindow(kScreenWidth / 2, kScreenWidth / 2);
    }
    appState.screens.bannerShown = mode == kSlideBanner ? 1 : 0;
    ui::enterScreen(mode);
    ui::refreshScreen();
    placeVideo(0);
    switch (mode) {
        case kFullWidth:
            SetTimer(appState.mainWindow, kBarTimer, kBarPeriod, nullptr);
            break;
        case kHalfWidth:
            UpdateWindow(appState.mainWindow);
            break;
        case kSlideBanner:
            SetTimer(appState.mainWindow, kBannerTimer, kBannerPeriod, nullptr);
            break;
        default:
            break;
    }
}

RECT clippedVideoRectangle() {
    const RECT wanted = ui::videoRectangle(appState.screenMode);
    RECT client{}, clipped{};
    GetClientRect(appState.mainWindow, &client);
    IntersectRect(&clipped, &wanted, &client);
    return clipped;
}

// Where the picture comes or goes, the screen paints the video layer's key or its own background.
void showVideoArea(std::int32_t shown) {
    if (appState.videoArea != shown) {
        appState.videoArea = shown;
        InvalidateRect(appState.mainWindow, nullptr, FALSE);
    }
}

}  // namespace

void setScreenMode(int mode) {
    if (mode < kFullWidth || mode > kHidden) {
        return;
    }
    if (mode != appState.screenMode) {
        const int left = appState.screenMode;
        appState.previousScreenMode = left;
        appState.screenMode = mode;
        leave(left);
    }
    if (mode == kHidden) {
        setVideoHidden(1);
        ShowWindow(appState.mainWindow, SW_HIDE);
        return;
    }
    enter(mode);
    setVideoHidden(0);
    SetForegroundWindow(appState.mainWindow);
    ShowWindow(appState.mainWindow, SW_SHOW);
    InvalidateRect(appState.mainWindow, nullptr, FALSE);
}

void placeVideo(int repaint) {
    const std::int32_t mode = appState.screenMode;
    if (mode == kHidden) {
        return;
    }
    const bool shown = mode != kFileList;
    appState.outputRectangle = clippedVideoRectangle();
    vendor::VideoOutput output = {appState.outputRectangle, vendor::kWholeColour, shown ? 1u : 0u,
                                  shown ? vendor::kPlayerLayer : vendor::kBackLayer,
                                  static_cast<DWORD>(repaint)};
    if (appState.drivingBlock == 1) {
        constexpr RECT kBelowTheScreen = {0, 480, 100, 580};
        output.rectangle = kBelowTheScreen;
        output.layer = vendor::kBackLayer;
        output.enabled = 0;
    }
    showVideoArea(output.enabled != 0 && appState.persisted.playState != settings::kStopped ? 1
                                                                                            : 0);
    appState.filterControl.PlaceOutput(output);
}

void setVideoHidden(int hidden) {
    appState.videoLayerState = hidden != 0 ? kLayerHidden : kLayerShown;
    appState.filterControl.SetRender(static_cast<DWORD>(appState.videoLayerState));
}

}  // namespace shell
