// The file list: its keys, its rows, its scroll track.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "platform/folder.h"
#include "ui/key.h"

namespace ui {

inline constexpr std::int32_t kListRows = 8;

// Indexes of the key table.
enum ListKey : std::int32_t {
    kListParentKey = 0,
    kListCloseKey = 1,
    kListPageUpKey = 2,
    kListPageDownKey = 3,
    kListTrackKey = 4,
    kListBinKeys = 5,     // one for each row
    kListRowKeys = 13,    // one for each row
    kListTextAreas = 21,  // where the rows' names stand; no keys, since the rows come first
    kListTitleArea = 29,  // where the folder's path stands
    kListTableSize = 30,
};

extern const std::array<Key, kListTableSize> kListKeys;

constexpr bool isBinKey(std::int32_t key) {
    return key >= kListBinKeys && key < kListBinKeys + kListRows;
}
constexpr bool isRowKey(std::int32_t key) {
    return key >= kListRowKeys && key < kListRowKeys + kListRows;
}

enum class RowKind : std::int32_t { Empty, File, Folder };

struct ListRow {
    RowKind kind = RowKind::Empty;
    bool playing = false;   // the recording that is selected for play
    std::int32_t slot = 0;  // its icon, in the list's bitmap set
    char16_t name[platform::kPathCapacity] = {};
};

struct ListRows {
    std::array<ListRow, kListRows> rows{};
};

// What the file list shows.
struct ListView {
    const ListRows* table;
    const char16_t* path;  // of the folder, "ROOT" at the root
    std::int32_t page, pageCount;
    std::int32_t pressedKey;
    bool goingUp;    // the finger is on its way to the folder above
    bool hasParent;  // there is one
};

inline constexpr std::int32_t kHalfThumb = 13;  // half the scroll thumb's height, pixels

// Middle of the scroll thumb.
std::int32_t thumbY(std::int32_t page, std::int32_t pageCount);

// The page that a finger at `y` on the scroll track asks for.
std::int32_t pageFromTouch(std::int32_t y, std::int32_t pageCount);

}  // namespace ui
