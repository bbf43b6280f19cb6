// Whether a file can be played, and the start of one that can.
#include <numeric>

#include "app/app_state.h"
#include "platform/print.h"
#include "player/host.h"
#include "player/player.h"
#include "player/session.h"
#include "probe/media_info.h"

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

int render(const char16_t* path, const PictureShape& shape) {
    const platform::Rect& area = appState.outputRectangle;
    CFilterControl& graph = appState.filterControl;
    releaseGraph();
    graph.setAspect(shape.aspectX, shape.aspectY);
    const std::uint32_t request = appState.playRequests;
    const int result =
        graph.CreateFilterForPlaying(path, area.left, area.top, area.right - area.left,
                                     area.bottom - area.top, appState.mainWindow);
    if (isOvertaken(request)) {
        return kGraphOvertaken;
    }
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
    host::placeVideo();
    graph.SetFilterOption(0);
    graph.SetChromakeySwitch(appState.screenMode != kModeWithoutKey ? 1 : 0);
}

void applyFilterSwitch() {
    constexpr std::uint32_t kSwitchWanted = 2;
    if (appState.filterControl.FilterStatus() == kSwitchWanted) {
        appState.filterControl.SetFilterOption(static_cast<std::uint32_t>(appState.filterSwitch));
    } else {
        appState.filterSwitch = 0;
    }
}

}  // namespace

PictureShape probeFile(const char16_t* path) {
    appState.aspectX = appState.aspectY = appState.audioFormatTag = 0;
    probe::MediaInfo info;
    if (path[0] != u'\0' && info.Open(path) == probe::kOk && info.videoWidth != 0 &&
        info.videoHeight != 0) {
        const std::uint32_t divisor = std::gcd(info.videoWidth, info.videoHeight);
        appState.aspectX = info.videoWidth / divisor;
        appState.aspectY = info.videoHeight / divisor;
        appState.audioFormatTag = info.audioFormatTag;  // without a picture it stays 0. Required.
    }
    return {appState.aspectX, appState.aspectY};
}

int openAndRun(const char16_t* path, const PictureShape& shape) {
    if (path[0] == u'\0') {
        return 0;
    }
    CFilterControl& graph = appState.filterControl;
    const int built = render(path, shape);
    if (built == kGraphFailed || built == kGraphOvertaken) {
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
    const std::uint32_t request = appState.playRequests;
    graph.SetAudioClock();
    if (isOvertaken(request)) {
        return 0;
    }
    graph.StartPositionReporting();
    return 1;
}

}  // namespace Player
