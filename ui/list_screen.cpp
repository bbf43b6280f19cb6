#include "ui/list_screen.h"

#include <algorithm>

#include "ui/skin_slots.h"

namespace ui {
namespace {

using enum Action;
using enum Click;

constexpr std::int32_t kFirstRowTop = 66, kRowHeight = 50;

constexpr Rect inRow(std::int32_t row, std::int32_t left, std::int32_t right) {
    const std::int32_t top = kFirstRowTop + kRowHeight * row;
    return {left, top, right, top + kRowHeight};
}

constexpr std::int32_t faceOf(ListKey key) {
    return kListFirstHeld + static_cast<std::int32_t>(key);
}
static_assert(faceOf(kListBinKeys) == kListBinHeld && faceOf(kListRowKeys) == kListRowHeld);

constexpr std::array<Key, kListTableSize> makeKeys() {
    std::array<Key, kListTableSize> keys{};
    keys[kListParentKey] = {
        {602, 0, 0, 0}, faceOf(kListParentKey), GoToParent, Sounds};  // out of reach
    keys[kListCloseKey] = {{701, 0, 800, 66}, faceOf(kListCloseKey), LeaveList, Sounds};
    keys[kListPageUpKey] = {{650, 66, 770, 166}, faceOf(kListPageUpKey), PageUp, Sounds};
    keys[kListPageDownKey] = {{650, 366, 770, 466}, faceOf(kListPageDownKey), PageDown, Sounds};
    keys[kListTrackKey] = {{650, 166, 770, 366}, kNoFace, Scroll, Silent};
    for (std::int32_t row = 0; row < kListRows; ++row) {
        const auto r = static_cast<std::size_t>(row);
        keys[kListBinKeys + r] = {inRow(row, 590, 640), faceOf(kListBinKeys), DeleteRow, Sounds};
        keys[kListRowKeys + r] = {inRow(row, 30, 650), faceOf(kListRowKeys), OpenRow, Sounds};
        keys[kListTextAreas + r] = {inRow(row, 120, 600), kNoFace, None, Silent};
    }
    keys[kListTitleArea] = {{200, 34, 490, 64}, kNoFace, None, Silent};
    return keys;
}

constexpr std::int32_t kTrackTop = 166, kTrackBottom = 366;
constexpr std::int32_t kThumbTop = kTrackTop + kHalfThumb;
constexpr std::int32_t kThumbBottom = kTrackBottom - kHalfThumb;
constexpr std::int64_t kMille = 1000;

}  // namespace

constinit const std::array<Key, kListTableSize> kListKeys = makeKeys();

std::int32_t thumbY(std::int32_t page, std::int32_t pageCount) {
    if (pageCount < 2) {
        return kThumbTop;
    }
    if (pageCount == 2) {
        return page == 0 ? kThumbTop : kThumbBottom;
    }
    constexpr std::int64_t kTravel = kThumbBottom - kThumbTop;
    const std::int64_t offset = page * kMille / (pageCount - 1) * kTravel / kMille;
    return static_cast<std::int32_t>(kThumbTop + std::clamp<std::int64_t>(offset, 0, kTravel));
}

std::int32_t pageFromTouch(std::int32_t y, std::int32_t pageCount) {
    if (pageCount < 2) {
        return 0;
    }
    if (pageCount == 2) {
        return y >= kTrackTop + (kTrackBottom - kTrackTop - 4) / 2 + kHalfThumb ? 1 : 0;
    }
    const std::int64_t fraction =
        (std::min(y, kThumbBottom) - kThumbTop) * kMille / (kThumbBottom - kThumbTop);
    // One page more than there are, so that the last is reached before the end. Required.
    const std::int64_t page = fraction * (pageCount + 1) / kMille;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(page, 0, pageCount - 1));
}

}  // namespace ui
