#include "shell/screens/effects.h"

#include <algorithm>

#include "app/app_state.h"
#include "app/timers.h"
#include "platform/board.h"
#include "platform/program.h"
#include "platform/window.h"
#include "player/player.h"
#include "settings/persisted_state.h"
#include "shell/peers/peers.h"
#include "shell/screens/file_list.h"
#include "shell/screens/refresh.h"
#include "shell/screens/screen_mode.h"

namespace screens {
namespace {

using ui::Action;

constexpr char16_t kConnectModeRefusal[] =
    u"\r\nTandema 재생모드\r\n현재 상태에서는 동작하지 않습니다.";
constexpr char16_t kPopup[] = u"\\ResidentFlash\\apps\\Popup.exe";

void closePlayer() {
    shell::writeScreenExit();
    shell::postToProcessManager(shell::kClosePlayer, 0);
}

void hideBar() {
    app::stopTimer(app::kBarTimer);
    appState.screens.barShown = false;
    setScreenMode(kSlideBanner);
}

void stepVolume(void (*step)()) {
    step();
    refreshVolume();
}

void seek() {
    if (appState.persisted.playState != settings::kStopped && appState.persisted.endTime != 0) {
        Player::seekTo(appState.screens.displayedPosition);
    }
}

// A tap brings the slide screen back to the bar; the picture of the half-width screen leads to the
// full width when there is one.
void showFullWidth() {
    if (appState.screenMode == kSlideBanner || appState.persisted.playState != settings::kStopped) {
        setScreenMode(kFullWidth);
    }
}

app::Timer timerOf(ui::ScreenTimer timer) {
    return timer == ui::ScreenTimer::Bar ? app::kBarTimer : app::kPositionTimer;
}

}  // namespace

int showBox(const char16_t* text, std::uint32_t style) {
    forgetTouch();
    return platform::showMessageBox(appState.mainWindow, text, u"", style, 1);
}

void Effects::invalidate(const ui::Rect& area) {
    if (!ui::isEmpty(area)) {
        platform::invalidate(appState.mainWindow, area);
    }
}

void Effects::invalidateAll() {
    platform::invalidate(appState.mainWindow);
}

void Effects::update() {
    platform::updateWindow(appState.mainWindow);
}

void Effects::capturePointer() {
    platform::capturePointer(appState.mainWindow);
}

void Effects::releasePointer() {
    platform::releasePointer();
}

void Effects::startTimer(ui::ScreenTimer timer) {
    const bool wanted = timer == ui::ScreenTimer::Bar
                            ? appState.screenMode == kFullWidth
                            : appState.persisted.playState != settings::kStopped;
    if (wanted) {
        app::startTimer(timerOf(timer));
    }
}

void Effects::stopTimer(ui::ScreenTimer timer) {
    app::stopTimer(timerOf(timer));
}

void Effects::click() {
    constexpr int kKeyClick = 0;
    platform::playSound(kKeyClick);
}

void Effects::act(Action action, std::int32_t row) {
    switch (action) {
        case Action::None:
        case Action::Scroll:  // the page follows the finger
            return;
        case Action::Refuse:
            showBox(kConnectModeRefusal, platform::kOneButton);
            return;
        case Action::GoHome:
            shell::postToProcessManager(shell::kGoHome, 0);
            return;
        case Action::GoNavigation:
            shell::postToProcessManager(shell::kGoNavigation, 0);
            return;
        case Action::Close:
            return closePlayer();
        case Action::PreviousFile:
            return Player::OnPrev();
        case Action::PlayPause:
            return shell::postRemoteKey(shell::kRemotePlay);
        case Action::Stop:
            return Player::stopPlayback();
        case Action::NextFile:
            return Player::OnNext();
        case Action::ShowList:
            return setScreenMode(kFileList);
        case Action::VolumeDown:
            return stepVolume(Player::volumeDown);
        case Action::ToggleMute:
            return Player::toggleMute();
        case Action::VolumeUp:
            return stepVolume(Player::volumeUp);
        case Action::Seek:
            return seek();
        case Action::SwitchCamera:
            return Player::switchCamera();
        case Action::HideBar:
            return hideBar();
        case Action::StartPopup:
            return platform::startProgram(kPopup);
        case Action::ShowFullWidth:
            return showFullWidth();
        case Action::GoToParent:
            return goToParent();
        case Action::LeaveList:
            return leaveListScreen();
        case Action::PageUp:
            return setListPage(appState.browsePage - 1);
        case Action::PageDown:
            return setListPage(appState.browsePage + 1);
        case Action::DeleteRow:
            return deleteRow(row);
        case Action::OpenRow:
            return openRow(row);
    }
}

void Effects::setVolumeLevel(std::int32_t level) {
    Player::setVolumeLevel(level);
    refreshSoundSentence();
}

void Effects::setListPage(std::int32_t page) {
    const std::int32_t last = std::max(appState.browsePageCount - 1, 0);
    const std::int32_t shown = std::clamp(page, 0, last);
    if (shown != appState.browsePage) {
        appState.browsePage = shown;
        invalidateAll();
    }
}

void Effects::showBanner() {
    appState.screens.bannerShown = true;
    app::startTimer(app::kBannerTimer);
    refreshVolume();
}

}  // namespace screens
