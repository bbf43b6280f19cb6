// The navigation application of the unit: records what the player tells it.
#include <windows.h>

#include "simulator/processes/peer.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR commandLine, int) {
    return peer::run({L"Orvi", tape::kNavigation, nullptr, nullptr,
                      peer::optionNumber(commandLine, L"--late ", 0)});
}
