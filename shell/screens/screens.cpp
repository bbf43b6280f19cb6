// Which screen is drawn, touched and entered.
#include "shell/screens/screens.h"

#include "app/app_state.h"
#include "shell/screens/effects.h"
#include "shell/screens/file_list.h"
#include "shell/screens/list_rows.h"
#include "shell/screens/refresh.h"
#include "shell/screens/state_view.h"
#include "ui/bitmap_sets.h"
#include "ui/paint.h"
#include "ui/window_painter.h"

namespace screens {
namespace {

using ui::ScreenState;
using ui::SkinSet;

bool hasScreen(std::int32_t mode) {
    return mode >= kFullWidth && mode <= kSlideBanner;
}

// The sets stand in the order of the modes that they belong to.
static_assert(static_cast<int>(SkinSet::FullWidth) == kFullWidth);
static_assert(static_cast<int>(SkinSet::HalfWidth) == kHalfWidth);
static_assert(static_cast<int>(SkinSet::FileList) == kFileList);
static_assert(static_cast<int>(SkinSet::Slide) == kSlideBanner);

void paint(ui::Canvas& canvas, const ui::Rect& damaged) {
    switch (static_cast<ScreenMode>(appState.screenMode)) {
        case kFullWidth:
            return ui::paintFullWidth(canvas, playerView(), damaged);
        case kHalfWidth:
            return ui::paintHalfWidth(canvas, playerView(), damaged);
        case kFileList:
            return ui::paintFileList(canvas, listView(), damaged);
        case kSlideBanner:
            return ui::paintSlide(canvas, playerView(), damaged);
        case kHidden:
            return;
    }
}

}  // namespace

void loadScreen(std::int32_t mode) {
    if (!hasScreen(mode)) {
        return;
    }
    ui::loadSet(static_cast<SkinSet>(mode), appState.screens, appState.mainWindow);
    if (mode == appState.screenMode) {
        refreshScreen();
    }
}

bool isScreenLoaded(std::int32_t mode) {
    return hasScreen(mode) && ui::isSetLoaded(static_cast<SkinSet>(mode), appState.screens);
}

void unloadScreen(std::int32_t mode) {
    if (hasScreen(mode)) {
        ui::unloadSet(static_cast<SkinSet>(mode), appState.screens);
    }
}

void paintWindow() {
    const std::int32_t width =
        appState.screenMode == kHalfWidth ? ui::kScreenWidth / 2 : ui::kScreenWidth;
    ui::paintWindow(appState.mainWindow, appState.screens, appState.fonts,
                    {0, 0, width, ui::kScreenHeight},
                    hasScreen(appState.screenMode) ? paint : nullptr);
}

void mouseDown(std::int32_t x, std::int32_t y) {
    Effects effects;
    ScreenState& screens = appState.screens;
    switch (static_cast<ScreenMode>(appState.screenMode)) {
        case kFullWidth:
        case kHalfWidth:
            return ui::pressPlayer(layoutOf(appState.screenMode), playerView(), screens, effects,
                                   {x, y});
        case kFileList:
            fillRows(appState, screens.rows);
            return ui::pressList(screens, effects, {x, y});
        case kSlideBanner:
            return ui::pressSlide(screens, effects, {x, y});
        case kHidden:
            return;
    }
}

void mouseMove(std::int32_t x, std::int32_t y) {
    Effects effects;
    ScreenState& screens = appState.screens;
    if (!screens.touch.held) {
        return;
    }
    switch (static_cast<ScreenMode>(appState.screenMode)) {
        case kFullWidth:
        case kHalfWidth:
            return ui::movePlayer(layoutOf(appState.screenMode), playerView(), screens, effects,
                                  {x, y});
        case kFileList:
            return ui::moveList(screens, effects, {x, y}, appState.browsePageCount,
                                hasParentFolder());
        case kSlideBanner:
            return ui::moveSlide(screens, effects, {x, y});
        case kHidden:
            return;
    }
}

void mouseUp(std::int32_t x, std::int32_t y) {
    Effects effects;
    ScreenState& screens = appState.screens;
    switch (static_cast<ScreenMode>(appState.screenMode)) {
        case kFullWidth:
        case kHalfWidth:
            return ui::releasePlayer(layoutOf(appState.screenMode), playerView(), screens, effects,
                                     {x, y});
        case kFileList:
            return ui::releaseList(screens, effects, {x, y});
        case kSlideBanner:
            return ui::releaseSlide(screens, effects, {x, y});
        case kHidden:
            return;
    }
}

void enterScreen(std::int32_t mode) {
    forgetTouch();
    appState.screens.displayedPosition = appState.persisted.position;
    appState.screens.displayedDuration = appState.persisted.endTime;
    if (mode == kFullWidth) {
        appState.screens.barShown = true;
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

ui::Rect videoRectangle(std::int32_t mode) {
    if (mode == kFileList || !hasScreen(mode)) {
        return {0, 0, 0, 0};
    }
    return layoutOf(mode).video;
}

}  // namespace screens
