// The waiting animation of the unit: records when the player wants it shown and hidden.
#include <windows.h>

#include "simulator/processes/peer.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR commandLine, int) {
    return peer::run({L"ani_waiting", tape::kWaiting, nullptr, nullptr,
                      peer::optionNumber(commandLine, L"--late ", 0)});
}
