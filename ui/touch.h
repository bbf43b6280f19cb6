// What a finger does on each screen. The rules are here; what they set off is the host's.
#pragma once

#include "ui/player_layout.h"
#include "ui/screen_state.h"
#include "ui/view.h"

namespace ui {

enum class ScreenTimer { Position, Bar };

// The window, the player and the other processes as the rules need them.
class TouchHost {
public:
    virtual ~TouchHost() = default;

    virtual void invalidate(const Rect& area) = 0;
    virtual void invalidateAll() = 0;
    // Draws what was invalidated at once.
    virtual void update() = 0;
    virtual void capturePointer() = 0;
    virtual void releasePointer() = 0;
    virtual void startTimer(ScreenTimer timer) = 0;
    virtual void stopTimer(ScreenTimer timer) = 0;
    virtual void click() = 0;
    // `row`: of the file list, for DeleteRow and OpenRow. The action may run a message loop and
    // change the screen.
    virtual void act(Action action, std::int32_t row) = 0;
    virtual void setVolumeLevel(std::int32_t level) = 0;
    virtual void setListPage(std::int32_t page) = 0;
    // Slide screen: shows the banner again for its full time.
    virtual void showBanner() = 0;
};

// The playback screens. A press before the release of the last one takes its place; a release
// without a press does nothing.
void pressPlayer(const PlayerLayout& layout, const PlayerView& view, ScreenState& screens,
                 TouchHost& host, Point point);
void movePlayer(const PlayerLayout& layout, const PlayerView& view, ScreenState& screens,
                TouchHost& host, Point point);
void releasePlayer(const PlayerLayout& layout, const PlayerView& view, ScreenState& screens,
                   TouchHost& host, Point point);

// The file list. A finger that starts on a row and leaves it to the right goes to the folder above:
// `hasParent` tells whether there is one to show.
void pressList(ScreenState& screens, TouchHost& host, Point point);
void moveList(ScreenState& screens, TouchHost& host, Point point, std::int32_t pageCount,
              bool hasParent);
void releaseList(ScreenState& screens, TouchHost& host, Point point);

// The slide screen: a tap brings the control bar back, up and down is the volume.
void pressSlide(ScreenState& screens, TouchHost& host, Point point);
void moveSlide(ScreenState& screens, TouchHost& host, Point point);
void releaseSlide(ScreenState& screens, TouchHost& host, Point point);

// Where the way to the folder above shows.
inline constexpr Rect kParentFaceArea = {602, 0, 701, 66};

}  // namespace ui
