// Commands of the process manager.
#include <windows.h>

#include <array>

#include "app/app_state.h"
#include "player/player.h"
#include "shell/handlers.h"
#include "shell/screens/screens.h"
#include "shell/shell.h"

namespace shell {
namespace {

constexpr LPARAM kPrepareExit = 3;
constexpr LPARAM kExitAtOnce = 2;

void showFullWidth(LPARAM) {
    setScreenMode(kFullWidth);
    SetTimer(appState.mainWindow, kBarTimer, kBarPeriod, nullptr);
}

void showHalfWidth(LPARAM) {
    setScreenMode(kHalfWidth);
    postToProcessManager(kHalfWidthShown, 0);
}

void hide(LPARAM) {
    setScreenMode(kHidden);
}

void prepareExit() {
    if (appState.connectMode == 1) {
        appState.exitMessageTimed = 1;
    } else {
        writeExitPreparation();
    }
    if (appState.imageLoaded == 1 && appState.playLoaded == 1) {
        KillTimer(appState.mainWindow, kExitReadyTimer);
        sendToProcessManager(kExitReady, 1);
    } else {
        sendToProcessManager(kExitReady, 0);
        SetTimer(appState.mainWindow, kExitReadyTimer, kExitReadyPeriod, nullptr);
    }
}

void exitOrPrepare(LPARAM lParam) {
    if (lParam == kPrepareExit) {
        prepareExit();
        return;
    }
    if (appState.exiting != 0) {
        return;  // the exit message is open and its loop lets requests in
    }
    appState.exiting = 1;
    if (appState.screenMode == kHalfWidth) {
        Sleep(kHalfWidthPause);
    }
    const bool atOnce =
        (appState.screenMode == kFullWidth || appState.screenMode == kSlideBanner) &&
        lParam == kExitAtOnce;
    if (!atOnce) {
        signalWaitAnimation(1);
    }
    Player::saveAndClose();
    if (!atOnce) {
        signalWaitAnimation(0);
    }
    DestroyWindow(appState.mainWindow);
}

void silence(LPARAM) {
    appState.audioSuppressed = 1;
    appState.filterControl.SetVolume(0);
    ui::refreshSoundSentence();
}

void giveSoundBack(LPARAM) {
    appState.audioSuppressed = 0;
    appState.filterControl.SetVolume(appState.persisted.volume);
    ui::refreshSoundSentence();
}

void previousFile(LPARAM) {
    Player::OnPrev();
}

void nextFile(LPARAM) {
    Player::OnNext();
}

void stop(LPARAM) {
    Player::stopPlayback();
    if (appState.screenMode == kSlideBanner) {
        setScreenMode(appState.previousScreenMode);
    }
}

void play(LPARAM) {
    if (appState.persisted.playState != settings::kPlaying) {
        Player::OnPlay();
    }
}

void showFileList(LPARAM) {
    setScreenMode(kFileList);
}

void goToNavigation(LPARAM) {
    postToProcessManager(kGoNavigation, 0);
}

struct CommandRow {
    WPARAM command;
    void (*act)(LPARAM lParam);
};
constexpr std::array<CommandRow, 12> kCommands = {{
    {0, showFullWidth},
    {1, showHalfWidth},
    {2, hide},
    {3, exitOrPrepare},
    {15007, silence},
    {15008, giveSoundBack},
    {20502, previousFile},
    {20503, nextFile},
    {20506, stop},
    {20507, play},
    {20511, showFileList},
    {20512, goToNavigation},
}};

}  // namespace

LRESULT onProcessManagerCommand(HWND, UINT, WPARAM wParam, LPARAM lParam) {
    for (const CommandRow& row : kCommands) {
        if (row.command == wParam) {
            row.act(lParam);
            break;
        }
    }
    return 0;
}

}  // namespace shell
