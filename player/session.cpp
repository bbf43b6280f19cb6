// From one run to the next: taking up where the last ended, and leaving.
#include "player/session.h"

#include <algorithm>
#include <array>

#include "app/app_state.h"
#include "app/paths.h"
#include "graph/thread_priority.h"
#include "platform/com.h"
#include "platform/print.h"
#include "platform/window.h"
#include "player/host.h"
#include "settings/ini_store.h"

namespace Player {
namespace {

void restoreRecord() {
    const bool read = settings::readPersistedState(appState.persisted) == 1;
    if (!read || appState.connectMode == 1) {
        appState.persisted = settings::PersistedState{};
    } else {
        settings::repair(appState.persisted);
    }
    if (appState.connectMode == 1) {
        catalogue::PathBuffer folder = {u'\\'};
        std::copy_n(appState.connectPath, platform::kPathCapacity - 2, folder + 1);
        catalogue::copyPath(appState.persisted.folder, folder);
    }
}

void clearRunState() {
    appState.muted = settings::readIniInt(u"Sound", u"MUTE", 0, app::kConfigFile) == 1 ? 1 : 0;
    appState.audioSuppressed = 0;
    appState.fileCount = 0;
    appState.resumePending = 0;
    appState.loadRestOfSkin = true;
    appState.pendingKeyAction = kNoAction;
    appState.browsePage = 0;
}

void selectStoredFile() {
    settings::PersistedState& persisted = appState.persisted;
    catalogue::PathBuffer folder;
    catalogue::copyPath(folder, persisted.folder);
    catalogue::ListPlayFolder(appState, folder);
    if (persisted.fileIndex >= appState.fileCount) {
        persisted.fileIndex = 0;
    }
    appState.playListing.GetFilePath(persisted.fileIndex, persisted.file);
}

void checkStoredFile() {
    settings::PersistedState& persisted = appState.persisted;
    if (catalogue::PathKind(persisted.file) == 1) {
        if (persisted.playState != settings::kStopped) {
            persisted.playState = settings::kStopped;
            appState.resumePending = 1;
            appState.playLoaded = 0;
        }
        return;
    }
    if (persisted.file[0] != u'\0') {
        const std::uint32_t request = appState.playRequests;
        host::showNotice(u"\n\n재생 파일이 없습니다.");
        if (isOvertaken(request)) {
            return;  // the record is that of the file that was started meanwhile
        }
    }
    persisted.playState = settings::kStopped;
    persisted.position = 0;
    persisted.endTime = 0;
}

}  // namespace

void initialisePlayback() {
    restoreRecord();
    clearRunState();
    selectStoredFile();
    SetDirectShowThreadPriority(1);
    ForgetCachedGraphs();
    host::refreshScreen();
    checkStoredFile();
    if (appState.exiting) {
        return;  // the notice's loop let the exit in, and all has been handed back
    }
    host::showVideo();
    OrviExecMutimedia(1, 1);
}

void saveState() {
    if (appState.connectMode != 1) {
        settings::writePersistedState(appState.persisted);
    }
}

void saveAndClose() {
    saveState();
    stopPlayback();
    appState.playListing.Clear();
    appState.browseListing.Clear();
    // COM is left before the window goes away, so all that is held of it goes first.
    releaseGraph();
    platform::releaseObject(appState.imagingFactory);
    appState.imagingFactory = nullptr;
    platform::leaveCom();
    OrviExecMutimedia(1, 0);
}

void OrviExecMutimedia(std::int32_t a, std::int32_t b) {
    constexpr std::uintptr_t kSoundHandOver = 1088;
    constexpr const char* kFunction = "Player::OrviExecMutimedia";
    platform::print("[%d] %s \n", 1723, kFunction);
    if (const platform::Window navigation = platform::findWindow(u"Orvi")) {
        platform::print("[%d] %s \n", 1727, kFunction);
        std::array<std::int32_t, 2> values = {a, b};
        platform::sendValues(navigation, kSoundHandOver, values);
        platform::print("[%d] %s \n", 1735, kFunction);
    }
    platform::print("[%d] %s \n", 1737, kFunction);
}

}  // namespace Player
