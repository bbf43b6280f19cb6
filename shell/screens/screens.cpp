// Which screen is drawn, touched and entered.
#include "shell/screens/screens.h"

#include "app/app_state.h"
#include "shell/screens/effects.h"
#include "shell/screens/state_view.h"
#include "shell/shell.h"
#include "ui/bitmap_sets.h"
#include "ui/gdi_canvas.h"
#include "ui/paint.h"

namespace ui {
namespace {

bool hasScreen(int mode) {
    return mode >= kFullWidth && mode <= kSlideBanner;
}

// The sets stand in the order of the modes that they belong to.
static_assert(static_cast<int>(SkinSet::FullWidth) == kFullWidth);
static_assert(static_cast<int>(SkinSet::HalfWidth) == kHalfWidth);
static_assert(static_cast<int>(SkinSet::FileList) == kFileList);
static_assert(static_cast<int>(SkinSet::Slide) == kSlideBanner);

}  // namespace

void loadScreen(int mode) {
    if (!hasScreen(mode)) {
        return;
    }
    loadSet(static_cast<SkinSet>(mode), appState.screens, appState.mainWindow);
    if (mode == appState.screenMode) {
        refreshScreen();
    }
}

bool isScreenLoaded(int mode) {
    return hasScreen(mode) && isSetLoaded(static_cast<SkinSet>(mode), appState.screens);
}

void unloadScreen(int mode) {
    if (hasScreen(mode)) {
        unloadSet(static_cast<SkinSet>(mode), appState.screens);
    }
}

void paintScreen(HDC target, HDC source, RECT& damaged) {
    const std::int32_t width = appState.screenMode == kHalfWidth ? kScreenWidth / 2 : kScreenWidth;
    const Rect area = intersection({damaged.left, damaged.top, damaged.right, damaged.bottom},
                                   {0, 0, width, kScreenHeight});
    damaged = {area.left, area.top, area.right, area.bottom};
    if (isEmpty(area)) {
        return;
    }
    ScreenState& screens = appState.screens;
    GdiCanvas canvas(target, source, screens, appState.fonts, area);
    if (appState.screenMode == kFileList) {
        paintFileList(canvas, listView(), area);
        return;
    }
    const PlayerView view = playerView();
    switch (appState.screenMode) {
        case kHalfWidth:
            paintHalfWidth(canvas, view, area);
            break;
        case kSlideBanner:
            paintSlide(canvas, view, area);
            break;
        default:
            paintFullWidth(canvas, view, area);
            break;
    }
}

void mouseDown(int x, int y) {
    Effects effects;
    ScreenState& screens = appState.screens;
    switch (appState.screenMode) {
        case kFullWidth:
        case kHalfWidth:
            return pressPlayer(layoutOf(appState.screenMode), playerView(), screens, effects,
                               {x, y});
        case kFileList:
            fillRows(appState, screens.rows);
            return pressList(screens, effects, {x, y});
        case kSlideBanner:
            return pressSlide(screens, effects, {x, y});
        default:
            return;
    }
}

void mouseMove(int x, int y) {
    Effects effects;
    ScreenState& screens = appState.screens;
    if (screens.touch.held == 0) {
        return;
    }
    switch (appState.screenMode) {
        case kFullWidth:
        case kHalfWidth:
            return movePlayer(layoutOf(appState.screenMode), playerView(), screens, effects,
                              {x, y});
        case kFileList:
            return moveList(screens, effects, {x, y}, appState.browsePageCount, hasParentFolder());
        case kSlideBanner:
            return moveSlide(screens, effects, {x, y});
        default:
            return;
    }
}

void mouseUp(int x, int y) {
    Effects effects;
    ScreenState& screens = appState.screens;
    switch (appState.screenMode) {
        case kFullWidth:
        case kHalfWidth:
            return releasePlayer(layoutOf(appState.screenMode), playerView(), screens, effects,
                                 {x, y});
        case kFileList:
            return releaseList(screens, effects, {x, y});
        case kSlideBanner:
            return releaseSlide(screens, effects, {x, y});
        default:
            return;
    }
}

void enterScreen(int mode) {
    forgetTouch();
    appState.screens.displayedPosition = appState.persisted.position;
    appState.screens.displayedDuration = appState.persisted.endTime;
    if (mode == kFullWidth) {
        appState.screens.barShown = 1;
    } else if (mode == kFileList) {
        enterFileList();
    }
    if (mode != kSlideBanner || appState.previousScreenMode != kFullWidth) {
        // Only the full-width screen opens the banner for what was chosen. What was chosen on
        // another screen, or while none followed it, is not carried out later.
        appState.pendingKeyAction = kNoAction;
    }
}

void leaveFileList() {
    forgetTouch();
}

RECT videoRectangle(int mode) {
    if (mode == kFileList || !hasScreen(mode)) {
        return {0, 0, 0, 0};
    }
    const Rect& video = layoutOf(mode).video;
    return {video.left, video.top, video.right, video.bottom};
}

void forgetTouch() {
    const Touch touch = appState.screens.touch;
    appState.screens.touch = {};
    if (touch.held == 0) {
        return;
    }
    Effects effects;
    effects.releasePointer();
    if (touch.restartPosition != 0) {
        effects.startTimer(ScreenTimer::Position);
    }
    effects.startTimer(ScreenTimer::Bar);
    refreshScreen();
}

}  // namespace ui
