// Events of the media graph, drained on the window's thread. The codes from 33024 on are the
// vendor's own.
#include <array>

#include "app/app_state.h"
#include "platform/clock.h"
#include "player/player.h"
#include "shell/handlers.h"
#include "ui/canvas.h"

namespace shell {
namespace {

void nothing(std::intptr_t, std::intptr_t) {
}

void applyVideoLayer(std::intptr_t, std::intptr_t) {
    appState.filterControl.SetRender(static_cast<std::uint32_t>(appState.videoLayerState));
}

void markLiveLength(std::intptr_t, std::intptr_t) {
    appState.liveLength = 1;
    appState.filterControl.SetColourKey(ui::kVideoKey);
    platform::invalidate(appState.mainWindow);
}

void nextFile(std::intptr_t, std::intptr_t) {
    Player::OnNext();
}

// The first parameter is the length so far in seconds.
void lengthChanged(std::intptr_t seconds, std::intptr_t) {
    constexpr std::uint32_t kPauseMilliseconds = 10;
    if (appState.liveLength != 0) {
        appState.persisted.endTime = static_cast<double>(seconds);
        return;
    }
    Player::stopPlayback();
    platform::sleep(kPauseMilliseconds);
    Player::OnPlay();
}

void captionShown(std::intptr_t a, std::intptr_t b) {
    appState.filterControl.SetCaptionPosition(static_cast<std::uint32_t>(a),
                                              static_cast<std::uint32_t>(b));
}

struct EventRow {
    long code;
    void (*act)(std::intptr_t param1, std::intptr_t param2);
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

Answer onGraphEvent(Window, std::uint32_t, WParam, LParam) {
    long code = 0;
    std::intptr_t param1 = 0, param2 = 0;
    while (appState.filterControl.GetEvent(code, param1, param2) >= 0) {
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
