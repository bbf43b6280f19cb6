// The full screen without the control bar, and its volume banner.
#include <algorithm>

#include "ui/paint.h"

namespace ui {
namespace {

constexpr Bitmap face(std::int32_t slot) {
    return {SkinSet::Slide, slot};
}

constexpr Point kLevelCorner = {264, 11};

}  // namespace

void paintSlide(Canvas& canvas, const PlayerView& view, const Rect& damaged) {
    if (view.videoArea) {
        paintVideoArea(canvas, kFullLayout.video, damaged);
    } else {
        paintBackground(canvas, face(kSlideBackground), damaged);
    }
    if (view.drivingBlock) {
        paintBlock(canvas, face(kSlideBlock), kFullLayout.soundSentence, view);
    }
    if (!view.bannerShown || !meets(kBannerArea, damaged)) {
        return;
    }
    const Point corner = {kBannerArea.left, kBannerArea.top};
    if (view.muted) {
        canvas.draw(face(kSlideMutedFace), corner);
        return;
    }
    canvas.draw(face(kSlideFace), corner);
    canvas.draw(face(kSlideLevels + std::clamp(view.volume, 0, kLoudestVolume)), kLevelCorner);
}

}  // namespace ui
