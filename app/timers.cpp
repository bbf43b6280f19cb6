#include "app/timers.h"

#include "app/app_state.h"
#include "platform/window.h"

namespace app {

void startTimer(Timer timer) {
    for (const TimerRow& row : kTimers) {
        if (row.id == timer) {
            platform::setTimer(appState.mainWindow, row.id, row.milliseconds);
        }
    }
}

void stopTimer(Timer timer) {
    platform::killTimer(appState.mainWindow, timer);
}

}  // namespace app
