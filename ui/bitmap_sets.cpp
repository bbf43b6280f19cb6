#include "ui/bitmap_sets.h"

#include <array>
#include <string_view>

#include "platform/display.h"
#include "platform/wide.h"

namespace ui {
namespace {

constexpr int kScreenWidth = 800, kScreenHeight = 480;
constexpr std::u16string_view kSkinFolder = u"\\ResidentFlash\\Image\\Movie\\";
constexpr std::size_t kLongestName = 40;

using SkinPath = std::array<char16_t, kSkinFolder.size() + 2 + kLongestName>;

void formatPath(const SlotRow& row, SkinPath& path) {
    char16_t* out = std::ranges::copy(kSkinFolder, path.data()).out;
    *out++ = row.folder;
    *out++ = u'\\';
    out = std::ranges::copy(std::u16string_view(row.file).substr(0, kLongestName - 1), out).out;
    *out = u'\0';
}

auto& slotsOf(SkinSet set, ScreenState& screens) {
    return screens.bitmaps[static_cast<std::size_t>(set)];
}

// The background in the window's own pixel format, black where the skin has none: repairing a
// damaged part from it costs no conversion.
void makeBackgroundCache(ScreenState& screens, HWND window) {
    auto& slots = slotsOf(SkinSet::FullWidth, screens);
    const HDC device = GetDC(window);
    const HDC target = CreateCompatibleDC(device);
    const HDC source = CreateCompatibleDC(device);
    const HBITMAP cache = CreateCompatibleBitmap(device, kScreenWidth, kScreenHeight);
    const HGDIOBJ previousTarget = SelectObject(target, cache);
    PatBlt(target, 0, 0, kScreenWidth, kScreenHeight, BLACKNESS);
    if (slots[kFullBackground] != nullptr) {
        const HGDIOBJ previousSource = SelectObject(source, slots[kFullBackground]);
        BitBlt(target, 0, 0, kScreenWidth, kScreenHeight, source, 0, 0, SRCCOPY);
        SelectObject(source, previousSource);
    }
    SelectObject(target, previousTarget);
    DeleteDC(source);
    DeleteDC(target);
    ReleaseDC(window, device);
    slots[kFullCache] = cache;
}

}  // namespace

void loadSet(SkinSet set, ScreenState& screens, HWND window) {
    unloadSet(set, screens);
    auto& slots = slotsOf(set, screens);
    for (const SlotRow& row : slotTable(set)) {
        SkinPath path;
        formatPath(row, path);
        slots[static_cast<std::size_t>(row.slot)] =
            platform::loadBitmapFile(platform::wide(path.data()));
    }
    if (set == SkinSet::FullWidth) {
        makeBackgroundCache(screens, window);
    }
}

void unloadSet(SkinSet set, ScreenState& screens) {
    for (void*& bitmap : slotsOf(set, screens)) {
        if (bitmap != nullptr) {
            DeleteObject(bitmap);
            bitmap = nullptr;
        }
    }
}

}  // namespace ui
