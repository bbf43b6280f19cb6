#include "ui/bitmap_sets.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/folder.h"
#include "platform/unit_api.h"
#include "platform/wide.h"

namespace ui {
namespace {

using SkinPath = std::array<char16_t, platform::kPathCapacity>;

// Empty when the path does not fit.
void formatPath(std::u16string_view folder, const SlotRow& row, SkinPath& path) {
    const std::u16string_view file = row.file;
    path[0] = u'\0';
    if (folder.size() + 2 + file.size() >= path.size()) {
        return;
    }
    char16_t* out = std::ranges::copy(folder, path.data()).out;
    *out++ = row.folder;
    *out++ = u'\\';
    *std::ranges::copy(file, out).out = u'\0';
}

auto& slotsOf(SkinSet set, ScreenState& screens) {
    return screens.bitmaps[static_cast<std::size_t>(set)];
}

// Black where the skin has no background.
void drawBackground(HDC target, HDC source, HBITMAP background) {
    PatBlt(target, 0, 0, kScreenWidth, kScreenHeight, BLACKNESS);
    if (background != nullptr) {
        const HGDIOBJ previous = SelectObject(source, background);
        BitBlt(target, 0, 0, kScreenWidth, kScreenHeight, source, 0, 0, SRCCOPY);
        SelectObject(source, previous);
    }
}

// The background in the window's own pixel format: repairing a damaged part from it costs no
// conversion. Without memory for it the slot stays empty, as one whose file is missing.
void makeBackgroundCache(ScreenState& screens, HWND window) {
    auto& slots = slotsOf(SkinSet::FullWidth, screens);
    const HDC device = GetDC(window);
    const HDC target = CreateCompatibleDC(device);
    const HDC source = CreateCompatibleDC(device);
    const HBITMAP cache = CreateCompatibleBitmap(device, kScreenWidth, kScreenHeight);
    if (target != nullptr && source != nullptr && cache != nullptr) {
        const HGDIOBJ previous = SelectObject(target, cache);
        drawBackground(target, source, static_cast<HBITMAP>(slots[kFullBackground]));
        SelectObject(target, previous);
        slots[kFullCache] = cache;
    } else {
        DeleteObject(cache);
    }
    DeleteDC(source);
    DeleteDC(target);
    ReleaseDC(window, device);
}

}  // namespace

void loadSet(SkinSet set, ScreenState& screens, platform::Window window, const char16_t* folder) {
    unloadSet(set, screens);
    auto& slots = slotsOf(set, screens);
    for (const SlotRow& row : slotTable(set)) {
        SkinPath path;
        formatPath(folder, row, path);
        slots[static_cast<std::size_t>(row.slot)] = SHLoadDIBitmap(platform::wide(path.data()));
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

bool isSetLoaded(SkinSet set, const ScreenState& screens) {
    return std::ranges::any_of(screens.bitmaps[static_cast<std::size_t>(set)],
                               [](const void* bitmap) { return bitmap != nullptr; });
}

Size bitmapSize(const ScreenState& screens, Bitmap bitmap) {
    void* const handle =
        screens
            .bitmaps[static_cast<std::size_t>(bitmap.set)][static_cast<std::size_t>(bitmap.slot)];
    BITMAP info{};
    if (handle == nullptr || GetObjectW(handle, sizeof(info), &info) == 0) {
        return {0, 0};
    }
    return {info.bmWidth, info.bmHeight};
}

}  // namespace ui
