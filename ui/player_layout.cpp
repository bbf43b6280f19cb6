#include "ui/player_layout.h"

#include <array>

#include "ui/skin_slots.h"

namespace ui {
namespace {

using enum Action;
using enum Click;

// The whole-screen key is last: it takes what no other key takes. The home key is kept out of
// reach by an empty rectangle.
constexpr auto kFullKeys = keysOf(
    kFullFirstHeld,
    std::to_array<KeyRow>({
        {{0, 329, 0, 0}, Held::Face, GoHome, Sounds},
        {{0, 377, 200, 425}, Held::Face, GoNavigation, Sounds},
        {{737, 0, 800, 45}, Held::Face, Close, Sounds},
        {{0, 140, 140, 280}, Held::Face, PreviousFile, Sounds},
        {{632, 425, 712, 480}, Held::Face, PlayPause, Sounds},
        {{712, 425, 792, 480}, Held::Face, Stop, Sounds},
        {{660, 140, 800, 280}, Held::Face, NextFile, Sounds},
        {{0, 425, 200, 473}, Held::Face, ShowList, Sounds},
        {{280, 425, 360, 480}, Held::Face, VolumeDown, Sounds},
        {{200, 425, 280, 480}, Held::Face, ToggleMute, Sounds},
        {{552, 425, 632, 480}, Held::Face, VolumeUp, Sounds},
        {{360, 437, 549, 467}, Held::Nothing, None, Silent},  // the handles are drawn with the bars
        {{202, 330, 627, 428}, Held::Nothing, Seek, Silent},
        {{632, 329, 800, 377}, Held::Nothing, SwitchCamera, InConnectMode},  // has a face for each
                                                                             // camera
        {{0, 0, 800, 480}, Held::Nothing, HideBar, Sounds},
    }));
static_assert(kFullKeys.size() == 15);

constexpr auto kHalfKeys =
    keysOf(kHalfFirstHeld, std::to_array<KeyRow>({
                               {{202, 0, 0, 0}, Held::Face, StartPopup, Sounds},
                               {{301, 0, 400, 60}, Held::Face, Close, Sounds},
                               {{2, 420, 81, 480}, Held::Face, PreviousFile, Sounds},
                               {{81, 420, 160, 480}, Held::Face, PlayPause, Sounds},
                               {{160, 420, 239, 480}, Held::Face, Stop, Sounds},
                               {{318, 420, 397, 480}, Held::Face, NextFile, Sounds},
                               {{239, 420, 318, 480}, Held::Face, ShowList, Sounds},
                               {{81, 360, 160, 420}, Held::Face, VolumeDown, Sounds},
                               {{2, 360, 81, 420}, Held::Face, ToggleMute, Sounds},
                               {{318, 360, 397, 420}, Held::Face, VolumeUp, Sounds},
                               {{170, 372, 308, 403}, Held::Nothing, None, Silent},
                               {{8, 331, 247, 350}, Held::Nothing, Seek, Silent},
                               {{0, 60, 400, 320}, Held::Nothing, ShowFullWidth, Sounds},
                           }));
static_assert(kHalfKeys.size() == 13);

bool isRunning(const PlayerView& view) {
    return view.playing && !view.paused;
}
bool isMuted(const PlayerView& view) {
    return view.muted;
}

}  // namespace

constinit const PlayerLayout kFullLayout = {
    .keys = kFullKeys,
    .set = SkinSet::FullWidth,
    .secondFaces = {{{kFullPlayKey, kFullPause, kFullPauseHeld, isRunning},
                     {kFullMuteKey, kFullMuted, kFullMutedHeld, isMuted}}},
    .progress = {kFullKeys[kFullProgressKey].area, 397, 403, 391},
    .volume = {kFullKeys[kFullVolumeKey].area, 447, 457, 437},
    .knob = {SkinSet::FullWidth, kFullKnob},
    .muteKey = kFullMuteKey,
    .volumeKey = kFullVolumeKey,
    .progressKey = kFullProgressKey,
    .video = {0, 0, 800, 480},
    .fileName = {12, 338, 627, 368},
    .position = {632, 377, 792, 401},
    .duration = {632, 401, 792, 425},
    .soundSentence = {200, 230, 600, 260},
    .hidesBar = true,
};

constinit const PlayerLayout kHalfLayout = {
    .keys = kHalfKeys,
    .set = SkinSet::HalfWidth,
    .secondFaces = {{{kHalfPlayKey, kHalfPause, kHalfPauseHeld, isRunning},
                     {kHalfMuteKey, kHalfMuted, kHalfMutedHeld, isMuted}}},
    .progress = {kHalfKeys[kHalfProgressKey].area, 337, 343, 331},
    .volume = {kHalfKeys[kHalfVolumeKey].area, 382, 392, 372},
    .knob = {SkinSet::HalfWidth, kHalfKnob},
    .muteKey = kHalfMuteKey,
    .volumeKey = kHalfVolumeKey,
    .progressKey = kHalfProgressKey,
    .video = {0, 60, 400, 320},
    .fileName = {12, 13, 300, 43},
    .position = {251, 320, 399, 340},
    .duration = {251, 340, 399, 360},
    .soundSentence = {0, 252, 400, 282},
    .hidesBar = false,
};

}  // namespace ui
