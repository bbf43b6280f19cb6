// Touches on the file list.
#include <cstdlib>

#include "ui/touch.h"

namespace ui {
namespace {

// How far to the right a finger goes up to the folder above, and how straight.
constexpr std::int32_t kWayUp = 160, kStraight = 60;  // pixels

const Key& keyAt(std::int32_t key) {
    return kListKeys[static_cast<std::size_t>(key)];
}

const ListRow& rowOf(const ScreenState& screens, std::int32_t key) {
    const std::int32_t first = isBinKey(key) ? kListBinKeys : kListRowKeys;
    return screens.rows.rows[static_cast<std::size_t>(key - first)];
}

// Rows without an entry and the bins of folders are not to be touched.
bool isAlive(const ScreenState& screens, std::int32_t key) {
    if (isBinKey(key)) {
        return rowOf(screens, key).kind == RowKind::File;
    }
    if (isRowKey(key)) {
        return rowOf(screens, key).kind != RowKind::Empty;
    }
    return key != kNoKey && keyAt(key).action != Action::None;
}

// Only right of the rows: a finger that is lifted within its row opens it.
bool pointsUp(const Touch& touch, Point point) {
    return isRowKey(touch.pressedKey) && point.x >= keyAt(touch.pressedKey).area.right &&
           point.x - touch.start.x >= kWayUp && std::abs(point.y - touch.start.y) <= kStraight;
}

}  // namespace

void pressList(ScreenState& screens, TouchHost& host, Point point) {
    if (screens.touch.pressedKey != kNoKey) {
        host.invalidate(keyAt(screens.touch.pressedKey).area);
    }
    const std::int32_t pressed = hitTest(kListKeys, point);
    screens.touch = {.held = true, .pressedKey = pressed, .start = point};
    if (isAlive(screens, pressed)) {
        host.invalidate(keyAt(pressed).area);
    }
    host.capturePointer();
    host.update();
}

void moveList(ScreenState& screens, TouchHost& host, Point point, std::int32_t pageCount,
              bool hasParent) {
    Touch& touch = screens.touch;
    if (!touch.held) {
        return;
    }
    if (touch.pressedKey == kListTrackKey) {
        host.setListPage(pageFromTouch(point.y, pageCount));
        return;
    }
    const bool goingUp = hasParent && pointsUp(touch, point);
    if (goingUp != touch.goingUp) {
        touch.goingUp = goingUp;
        host.invalidate(kParentFaceArea);
        host.invalidate(keyAt(touch.pressedKey).area);
    }
}

void releaseList(ScreenState& screens, TouchHost& host, Point point) {
    if (!screens.touch.held) {
        return;
    }
    host.releasePointer();
    const Touch touch = screens.touch;
    screens.touch = {};
    if (touch.goingUp) {
        host.invalidate(kParentFaceArea);
    }
    if (touch.goingUp && pointsUp(touch, point)) {
        host.click();
        host.act(Action::GoToParent, 0);
    } else if (hitTest(kListKeys, point) == touch.pressedKey &&
               isAlive(screens, touch.pressedKey)) {
        const Key& key = keyAt(touch.pressedKey);
        if (key.click == Click::Sounds) {
            host.click();
        }
        const bool isBin = isBinKey(touch.pressedKey);
        host.act(key.action, touch.pressedKey - (isBin ? kListBinKeys : kListRowKeys));
    }
    if (touch.pressedKey != kNoKey) {
        host.invalidate(keyAt(touch.pressedKey).area);
    }
    host.update();
}

}  // namespace ui
