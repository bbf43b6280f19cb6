// The half-width playback screen, in window pixels of its own 400 x 480 window.
#include "ui/paint.h"

namespace ui {
namespace {

constexpr Bitmap face(std::int32_t slot) {
    return {SkinSet::HalfWidth, slot};
}

constexpr BarFaces kBarFaces = {face(kHalfProgress), face(kHalfVolume), face(kHalfVolumeIcon)};
constexpr TextFonts kFonts = {Font::Height24, Font::Height24, Font::Height24};

void drawOnKey(Canvas& canvas, std::int32_t key, std::int32_t slot) {
    const Rect& area = kHalfLayout.keys[static_cast<std::size_t>(key)].area;
    canvas.draw(face(slot), {area.left, area.top});
}

void paintPressed(Canvas& canvas, const PlayerView& view) {
    const std::int32_t key = view.pressedKey;
    if (key < 0) {
        return;
    }
    std::int32_t slot = kHalfLayout.keys[static_cast<std::size_t>(key)].pressedSlot;
    if (key == kHalfPlayKey && view.playing && !view.paused) {
        slot = kHalfPauseHeld;
    } else if (key == kHalfMuteKey && view.muted) {
        slot = kHalfMutedHeld;
    }
    if (slot != kNoFace) {
        drawOnKey(canvas, key, slot);
    }
}

}  // namespace

void paintHalfWidth(Canvas& canvas, const PlayerView& view, const Rect& damaged) {
    paintBackground(canvas, face(kHalfBackground), damaged);
    if (view.videoArea) {
        paintVideoArea(canvas, kHalfLayout.video, damaged);
    }
    if (view.drivingBlock) {
        paintBlock(canvas, face(kHalfBlock), kHalfLayout.soundSentence, view);
    }
    if (view.playing && !view.paused) {
        drawOnKey(canvas, kHalfPlayKey, kHalfPause);
    }
    if (view.muted) {
        drawOnKey(canvas, kHalfMuteKey, kHalfMuted);
    }
    paintPressed(canvas, view);
    paintTexts(canvas, kHalfLayout, kFonts, view, damaged);
    paintProgress(canvas, kHalfLayout, kBarFaces, view, damaged);
    paintVolume(canvas, kHalfLayout, kBarFaces, view, damaged);
}

}  // namespace ui
