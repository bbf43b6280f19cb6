// Events of the media graph, drained on the window's thread. The codes from 33024 on are the
// vendor's own.
#include <windows.h>

#include <array>

#include "app/app_state.h"
#include "player/player.h"
#include "shell/handlers.h"
#include "shell/shell.h"
#include "ui/canvas.h"

namespace shell {
namespace {

void nothing(LONG_PTR, LONG_PTR) {
}

void applyVideoLayer(LONG_PTR, LONG_PTR) {
    appState.filterControl.SetRender(static_cast<DWORD>(appState.videoLayerState));
}

void markLiveLength(LONG_PTR, LONG_PTR) {
    appState.liveLength = 1;
    appState.filterControl.SetColourKey(ui::kVideoKey);
    InvalidateRect(appState.mainWindow, nullptr, FALSE);
}

void nextFile(LONG_PTR, LONG_PTR) {
    Player::OnNext();
}

// The first parameter is the length so far in seconds.
void lengthChanged(LONG_PTR seconds, LONG_PTR) {
    constexpr DWORD kPauseMilliseconds = 10;
    if (appState.liveLength != 0) {
        appState.persisted.endTime = static_cast<double>(seconds);
        return;
    }
    Player::stopPlayback();
    Sleep(kPauseMilliseconds);
    Player::OnPlay();
}

void captionShown(LONG_PTR a, LONG_PTR b) {
    appState.filterControl.SetCaptionPosition(static_cast<DWORD>(a), static_cast<DWORD>(b));
}

struct EventRow {
    long code;
    void (*act)(LONG_PTR param1, LONG_PTR param2);
};
constexpr std::array<EventRow, 13> kEvents = {{
    {1, nothing},  // complete: the position timer sees the end
    {73, nothing},
    {33770, nothing},
    {33772, nothing},
    {11, applyVideoLayer},
    {13, applyVideoLayer},
    {33024, markLiveLength},
    {33769, nextFile},
    {33771, nextFile},
    {33776, nextFile},
    {33777, nextFile},
    {33773, lengthChanged},
    {36863, captionShown},
}};

}  // namespace

LRESULT onGraphEvent(HWND, UINT, WPARAM, LPARAM) {
    long code = 0;
    LONG_PTR param1 = 0, param2 = 0;
    while (SUCCEEDED(appState.filterControl.GetEvent(code, param1, param2))) {
        appState.filterControl.FreeEvent(code, param1, param2);
        for (const EventRow& row : kEvents) {
            if (row.code == code) {
                row.act(param1, param2);
                break;
            }
        }
    }
    return 0;
}

}  // namespace shell
