// The other processes of the unit, found by the titles of their windows. One that is missing turns
// what is sent to it into nothing.
#include <windows.h>

#include "app/app_state.h"
#include "app/paths.h"
#include "platform/board.h"
#include "platform/wide.h"
#include "settings/ini_store.h"
#include "shell/registered_messages.h"
#include "shell/screens/screens.h"
#include "shell/shell.h"

namespace shell {
namespace {

constexpr wchar_t kProcessManagerTitle[] = L"Processmanager";
constexpr wchar_t kWaitAnimationTitle[] = L"ani_waiting";

UINT toProcessManagerMessage() {
    static const UINT message = RegisterWindowMessageW(platform::wide(kToProcessManager));
    return message;
}

}  // namespace

int postToProcessManager(WPARAM wParam, LPARAM lParam) {
    const HWND peer = FindWindowW(nullptr, kProcessManagerTitle);
    if (peer == nullptr) {
        return 0;
    }
    PostMessageW(peer, toProcessManagerMessage(), wParam, lParam);
    return 1;
}

void sendToProcessManager(WPARAM wParam, LPARAM lParam) {
    if (const HWND peer = FindWindowW(nullptr, kProcessManagerTitle)) {
        SendMessageW(peer, toProcessManagerMessage(), wParam, lParam);
    }
}

void signalWaitAnimation(int show) {
    const UINT message = RegisterWindowMessageW(platform::wide(kToWaitAnimation));
    const HWND peer = FindWindowW(nullptr, kWaitAnimationTitle);
    if (peer != nullptr && appState.screenMode != kHidden) {
        PostMessageW(peer, message, static_cast<WPARAM>(show), 0);
    }
}

void toggleMute() {
    appState.muted = appState.muted == 0 ? 1 : 0;
    PostMessageW(HWND_BROADCAST, toProcessManagerMessage(), kMuteToggled, 0);
}

void postRemoteKey(WPARAM key) {
    static const UINT message =
        RegisterWindowMessageW(platform::wide(kRegisteredMessages[kRemoteKeyRow]));
    PostMessageW(appState.mainWindow, message, key, 0);
}

void writeExitPreparation() {
    constexpr std::int32_t kThisProgram = 2;
    constexpr std::int32_t kModeFull = 0, kModeHalf = 1, kModeHidden = 2;
    const std::int32_t mode = appState.screenMode == kHalfWidth ? kModeHalf
                              : appState.screenMode == kHidden  ? kModeHidden
                                                                : kModeFull;
    settings::writeIniInt(u"TRIP", u"AppProgram", kThisProgram, app::kConfigFile);
    settings::writeIniInt(u"TRIP", u"AppProgramMode", mode, app::kConfigFile);
}

void writeScreenExit() {
    constexpr std::int32_t kClosedByUser = 5;
    settings::writeIniInt(u"TRIP", u"AppProgram", kClosedByUser, app::kConfigFile);
    settings::writeIniInt(u"TRIP", u"AppProgramMode", kClosedByUser, app::kConfigFile);
    settings::writeIniInt(u"TRIP", u"AppProgramModeTimer", kClosedByUser, app::kConfigFile);
}

void showNotice(const wchar_t* text) {
    ui::forgetTouch();
    platform::showMessageBox(appState.mainWindow, text, L"", MB_OK, 1);
}

}  // namespace shell
