// The window around the player, as the program has it.
#include "app/app_state.h"
#include "platform/board.h"
#include "player/host.h"
#include "shell/peers/peers.h"
#include "shell/screens/effects.h"
#include "shell/screens/refresh.h"
#include "shell/screens/screen_mode.h"

namespace Player::host {

void refreshScreen() {
    screens::refreshScreen();
}

void refreshVolume() {
    screens::refreshVolume();
}

void refreshFileList() {
    screens::refreshFileList();
}

void clearProgress() {
    screens::clearProgress();
}

void showNotice(const char16_t* text) {
    screens::showBox(text, platform::kOneButton);
}

bool ask(const char16_t* question) {
    return screens::showBox(question, platform::kYesNo) == platform::kAnsweredYes;
}

void showMode(std::int32_t mode) {
    screens::setScreenMode(mode);
}

void placeVideo() {
    screens::placeVideo(0);
}

void showVideo() {
    screens::setVideoHidden(0);
}

void signalWaitAnimation(Waiting waiting) {
    shell::signalWaitAnimation(static_cast<int>(waiting));
}

void postPlayKey() {
    shell::postRemoteKey(shell::kRemotePlay);
}

void broadcastMute() {
    shell::broadcastMute();
}

}  // namespace Player::host
