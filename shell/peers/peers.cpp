#include "shell/peers/peers.h"

#include "app/app_state.h"
#include "app/paths.h"
#include "settings/ini_store.h"

namespace shell {
namespace {

platform::Window processManager() {
    return platform::findWindow(u"Processmanager");
}

}  // namespace

int postToProcessManager(platform::WParam wParam, platform::LParam lParam) {
    const platform::Window peer = processManager();
    if (peer == nullptr) {
        return 0;
    }
    platform::postMessage(peer, appState.toProcessManagerMessage, wParam, lParam);
    return 1;
}

void sendToProcessManager(platform::WParam wParam, platform::LParam lParam) {
    if (const platform::Window peer = processManager()) {
        platform::sendMessage(peer, appState.toProcessManagerMessage, wParam, lParam);
    }
}

void signalWaitAnimation(int show) {
    const std::uint32_t message = platform::registerMessage(u"MSG_TO_ANI_WAITING");
    const platform::Window peer = platform::findWindow(u"ani_waiting");
    if (peer != nullptr && appState.screenMode != kHidden) {
        platform::postMessage(peer, message, static_cast<platform::WParam>(show), 0);
    }
}

void broadcastMute() {
    platform::broadcastMessage(appState.toProcessManagerMessage, kMuteToggled, 0);
}

void postRemoteKey(RemoteKey key) {
    platform::postMessage(appState.mainWindow, appState.remoteKeyMessage, key, 0);
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
    for (const char16_t* key : {u"AppProgram", u"AppProgramMode", u"AppProgramModeTimer"}) {
        settings::writeIniInt(u"TRIP", key, kClosedByUser, app::kConfigFile);
    }
}

}  // namespace shell
