// The two playback screens: keys, bars and places. Full width is 800 x 480, half width 400 x 480
// in a window of its own.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "ui/bars.h"
#include "ui/key.h"
#include "ui/skin_slots.h"
#include "ui/view.h"

namespace ui {

// Indexes of the full-width keys that more than the table knows.
enum FullKey : std::int32_t {
    kFullHomeKey = 0,
    kFullNavigationKey = 1,
    kFullPreviousKey = 3,
    kFullPlayKey = 4,
    kFullNextKey = 6,
    kFullMuteKey = 9,
    kFullVolumeKey = 11,
    kFullProgressKey = 12,
    kFullCameraKey = 13,
};

enum HalfKey : std::int32_t {
    kHalfPlayKey = 3,
    kHalfMuteKey = 8,
    kHalfVolumeKey = 10,
    kHalfProgressKey = 11,
};

// A key that shows another face while something is so: at rest and held.
struct SecondFace {
    std::int32_t key;
    std::int32_t slot, heldSlot;
    bool (*shows)(const PlayerView& view);
};

struct PlayerLayout {
    std::span<const Key> keys;
    SkinSet set;
    std::array<SecondFace, 2> secondFaces;
    ProgressBar progress;
    VolumeBar volume;
    Bitmap knob;  // of the progress bar
    std::int32_t muteKey, volumeKey, progressKey;
    Rect video;     // where the picture is shown
    Rect fileName;  // texts
    Rect position;
    Rect duration;
    Rect soundSentence;  // on the cover while the car drives
    bool hidesBar;       // the control bar hides after a while without a touch
};

extern const PlayerLayout kFullLayout;
extern const PlayerLayout kHalfLayout;

// The clock of the full-width screen.
inline constexpr Rect kClockArea = {627, 16, 742, 51};
inline constexpr Rect kHalfDayMark = {607, 16, 628, 29};
inline constexpr Rect kClockDigits[4] = {
    {630, 16, 649, 41}, {650, 16, 669, 41}, {677, 16, 696, 41}, {697, 16, 716, 41}};

}  // namespace ui
