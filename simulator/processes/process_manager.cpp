// The process manager of the unit: switches between the applications, asks the player to exit and
// closes it when it is ready. With --passive it only records.
#include <windows.h>

#include <cwchar>

#include "simulator/processes/peer.h"

namespace {

constexpr char kCommand[] = "MSG_ProcessManagertoMovie";
constexpr WPARAM kHide = 2;
constexpr WPARAM kExit = 3;
constexpr LPARAM kPrepare = 3;
constexpr WPARAM kReady = 7;  // from the player; with 1: ready to exit

bool passive;
bool exitAsked;  // this process has told the player to get ready

void tellPlayer(WPARAM wParam, LPARAM lParam) {
    peer::postToPlayer(tape::kProcessManager, kCommand, wParam, lParam);
}

LRESULT react(const peer::Received& received) {
    if (received.message->sender != tape::kPlayer) {
        return 0;
    }
    // A shutdown that was asked for is carried out by a passive one as well.
    if (received.wParam == kReady && received.lParam == 1 && exitAsked) {
        exitAsked = false;
        tellPlayer(kExit, 0);
    }
    if (passive) {
        return 0;
    }
    switch (received.wParam) {
        case 0:  // home
        case 1:  // navigation: another application comes forward
            tellPlayer(kHide, 0);
            break;
        case 4:  // the player has nothing more to show
            tellPlayer(kExit, 0);
            break;
        default:
            break;
    }
    return 0;
}

void request(WPARAM what) {
    if (what == peer::kRequestShutdown) {
        exitAsked = true;
        tellPlayer(kExit, kPrepare);
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR commandLine, int) {
    passive = std::wcsstr(commandLine, L"--passive") != nullptr;
    return peer::run({L"Processmanager", tape::kProcessManager, &react, &request,
                      peer::optionNumber(commandLine, L"--late ", 0)});
}
