// The vehicle's speed, broadcast to every window once a second while its signal is there. The tape
// shows it when it changes, not every second.
#include <atomic>

#include "simulator/console/hub.h"
#include "simulator/tape/registered.h"

namespace hub {
namespace {

constexpr wchar_t kSpeedMessage[] = L"MSG_SystemBroadcast";
constexpr char kSpeedName[] = "MSG_SystemBroadcast";
constexpr int kLost = -1;

std::atomic<int> speed = 0;

UINT speedMessage() {
    static const UINT message = RegisterWindowMessageW(kSpeedMessage);
    return message;
}

void broadcast(WPARAM wParam, LPARAM lParam) {
    PostMessageW(HWND_BROADCAST, speedMessage(), wParam, lParam);
}

}  // namespace

void setSpeed(int kilometresPerHour) {
    speed = kilometresPerHour;
    tape::recordMessage("broadcast", tape::kSystem, "all", kSpeedName, 1, kilometresPerHour);
    broadcast(1, kilometresPerHour);
}

void loseSpeed() {
    speed = kLost;
    tape::recordMessage("broadcast", tape::kSystem, "all", kSpeedName, 0, 0);
    broadcast(0, 0);
}

void speedTick() {
    if (speed != kLost) {
        broadcast(1, speed);
    }
}

bool isOwnBroadcast(UINT message) {
    return message == speedMessage();
}

}  // namespace hub
