// Play, pause, next, previous, stop.
#include "app/app_state.h"
#include "app/timers.h"
#include "platform/clock.h"
#include "platform/print.h"
#include "player/host.h"
#include "player/player.h"
#include "player/session.h"

namespace Player {
namespace {

enum class Outcome {
    Changed,    // something is played, paused or resumed
    Nothing,    // there is nothing to do
    Failed,     // stopped is what remains
    Overtaken,  // another request came while a message box was open; it has the graph now
};

// How long the half-width player waits before it starts a file.
constexpr std::uint32_t kHalfWidthPause = 700;  // milliseconds

void finishRequest() {
    appState.keyLock = 1;
    app::startTimer(app::kKeyLockTimer);
    platform::print("[TCMovieManager]%s\n", "Player::OnPlay");
    host::signalWaitAnimation(host::Waiting::Ended);
    appState.playLoaded = 1;
}

void followFile() {
    settings::PersistedState& persisted = appState.persisted;
    persisted.endTime = appState.filterControl.GetDuration();
    app::startTimer(app::kPositionTimer);
    if (persisted.position != 0) {
        seekTo(persisted.position);
    } else {
        saveState();
    }
    host::refreshScreen();
}

void refuse() {
    host::signalWaitAnimation(host::Waiting::Ended);
    host::showNotice(u"\n\n재생 할 수 없는 파일 입니다.");
}

// What overtook the request has the graph; only after a stop is there nothing left to wait for.
Outcome leaveToNewer() {
    if (appState.persisted.playState == settings::kStopped) {
        finishRequest();
    }
    return Outcome::Overtaken;
}

Outcome startFile() {
    const std::uint32_t request = ++appState.playRequests;
    appState.playLoaded = 0;
    appState.persisted.playState = settings::kPlaying;
    if (appState.screenMode == kHalfWidth) {
        platform::sleep(kHalfWidthPause);
    }
    host::signalWaitAnimation(host::Waiting::Shown);
    const PictureShape shape = probeFile(appState.persisted.file);
    const bool playing = openAndRun(appState.persisted.file, shape) == 1;
    if (!isOvertaken(request)) {
        if (playing) {
            appState.startedRequest = request;
            followFile();
        } else {
            refuse();
        }
    }
    if (isOvertaken(request)) {
        return leaveToNewer();
    }
    finishRequest();
    return playing ? Outcome::Changed : Outcome::Failed;
}

Outcome startSelected() {
    settings::PersistedState& persisted = appState.persisted;
    if (appState.playListing.GetFilePath(persisted.fileIndex, persisted.file) == 0) {
        persisted.fileIndex = 0;
        return Outcome::Failed;
    }
    if (persisted.file[0] == u'\0') {
        return Outcome::Nothing;
    }
    if (catalogue::PathKind(persisted.file) != 1) {
        const std::uint32_t request = appState.playRequests;
        host::showNotice(u"\n\n재생 파일이 없습니다.");
        return isOvertaken(request) ? Outcome::Overtaken : Outcome::Failed;
    }
    return startFile();
}

Outcome pause() {
    if (appState.filterControl.PauseGraph() == 0) {
        return Outcome::Failed;
    }
    appState.persisted.playState = settings::kPaused;
    return Outcome::Changed;
}

Outcome resume() {
    if (appState.filterControl.RunGraph() == 0) {
        return Outcome::Failed;
    }
    appState.persisted.playState = settings::kPlaying;
    return Outcome::Changed;
}

// A request that comes while another is still starting, or while its refusal is told, overtakes it:
// the graph of a file that was refused is never paused or run.
Outcome act() {
    if (appState.persisted.playState == settings::kStopped ||
        isOvertaken(appState.startedRequest)) {
        return startSelected();
    }
    return appState.persisted.playState == settings::kPlaying ? pause() : resume();
}

// True when the request is far enough from the last one that was taken.
bool acceptSkip() {
    constexpr std::uint32_t kDebounce = 1700;  // milliseconds
    const std::uint32_t now = platform::tickCount();
    if (now - appState.lastSkipTick < kDebounce) {
        return false;
    }
    appState.lastSkipTick = now;
    return true;
}

void skip(const char* function, std::int32_t step) {
    if (!acceptSkip()) {
        platform::print("--%s \r\n", function);
        return;
    }
    stopPlayback();
    if (appState.resumePending != 0) {
        appState.resumePending = 0;
        appState.persisted.position = 0;  // it belongs to the file that is passed over
    }
    std::int32_t& index = appState.persisted.fileIndex;
    index += step;
    if (step > 0 && index >= appState.fileCount) {
        index = 0;
    } else if (step < 0 && index < 0) {
        index = appState.fileCount - 1;
    }
    host::postPlayKey();
}

void parkOutput() {
    constexpr VideoPlacement kOutsideTheScreen = {801, 481, 10, 10, true, kBackLayer, false};
    appState.filterControl.PlaceOutput(kOutsideTheScreen);
}

}  // namespace

bool isOvertaken(std::uint32_t request) {
    return request != appState.playRequests;
}

void OnPlay() {
    appState.resumePending = 0;
    switch (act()) {
        case Outcome::Nothing:
        case Outcome::Overtaken:
            return;
        case Outcome::Failed:
            appState.playLoaded = 1;  // a resume that found nothing to play is finished too
            stopPlayback();
            if (appState.screenMode == kSlideBanner) {
                host::showMode(appState.previousScreenMode);
            }
            break;
        case Outcome::Changed:
            break;
    }
    host::refreshScreen();
}

void OnNext() {
    platform::print("\r\n\n+++++%s: OnNext\r\n", "Player::OnNext");
    skip("Player::OnNext", 1);
}

void OnPrev() {
    platform::print("\r\n\n+++++%s: OnPrev\r\n", "Player::OnPrev");
    skip("Player::OnPrev", -1);
}

void stopPlayback() {
    settings::PersistedState& persisted = appState.persisted;
    if (persisted.playState == settings::kStopped) {
        return;
    }
    ++appState.playRequests;  // a request that is still under way has lost its graph
    appState.liveLength = 0;
    appState.filterControl.SetColourKey(0);
    appState.videoArea = false;
    host::refreshScreen();
    app::stopTimer(app::kPositionTimer);
    appState.filterControl.SetOwnerWindow(appState.mainWindow);
    parkOutput();
    releaseGraph();
    persisted.position = 0;
    persisted.playState = settings::kStopped;
    host::clearProgress();
    host::refreshScreen();
}

void releaseGraph() {
    if (appState.filterControl.hasGraph()) {
        appState.filterControl.StopGraph();
        appState.filterControl.DeleteFilters();
        appState.filterControl.DestroyFilterGraph();
    }
}

}  // namespace Player
