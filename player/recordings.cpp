// What happens to the lists when a volume comes or goes and when a recording is deleted.
#include <algorithm>

#include "app/app_state.h"
#include "catalogue/volumes.h"
#include "platform/clock.h"
#include "player/host.h"
#include "player/player.h"

namespace Player {
namespace {

// The play list after its recording at `index` was deleted. Returns the page to show.
std::int32_t continueAfter(std::int32_t index, bool wasPlaying) {
    if (wasPlaying) {
        if (appState.playIndex >= appState.playFileCount) {
            appState.playIndex = 0;
        }
        OnPlay();
        return (appState.browseFolderCount + appState.playIndex) / catalogue::kRowsPerPage;
    }
    if (index < appState.playIndex) {
        --appState.playIndex;
    } else if (appState.playIndex >= appState.playFileCount) {
        appState.playIndex = 0;
    }
    return appState.browsePage;
}

}  // namespace

void storageChanged(std::int32_t arrived, std::int64_t slot) {
    const char16_t* const volume = catalogue::volumeName(slot);
    if (volume == nullptr) {
        return;
    }
    if (arrived == 0 && appState.persisted.playState != settings::kStopped &&
        catalogue::liesOnVolume(appState.playFolderPath, volume)) {
        stopPlayback();
    }
    if (appState.screenMode != kFileList) {
        return;
    }
    if (arrived == 0) {
        constexpr std::uint32_t kUnmountPause = 500;  // milliseconds, until the folder is gone
        platform::sleep(kUnmountPause);
    }
    catalogue::RelistBrowseFolder(appState);
    host::refreshFileList();
}

void DeleteBrowseFile(std::int32_t index) {
    catalogue::PathBuffer path, browseFolder, confirmed;
    if (index >= appState.browseFileCount || appState.browseListing.GetFilePath(index, path) == 0 ||
        !host::ask(u"\n\n파일을 삭제 하시겠습니까?")) {
        return;
    }
    // The list may have changed while the question was open.
    if (appState.browseListing.GetFilePath(index, confirmed) == 0 ||
        !catalogue::samePath(path, confirmed)) {
        return;
    }
    appState.browseListing.GetPath(browseFolder);
    const bool samePlayFolder = catalogue::browsesPlayFolder(appState);
    const bool isSelected = samePlayFolder && index == appState.playIndex;
    const bool wasPlaying = isSelected && appState.persisted.playState != settings::kStopped;
    if (isSelected) {
        stopPlayback();
    }
    if (!platform::deleteFile(path)) {
        return;
    }
    if (isSelected && appState.resumePending != 0) {
        appState.resumePending = 0;
        appState.playLoaded = 1;
        appState.persisted.position = 0;  // it belongs to the file that is gone
    }
    std::int32_t page = appState.browsePage;
    if (samePlayFolder) {
        catalogue::ListPlayFolder(appState, browseFolder);
        page = continueAfter(index, wasPlaying);
    }
    catalogue::ListBrowseFolder(appState, browseFolder);
    appState.browsePage = page < appState.browsePageCount ? page : std::max(page - 1, 0);
    host::refreshFileList();
}

}  // namespace Player
