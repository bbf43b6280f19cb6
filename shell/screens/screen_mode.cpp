#include "shell/screens/screen_mode.h"

#include "app/app_state.h"
#include "app/timers.h"
#include "graph/filter_control.h"
#include "platform/window.h"
#include "shell/screens/refresh.h"
#include "shell/screens/screens.h"
#include "ui/player_layout.h"

namespace screens {
namespace {

void leave(std::int32_t mode) {
    if (mode == kFileList) {
        leaveFileList();
    } else if (mode == kHalfWidth) {
        platform::placeWindow(appState.mainWindow, 0, ui::kScreenWidth, ui::kScreenHeight);
    }
}

void enter(std::int32_t mode) {
    constexpr int kHalf = ui::kScreenWidth / 2;
    if (mode == kHalfWidth) {
        platform::placeWindow(appState.mainWindow, kHalf, kHalf, ui::kScreenHeight);
    }
    appState.screens.bannerShown = mode == kSlideBanner;
    enterScreen(mode);
    refreshScreen();
    placeVideo(0);
    if (mode == kFullWidth) {
        app::startTimer(app::kBarTimer);
    } else if (mode == kHalfWidth) {
        platform::updateWindow(appState.mainWindow);
    } else if (mode == kSlideBanner) {
        app::startTimer(app::kBannerTimer);
    }
}

// Where the picture comes or goes, the screen paints the video layer's key or its own background.
void showVideoArea(bool shown) {
    if (appState.videoArea != shown) {
        appState.videoArea = shown;
        platform::invalidate(appState.mainWindow);
    }
}

}  // namespace

void setScreenMode(std::int32_t mode) {
    if (mode < kFullWidth || mode > kHidden) {
        return;
    }
    if (mode != appState.screenMode) {
        const std::int32_t left = appState.screenMode;
        appState.previousScreenMode = left;
        appState.screenMode = mode;
        leave(left);
    }
    if (mode == kHidden) {
        setVideoHidden(1);
        platform::showWindow(appState.mainWindow, platform::Visible::No);
        return;
    }
    enter(mode);
    setVideoHidden(0);
    platform::bringToFront(appState.mainWindow);
    platform::showWindow(appState.mainWindow, platform::Visible::Yes);
    platform::invalidate(appState.mainWindow);
}

void placeVideo(int repaint) {
    const std::int32_t mode = appState.screenMode;
    if (mode == kHidden) {
        return;
    }
    const bool shown = mode != kFileList;
    const ui::Rect area =
        ui::intersection(videoRectangle(mode), platform::clientArea(appState.mainWindow));
    appState.outputRectangle = area;
    VideoPlacement placement = {area.left,
                                area.top,
                                area.right - area.left,
                                area.bottom - area.top,
                                shown,
                                shown ? kPlayerLayer : kBackLayer,
                                repaint != 0};
    if (appState.drivingBlock == 1) {
        placement = {0, 480, 100, 100, false, kBackLayer, repaint != 0};  // below the screen
    }
    showVideoArea(placement.enabled && appState.persisted.playState != settings::kStopped);
    appState.filterControl.PlaceOutput(placement);
}

void setVideoHidden(int hidden) {
    appState.videoLayerState = hidden != 0 ? kLayerHidden : kLayerShown;
    appState.filterControl.SetRender(static_cast<std::uint32_t>(appState.videoLayerState));
}

}  // namespace screens
