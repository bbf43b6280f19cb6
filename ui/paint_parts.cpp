// What the two playback screens draw alike.
#include "ui/paint.h"
#include "ui/time_text.h"

namespace ui {

void paintBackground(Canvas& canvas, Bitmap background, const Rect& damaged, Colour instead) {
    if (!canvas.covers(background, damaged)) {
        canvas.fill(damaged, instead);
    }
    canvas.drawRegion(background, damaged);
}

void paintVideoArea(Canvas& canvas, const Rect& video, const Rect& damaged) {
    const Rect shown = intersection(video, damaged);
    if (!isEmpty(shown)) {
        canvas.fill(shown, kVideoKey);
    }
}

void paintBlock(Canvas& canvas, Bitmap cover, const Rect& sentence, const PlayerView& view) {
    canvas.draw(cover, {0, 0});
    if (view.audible) {
        canvas.text(u"소리는 계속 재생됩니다", Font::Height24, kDimColour, sentence, kCentredText);
    }
}

void paintSecondFaces(Canvas& canvas, const PlayerLayout& layout, const PlayerView& view) {
    for (const SecondFace& second : layout.secondFaces) {
        if (second.shows(view)) {
            const Rect& area = layout.keys[static_cast<std::size_t>(second.key)].area;
            canvas.draw({layout.set, second.slot}, {area.left, area.top});
        }
    }
}

std::int32_t heldFace(const PlayerLayout& layout, const PlayerView& view) {
    if (view.pressedKey < 0) {
        return kNoFace;
    }
    for (const SecondFace& second : layout.secondFaces) {
        if (second.key == view.pressedKey && second.shows(view)) {
            return second.heldSlot;
        }
    }
    return layout.keys[static_cast<std::size_t>(view.pressedKey)].pressedSlot;
}

void paintProgress(Canvas& canvas, const PlayerLayout& layout, const BarFaces& faces,
                   const PlayerView& view, const Rect& damaged) {
    const ProgressBar& bar = layout.progress;
    if (!meets(bar.area, damaged)) {
        return;
    }
    constexpr std::int32_t kUnderKnob = 5;  // pixels
    const std::int32_t x = knobX(bar, view.displayedPosition, view.duration, view.playing);
    canvas.drawInto(faces.progress, {bar.area.left, bar.fillTop, x + kUnderKnob, bar.fillBottom});
    canvas.draw(layout.knob, {x, bar.knobTop});
}

void paintVolume(Canvas& canvas, const PlayerLayout& layout, const BarFaces& faces,
                 const PlayerView& view, const Rect& damaged) {
    const VolumeBar& bar = layout.volume;
    if (!meets(bar.area, damaged)) {
        return;
    }
    constexpr std::int32_t kUnderIcon = 10;  // pixels
    const std::int32_t x = volumeIconX(bar, view.volume);
    const Rect filled = {bar.area.left, bar.fillTop, x + kUnderIcon, bar.fillBottom};
    canvas.drawInto(faces.volume, filled);
    if (view.muted) {
        // Set, but not to be heard: only an outline of it is left, in the colour of the mute key.
        constexpr std::int32_t kOutline = 2;  // pixels
        canvas.fill(filled, kAlertColour);
        canvas.fill(
            {filled.left + kOutline, filled.top + kOutline, filled.right, filled.bottom - kOutline},
            kSurfaceColour);
    }
    canvas.draw(faces.icon, {x, bar.iconTop});
}

void paintTexts(Canvas& canvas, const PlayerLayout& layout, const TextFonts& fonts,
                const PlayerView& view, const Rect& damaged) {
    TimeText time;
    if (meets(layout.fileName, damaged)) {
        canvas.text(view.fileName, fonts.fileName, kTextColour, layout.fileName,
                    kMiddleWithEllipsis);
    }
    if (meets(layout.position, damaged)) {
        FormatSeconds(wholeSeconds(view.displayedPosition), time);
        canvas.text(time.data(), fonts.position, kTextColour, layout.position, kCentredText);
    }
    if (meets(layout.duration, damaged)) {
        FormatSeconds(wholeSeconds(view.duration), time);
        canvas.text(time.data(), fonts.duration, kDimColour, layout.duration, kCentredText);
    }
}

}  // namespace ui
