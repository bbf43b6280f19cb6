// What can be touched: each screen has a table of keys, in the order in which they are searched.
#pragma once

#include <cstdint>
#include <span>

#include "ui/rect.h"

namespace ui {

enum class Action {
    None,
    Refuse,  // says that connect mode has no such key
    GoHome,
    GoNavigation,
    Close,
    PreviousFile,
    PlayPause,
    Stop,
    NextFile,
    ShowList,
    VolumeDown,
    ToggleMute,
    VolumeUp,
    Seek,
    SwitchCamera,
    HideBar,
    StartPopup,
    ShowFullWidth,
    // The file list.
    GoToParent,
    LeaveList,
    PageUp,
    PageDown,
    Scroll,
    DeleteRow,
    OpenRow,
};

// Whether the key click sounds when the key acts.
enum class Click {
    Sounds,
    Silent,
    InConnectMode,  // the key neither clicks nor acts outside of it
};

inline constexpr std::int32_t kNoKey = -1;
inline constexpr std::int32_t kNoFace = -1;

struct Key {
    Rect area;
    std::int32_t pressedSlot;  // of the screen's bitmap set; kNoFace: holding it shows nothing
    Action action;
    Click click;
};

// Index of the first key that the point hits, kNoKey without one.
constexpr std::int32_t hitTest(std::span<const Key> keys, Point point) {
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (hits(keys[i].area, point)) {
            return static_cast<std::int32_t>(i);
        }
    }
    return kNoKey;
}

}  // namespace ui
