// Whether a file can be played, and the start of one that can.
#include <windows.h>

#include <numeric>

#include "app/app_state.h"
#include "platform/print.h"
#include "platform/wide.h"
#include "player/player.h"
#include "player/session.h"
#include "probe/media_info.h"
#include "shell/shell.h"

namespace Player {
namespace {

int refuseUnsupportedVideo() {
    // A file whose sound alone could be played is refused too, whatever the text says. Required.
    platform::print(appState.filterControl.HasAudioRenderer() != 0
                        ? "[TCMovieManager]Video_Codec is not Supported, Play Only Audio\n"
                        : "[TCMovieManager]This File can't support Video & Audio. Can't Play This "
                          "File\n");
    return 0;
}

int render(const char16_t* path) {
    const RECT& rectangle = appState.outputRectangle;
    CFilterControl& graph = appState.filterControl;
    releaseGraph();
    graph.setAspect(appState.aspectX, appState.aspectY);
    const int result = graph.CreateFilterForPlaying(
        platform::wide(path), rectangle.left, rectangle.top, rectangle.right - rectangle.left,
        rectangle.bottom - rectangle.top, appState.mainWindow);
    if (result == kGraphFailed) {
        reportRenderError(graph.lastRenderResult(), 1);
    }
    return result;
}

void finishSetUp() {
    constexpr std::int32_t kModeWithoutKey = 10;  // no screen has it
    CFilterControl& graph = appState.filterControl;
    graph.SetOwnerWindow(appState.mainWindow);
    graph.SetColourKey(0);
    shell::placeVideo(0);
    graph.SetFilterOption(0);
    graph.SetChromakeySwitch(appState.screenMode != kModeWithoutKey ? 1 : 0);
}

void applyFilterSwitch() {
    constexpr DWORD kSwitchWanted = 2;
    if (appState.filterControl.FilterStatus() == kSwitchWanted) {
        appState.filterControl.SetFilterOption(static_cast<DWORD>(appState.filterSwitch));
    } else {
        appState.filterSwitch = 0;
    }
}

}  // namespace

void probeFile() {
    appState.aspectX = appState.aspectY = appState.audioFormatTag = 0;
    probe::MediaInfo info;
    if (appState.persisted.file[0] == u'\0' || info.Open(appState.persisted.file) != probe::kOk) {
        return;
    }
    const std::uint32_t width = info.videoWidth, height = info.videoHeight;
    if (width != 0 && height != 0) {
        const std::uint32_t divisor = std::gcd(width, height);
        appState.aspectX = width / divisor;
        appState.aspectY = height / divisor;
        appState.audioFormatTag = info.audioFormatTag;  // without a picture it stays 0. Required.
    }
}

int openAndRun(const char16_t* path) {
    if (path[0] == u'\0') {
        return 0;
    }
    CFilterControl& graph = appState.filterControl;
    const int built = render(path);
    if (built == kGraphFailed) {
        return 0;
    }
    if (graph.HasNullVideoDecoder() != 0) {
        return refuseUnsupportedVideo();
    }
    if (built != kGraphBuilt && built != kGraphPartlyConnected) {
        return 0;
    }
    finishSetUp();
    if (graph.HasAudioRenderer() == 0) {
        return 0;
    }
    applyFilterSwitch();
    graph.ClearStartOptions();
    applyVolume();
    if (graph.RunGraph() == 0) {
        return 0;
    }
    graph.SetAudioClock();
    graph.StartPositionReporting();
    return 1;
}

}  // namespace Player
