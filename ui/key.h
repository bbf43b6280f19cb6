// What can be touched: each screen has a table of keys, in the order in which they are searched.
#pragma once

#include <array>
#include <cstddef>
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

// A key as a screen's table has it. The face of a held key stands in the set's slot of the first
// held face + the key's index; Nothing: holding it shows nothing.
enum class Held { Face, Nothing };
struct KeyRow {
    Rect area;
    Held held;
    Action action;
    Click click;
};

template <std::size_t N>
constexpr std::array<Key, N> keysOf(std::int32_t firstHeldSlot, const std::array<KeyRow, N>& rows) {
    std::array<Key, N> keys{};
    for (std::size_t i = 0; i < N; ++i) {
        const std::int32_t face = firstHeldSlot + static_cast<std::int32_t>(i);
        keys[i] = {rows[i].area, rows[i].held == Held::Face ? face : kNoFace, rows[i].action,
                   rows[i].click};
    }
    return keys;
}

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
