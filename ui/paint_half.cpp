// The half-width playback screen, in window pixels of its own 400 x 480 window.
#include "ui/paint.h"

namespace ui {
namespace {

constexpr Bitmap face(std::int32_t slot) {
    return {SkinSet::HalfWidth, slot};
}

constexpr BarFaces kBarFaces = {face(kHalfProgress), face(kHalfVolume), face(kHalfVolumeIcon)};
constexpr TextFonts kFonts = {Font::Height24, Font::Height24, Font::Height24};

void paintPressed(Canvas& canvas, const PlayerView& view) {
    const std::int32_t slot = heldFace(kHalfLayout, view);
    if (slot != kNoFace) {
        const Rect& area = kHalfLayout.keys[static_cast<std::size_t>(view.pressedKey)].area;
        canvas.draw(face(slot), {area.left, area.top});
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
    paintSecondFaces(canvas, kHalfLayout, view);
    paintPressed(canvas, view);
    paintTexts(canvas, kHalfLayout, kFonts, view, damaged);
    paintProgress(canvas, kHalfLayout, kBarFaces, view, damaged);
    paintVolume(canvas, kHalfLayout, kBarFaces, view, damaged);
}

}  // namespace ui
