// The waiting animation of the unit: records when the player wants it shown and hidden, and shows a
// turning sign for that time.
#include <windows.h>

#include <cstring>

#include "simulator/processes/peer.h"
#include "simulator/processes/waiting_sign.h"

namespace {

// wParam 1 shows the animation, 0 ends it.
LRESULT react(const peer::Received& received) {
    if (std::strcmp(received.message->name, "MSG_TO_ANI_WAITING") == 0 && received.wParam <= 1) {
        sign::show(received.wParam == 1);
    }
    return 0;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR commandLine, int) {
    if (!sign::create()) {
        return 1;
    }
    return peer::run({L"ani_waiting", tape::kWaiting, &react, nullptr,
                      peer::optionNumber(commandLine, L"--late ", 0)});
}
