// The full-width playback screen.
#include "ui/paint.h"
#include "ui/time_text.h"

namespace ui {
namespace {

constexpr SkinSet kSet = SkinSet::FullWidth;

constexpr Bitmap face(std::int32_t slot) {
    return {kSet, slot};
}

constexpr BarFaces kBarFaces = {face(kFullProgress), face(kFullVolume), face(kFullVolumeIcon)};
constexpr TextFonts kFonts = {Font::Height25, Font::Height24, Font::Height24};

constexpr Point cornerOf(const Rect& r) {
    return {r.left, r.top};
}
Point cornerOfKey(std::int32_t key) {
    return cornerOf(kFullLayout.keys[static_cast<std::size_t>(key)].area);
}

void paintCamera(Canvas& canvas, const PlayerView& view, std::int32_t front, std::int32_t rear) {
    const Rect& area = kFullLayout.keys[kFullCameraKey].area;
    if (!view.connectMode) {
        return;
    }
    if (view.camera == 1) {
        canvas.drawInto(face(rear), area);
    } else if (view.camera == 0) {
        canvas.drawInto(face(front), area);
    }
}

void paintBars(Canvas& canvas, const PlayerView& view) {
    canvas.draw(face(kFullControlBar), {0, 329});
    canvas.draw(face(kFullTitleBar), {0, 0});
    canvas.draw(face(kFullCloseArea), {600, 10});
    canvas.draw(face(kFullHome), {0, 329});
    canvas.draw(face(kFullNavigation), {0, 377});
    canvas.draw(face(kFullList), {0, 425});
    canvas.drawTransparent(face(kFullPrevious), {0, 140});
    canvas.drawTransparent(face(kFullNext), {660, 140});
    paintSecondFaces(canvas, kFullLayout, view);
    paintCamera(canvas, view, kFullFront, kFullRear);
}

void paintPressed(Canvas& canvas, const PlayerView& view) {
    const std::int32_t key = view.pressedKey;
    const std::int32_t slot = heldFace(kFullLayout, view);
    if (key == kFullCameraKey) {
        paintCamera(canvas, view, kFullFrontHeld, kFullRearHeld);
    } else if (key == kFullPreviousKey || key == kFullNextKey) {
        canvas.drawTransparent(face(slot), cornerOfKey(key));  // free over the picture
    } else if (slot != kNoFace) {
        canvas.draw(face(slot), cornerOfKey(key));
    }
}

void paintClock(Canvas& canvas, const PlayerView& view, const Rect& damaged) {
    if (!meets(kClockArea, damaged) && !meets(kHalfDayMark, damaged)) {
        return;
    }
    const ClockFace clock = clockFace(view.hour, view.minute);
    canvas.drawInto(face(clock.afternoon ? kFullAfternoon : kFullMorning), kHalfDayMark);
    for (std::size_t i = 0; i < clock.digits.size(); ++i) {
        canvas.drawInto(face(kFullDigits + clock.digits[i]), kClockDigits[i]);
    }
}

}  // namespace

void paintFullWidth(Canvas& canvas, const PlayerView& view, const Rect& damaged) {
    if (view.videoArea) {
        paintVideoArea(canvas, kFullLayout.video, damaged);
    } else {
        paintBackground(canvas, face(kFullCache), damaged);
    }
    if (view.drivingBlock) {
        paintBlock(canvas, face(kFullBlock), kFullLayout.soundSentence, view);
    }
    if (!view.barShown) {
        return;
    }
    paintBars(canvas, view);
    paintPressed(canvas, view);
    paintTexts(canvas, kFullLayout, kFonts, view, damaged);
    paintProgress(canvas, kFullLayout, kBarFaces, view, damaged);
    paintVolume(canvas, kFullLayout, kBarFaces, view, damaged);
    paintClock(canvas, view, damaged);
}

}  // namespace ui
