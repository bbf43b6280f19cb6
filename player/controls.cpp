// Position, volume, mute and the choice of the camera.
#include <algorithm>

#include "app/app_state.h"
#include "catalogue/camera.h"
#include "player/host.h"
#include "player/player.h"
#include "player/session.h"

namespace Player {
namespace {

// Index of a path in the play list, -1 when it is not there.
std::int32_t indexInPlayList(const catalogue::PathBuffer& path) {
    catalogue::PathBuffer entry;
    for (std::int32_t i = 0; i < appState.fileCount; ++i) {
        if (appState.playListing.GetFilePath(i, entry) == 1 && catalogue::samePath(entry, path)) {
            return i;
        }
    }
    return -1;
}

}  // namespace

void seekTo(double seconds) {
    settings::PersistedState& persisted = appState.persisted;
    persisted.position = seconds;
    appState.filterControl.SetPosition(seconds);
    const double reached = appState.filterControl.GetPosition();
    if (seconds != 0 && reached == 0) {
        OnNext();
    }
}

void applyVolume() {
    appState.filterControl.SetVolume(appState.audioSuppressed != 0 ? 0 : appState.persisted.volume);
}

void suppressAudio(std::int32_t suppressed) {
    appState.audioSuppressed = suppressed;
    applyVolume();
}

void setVolumeLevel(std::int32_t level) {
    appState.persisted.volume = std::clamp(level, 0, settings::kLoudestVolume);
    applyVolume();
    if (appState.muted == 1) {
        toggleMute();
    }
}

void volumeUp() {
    setVolumeLevel(appState.persisted.volume + 1);
}

void volumeDown() {
    setVolumeLevel(appState.persisted.volume - 1);
}

void toggleMute() {
    appState.muted = appState.muted == 0 ? 1 : 0;
    host::broadcastMute();
    host::refreshVolume();
}

std::int32_t cameraOfCurrentFile() {
    return catalogue::cameraOf(appState.persisted.file);
}

void playAgain(std::int32_t stateBefore, double position) {
    settings::PersistedState& persisted = appState.persisted;
    if (stateBefore == settings::kStopped) {
        return;
    }
    persisted.position = position;
    const std::uint32_t request = appState.playRequests + 1;
    OnPlay();
    // Not after a refusal, nor what was started while its box was open.
    if (stateBefore == settings::kPaused && persisted.playState == settings::kPlaying &&
        request == appState.playRequests) {
        OnPlay();
    }
}

void switchCamera() {
    settings::PersistedState& persisted = appState.persisted;
    catalogue::PathBuffer sibling;
    if (catalogue::siblingRecording(persisted.file, sibling) == 0) {
        return;
    }
    const std::int32_t index = indexInPlayList(sibling);
    if (index < 0) {
        return;
    }
    const std::int32_t stateBefore = persisted.playState;
    const double position = appState.filterControl.GetPosition();
    stopPlayback();
    persisted.fileIndex = index;
    catalogue::copyPath(persisted.file, sibling);
    playAgain(stateBefore, position);
    host::refreshScreen();
}

}  // namespace Player
