#include "shell/screens/effects.h"

#include <windows.h>

#include "app/app_state.h"
#include "platform/board.h"
#include "player/player.h"
#include "shell/screens/screens.h"
#include "shell/shell.h"

namespace ui {
namespace {

constexpr wchar_t kConnectModeRefusal[] =
    L"\r\nTandema 재생모드\r\n현재 상태에서는 동작하지 않습니다.";

void startPopup() {
    constexpr wchar_t kPopup[] = L"\\ResidentFlash\\apps\\Popup.exe";
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    PROCESS_INFORMATION process{};
    if (CreateProcessW(kPopup, nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                       &process) != 0) {
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
}

void closePlayer() {
    shell::writeScreenExit();
    shell::postToProcessManager(shell::kClosePlayer, 0);
}

void hideBar() {
    KillTimer(appState.mainWindow, shell::kBarTimer);
    appState.screens.barShown = 0;
    shell::setScreenMode(kSlideBanner);
}

// A tap brings the slide screen back to the bar; the picture of the half-width screen leads to the
// full width when there is one.
void showFullWidth() {
    if (appState.screenMode == kSlideBanner || appState.persisted.playState != settings::kStopped) {
        shell::setScreenMode(kFullWidth);
    }
}

void actOnList(Action action, std::int32_t row, Effects& effects) {
    switch (action) {
        case Action::GoToParent:
            return goToParent();
        case Action::LeaveList:
            return leaveListScreen();
        case Action::PageUp:
            return effects.setListPage(appState.browsePage - 1);
        case Action::PageDown:
            return effects.setListPage(appState.browsePage + 1);
        case Action::DeleteRow:
            return deleteRow(row);
        case Action::OpenRow:
            return openRow(row);
        default:
            return;
    }
}

}  // namespace

void Effects::invalidate(const Rect& area) {
    const RECT rectangle = {area.left, area.top, area.right, area.bottom};
    if (!isEmpty(area)) {
        InvalidateRect(appState.mainWindow, &rectangle, FALSE);
    }
}

void Effects::invalidateAll() {
    InvalidateRect(appState.mainWindow, nullptr, FALSE);
}

void Effects::update() {
    UpdateWindow(appState.mainWindow);
}

void Effects::capturePointer() {
    SetCapture(appState.mainWindow);
}

void Effects::releasePointer() {
    ReleaseCapture();
}

void Effects::startTimer(ScreenTimer timer) {
    if (timer == ScreenTimer::Bar && appState.screenMode == kFullWidth) {
        SetTimer(appState.mainWindow, shell::kBarTimer, shell::kBarPeriod, nullptr);
    } else if (timer == ScreenTimer::Position &&
               appState.persisted.playState != settings::kStopped) {
        SetTimer(appState.mainWindow, shell::kPositionTimer, shell::kPositionPeriod, nullptr);
    }
}

void Effects::stopTimer(ScreenTimer timer) {
    KillTimer(appState.mainWindow,
              timer == ScreenTimer::Bar ? shell::kBarTimer : shell::kPositionTimer);
}

void Effects::click() {
    constexpr int kKeyClick = 0;
    platform::playSound(kKeyClick);
}

void Effects::act(Action action, std::int32_t row) {
    switch (action) {
        case Action::Refuse:
            return shell::showNotice(kConnectModeRefusal);
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
        case Action::NextFile:
            return Player::OnNext();
        case Action::PlayPause:
            return shell::postRemoteKey(shell::kRemotePlay);
        case Action::Stop:
            return Player::stopPlayback();
        case Action::ShowList:
            return shell::setScreenMode(kFileList);
        case Action::VolumeDown:
            Player::volumeDown();
            return refreshVolume();
        case Action::VolumeUp:
            Player::volumeUp();
            return refreshVolume();
        case Action::ToggleMute:
            return Player::toggleMute();
        case Action::Seek:
            if (appState.persisted.playState != settings::kStopped &&
                appState.persisted.endTime != 0) {
                Player::seekTo(appState.screens.displayedPosition);
            }
            return;
        case Action::SwitchCamera:
            return Player::switchCamera();
        case Action::HideBar:
            return hideBar();
        case Action::StartPopup:
            return startPopup();
        case Action::ShowFullWidth:
            return showFullWidth();
        default:
            return actOnList(action, row, *this);
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
    appState.screens.bannerShown = 1;
    SetTimer(appState.mainWindow, shell::kBannerTimer, shell::kBannerPeriod, nullptr);
    refreshVolume();
}

}  // namespace ui
