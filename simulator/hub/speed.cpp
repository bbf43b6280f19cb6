// The vehicle's speed, broadcast to every window once a second while its signal is there. The tape
// shows it when it changes, not every second.
#include <atomic>

#include "simulator/hub/hub.h"
#include "simulator/tape/registered.h"

namespace hub {
namespace {

constexpr char kSpeedName[] = "MSG_SystemBroadcast";

std::atomic<int> current = 0;

UINT speedMessage() {
    static const UINT message = RegisterWindowMessageA(kSpeedName);
    return message;
}

void broadcast(WPARAM wParam, LPARAM lParam) {
    PostMessageW(HWND_BROADCAST, speedMessage(), wParam, lParam);
}

}  // namespace

void setSpeed(int kilometresPerHour) {
    current = kilometresPerHour;
    tape::recordMessage("broadcast", tape::kSystem, "all", kSpeedName, 1, kilometresPerHour);
    broadcast(1, kilometresPerHour);
}

void loseSpeed() {
    current = kNoSignal;
    tape::recordMessage("broadcast", tape::kSystem, "all", kSpeedName, 0, 0);
    broadcast(0, 0);
}

void speedTick() {
    if (current != kNoSignal) {
        broadcast(1, current);
    }
}

int speed() {
    return current;
}

bool isOwnBroadcast(UINT message) {
    return message == speedMessage();
}

}  // namespace hub
