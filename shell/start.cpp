#include "shell/start.h"

#include <algorithm>
#include <string_view>

#include "app/app_state.h"
#include "shell/main_window.h"
#include "shell/peers/peers.h"

namespace shell {
namespace {

platform::Window makeWindow(StartGate& gate) {
    constexpr int kHalf = ui::kScreenWidth / 2;
    int left = 0, width = 0;
    if (appState.screenMode == kFullWidth) {
        width = ui::kScreenWidth;
    } else if (appState.screenMode == kHalfWidth) {
        left = kHalf;
        width = kHalf;
    } else {
        return nullptr;  // the player starts with a player screen
    }
    return createMainWindow(appState.hInstance, left, width, ui::kScreenHeight, gate);
}

void handOver(platform::Window running) {
    platform::postMessage(running, appState.commandMessage, appState.launchAsPip == 1 ? 1 : 0, 0);
    postToProcessManager(kSkinLoaded, 0);
}

}  // namespace

bool asksForHalfWidth(const char16_t* commandLine) {
    constexpr std::size_t kExamined = 32;
    std::u16string_view line = std::u16string_view(commandLine).substr(0, kExamined);
    line.remove_prefix(std::min(line.find_first_not_of(u" \t"), line.size()));
    return line.substr(0, line.find_first_of(u" \t")) == u"PIP";
}

int run(platform::Instance instance, const char16_t* commandLine, int show) {
    appState.launchAsPip = asksForHalfWidth(commandLine) ? 1 : 0;
    StartGate gate;
    if (const platform::Window running = platform::findWindow(kWindowName)) {
        handOver(running);
        return 0;
    }
    appState.screenMode = appState.launchAsPip;
    appState.hInstance = instance;
    const platform::Window window = registerWindowClass(instance) ? makeWindow(gate) : nullptr;
    if (window == nullptr) {
        return 0;
    }
    showFirst(window, show);
    const int exitValue = runMessageLoop();
    signalWaitAnimation(0);
    return exitValue;
}

}  // namespace shell
