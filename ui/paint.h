// The pictures of the four screens. Each draws at least what meets `damaged`; the canvas cuts off
// what lies outside.
#pragma once

#include "ui/canvas.h"
#include "ui/list_screen.h"
#include "ui/player_layout.h"
#include "ui/view.h"

namespace ui {

void paintFullWidth(Canvas& canvas, const PlayerView& view, const Rect& damaged);
void paintHalfWidth(Canvas& canvas, const PlayerView& view, const Rect& damaged);
void paintSlide(Canvas& canvas, const PlayerView& view, const Rect& damaged);
void paintFileList(Canvas& canvas, const ListView& view, const Rect& damaged);

// Where the volume banner stands on the slide screen.
inline constexpr Rect kBannerArea = {180, 0, 620, 64};

// Shared by the playback screens.
inline constexpr Colour kTextColour = 0xE6F0F4;
inline constexpr Colour kDimColour = 0xCBC3B9;
inline constexpr Colour kAlertColour = 0x7286FF;    // the sound is off
inline constexpr Colour kSurfaceColour = 0x201A14;  // of the bars

struct BarFaces {
    Bitmap progress, volume, icon;
};
void paintProgress(Canvas& canvas, const PlayerLayout& layout, const BarFaces& faces,
                   const PlayerView& view, const Rect& damaged);
void paintVolume(Canvas& canvas, const PlayerLayout& layout, const BarFaces& faces,
                 const PlayerView& view, const Rect& damaged);

// The second faces that are showing, on their keys.
void paintSecondFaces(Canvas& canvas, const PlayerLayout& layout, const PlayerView& view);
// The slot of the face that the held key shows, kNoFace for none.
std::int32_t heldFace(const PlayerLayout& layout, const PlayerView& view);

struct TextFonts {
    Font fileName, position, duration;
};
void paintTexts(Canvas& canvas, const PlayerLayout& layout, const TextFonts& fonts,
                const PlayerView& view, const Rect& damaged);

// The background where it is damaged, `instead` where its bitmap does not reach.
void paintBackground(Canvas& canvas, Bitmap background, const Rect& damaged,
                     Colour instead = kBlack);
// The cover while the car drives: `cover` at the window's corner, and while the recording can be
// heard a sentence that says so in `sentence`.
void paintBlock(Canvas& canvas, Bitmap cover, const Rect& sentence, const PlayerView& view);
// The key colour where the picture is shown, over the background.
void paintVideoArea(Canvas& canvas, const Rect& video, const Rect& damaged);

}  // namespace ui
