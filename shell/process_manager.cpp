// Commands of the process manager.
#include <array>

#include "app/app_state.h"
#include "app/timers.h"
#include "platform/clock.h"
#include "player/player.h"
#include "shell/handlers.h"
#include "shell/peers/peers.h"
#include "shell/screens/refresh.h"
#include "shell/screens/screen_mode.h"

namespace shell {
namespace {

constexpr LParam kPrepareExit = 3;
constexpr LParam kExitAtOnce = 2;

// How long the half-width player waits before it exits.
constexpr std::uint32_t kHalfWidthPause = 700;  // milliseconds

void showFullWidth(LParam) {
    screens::setScreenMode(kFullWidth);
    app::startTimer(app::kBarTimer);
}

void showHalfWidth(LParam) {
    screens::setScreenMode(kHalfWidth);
    postToProcessManager(kHalfWidthShown, 0);
}

void hide(LParam) {
    screens::setScreenMode(kHidden);
}

void prepareExit() {
    if (appState.connectMode == 1) {
        appState.exitMessageTimed = 1;
    } else {
        writeExitPreparation();
    }
    if (appState.imageLoaded == 1 && appState.playLoaded == 1) {
        app::stopTimer(app::kExitReadyTimer);
        sendToProcessManager(kExitReady, 1);
    } else {
        sendToProcessManager(kExitReady, 0);
        app::startTimer(app::kExitReadyTimer);
    }
}

void exitOrPrepare(LParam lParam) {
    if (lParam == kPrepareExit) {
        prepareExit();
        return;
    }
    if (appState.exiting) {
        return;  // the exit message is open and its loop lets requests in
    }
    appState.exiting = true;
    if (appState.screenMode == kHalfWidth) {
        platform::sleep(kHalfWidthPause);
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
    platform::destroyWindow(appState.mainWindow);
}

void silence(LParam) {
    Player::suppressAudio(1);
    screens::refreshSoundSentence();
}

void giveSoundBack(LParam) {
    Player::suppressAudio(0);
    screens::refreshSoundSentence();
}

void previousFile(LParam) {
    Player::OnPrev();
}

void nextFile(LParam) {
    Player::OnNext();
}

void stop(LParam) {
    Player::stopPlayback();
    if (appState.screenMode == kSlideBanner) {
        screens::setScreenMode(appState.previousScreenMode);
    }
}

void play(LParam) {
    if (appState.persisted.playState != settings::kPlaying) {
        Player::OnPlay();
    }
}

void showFileList(LParam) {
    screens::setScreenMode(kFileList);
}

void goToNavigation(LParam) {
    postToProcessManager(kGoNavigation, 0);
}

struct CommandRow {
    WParam command;
    void (*act)(LParam lParam);
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

Answer onProcessManagerCommand(Window, std::uint32_t, WParam wParam, LParam lParam) {
    for (const CommandRow& row : kCommands) {
        if (row.command == wParam) {
            row.act(lParam);
            break;
        }
    }
    return 0;
}

}  // namespace shell
