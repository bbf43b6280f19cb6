#include "shell/screens/file_list.h"

#include <algorithm>

#include "app/app_state.h"
#include "player/player.h"
#include "shell/peers/peers.h"
#include "shell/screens/refresh.h"
#include "shell/screens/screen_mode.h"

namespace screens {
namespace {

void showPageOfPlayed() {
    if (catalogue::browsesPlayFolder(appState) && appState.playIndex < appState.browseFileCount) {
        appState.browsePage =
            (appState.browseFolderCount + std::max(appState.playIndex, 0)) / ui::kListRows;
    }
}

void chooseFile(std::int32_t index) {
    const bool isSelected = catalogue::browsesPlayFolder(appState) && index == appState.playIndex;
    if (isSelected && appState.persisted.playState != settings::kStopped) {
        leaveListScreen();  // it is playing: let it be seen
        return;
    }
    Player::stopPlayback();
    catalogue::SelectBrowseFile(appState, index);
    if (!isSelected) {
        appState.persisted.position = 0;
    }
    shell::postRemoteKey(shell::kRemotePlay);
    refreshFileList();
}

}  // namespace

// What is played is found again at once; otherwise the list is as it was left.
void enterFileList() {
    const bool showsPlayed =
        !appState.screens.listShown || appState.persisted.playState != settings::kStopped;
    appState.screens.listShown = true;
    if (showsPlayed) {
        catalogue::ListBrowseFolder(appState, appState.playFolderPath);
        appState.browsePage = 0;
        showPageOfPlayed();
    } else {
        catalogue::RelistBrowseFolder(appState);
    }
}

bool hasParentFolder() {
    catalogue::PathBuffer path;
    if (appState.browseListing.GetPath(path) == 0) {
        return false;
    }
    appState.browseListing.GetParentPath(path);
    return appState.connectMode != 1 || path[0] != u'\0';
}

void goToParent() {
    catalogue::BrowseParent(appState);
    refreshFileList();
}

void leaveListScreen() {
    if (appState.previousScreenMode == kHalfWidth) {
        shell::postToProcessManager(shell::kGoNavigation, 0);
    } else {
        setScreenMode(appState.previousScreenMode);
    }
}

void openRow(std::int32_t row) {
    const std::int32_t entry = appState.browsePage * ui::kListRows + row;
    const std::int32_t file = entry - appState.browseFolderCount;
    if (entry < appState.browseFolderCount) {
        catalogue::EnterBrowseFolder(appState, entry);
        refreshFileList();
    } else if (file < appState.browseFileCount) {
        chooseFile(file);
    }
}

void deleteRow(std::int32_t row) {
    Player::DeleteBrowseFile(appState.browsePage * ui::kListRows - appState.browseFolderCount +
                             row);
}

}  // namespace screens
