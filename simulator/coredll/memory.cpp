// Allocations: counted, so that a test can tell what a screen or a playing file holds, and failing
// on command.
#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <unordered_map>

#include "simulator/coredll/settings.h"
#include "simulator/coredll/unit.h"

namespace coredll {
namespace {

// The graph's threads may allocate while the window's thread does.
std::mutex mutex;
CoredllUse use;
std::unordered_map<HGDIOBJ, DWORD> bitmaps;
std::unordered_map<void*, DWORD> blocks;

void addBlock(void* block, std::size_t bytes) {
    const std::lock_guard lock(mutex);
    blocks[block] = static_cast<DWORD>(bytes);
    use.heapBytes += static_cast<DWORD>(bytes);
    use.mostHeapBytes = std::max(use.mostHeapBytes, use.heapBytes);
}

// A test program may free what the desktop's runtime has allocated.
void removeBlock(void* block) {
    const std::lock_guard lock(mutex);
    if (const auto found = blocks.find(block); found != blocks.end()) {
        use.heapBytes -= found->second;
        blocks.erase(found);
    }
}

}  // namespace

bool mayAllocate() {
    const std::lock_guard lock(mutex);
    ++use.allocations;
    if (setting(Setting::AllocationFails) == 0) {
        return true;
    }
    countDown(Setting::AllocationFails);
    return setting(Setting::AllocationFails) != 0;
}

void countBitmap(HBITMAP bitmap) {
    constexpr LONG kBytesPerPixel = 2;
    BITMAP info{};
    if (bitmap == nullptr || GetObjectW(bitmap, sizeof info, &info) == 0) {
        return;
    }
    const auto bytes =
        static_cast<DWORD>(info.bmWidth * info.bmHeight) * static_cast<DWORD>(kBytesPerPixel);
    const std::lock_guard lock(mutex);
    bitmaps[bitmap] = bytes;
    use.bitmapBytes += bytes;
    use.mostBitmapBytes = std::max(use.mostBitmapBytes, use.bitmapBytes);
}

}  // namespace coredll

using coredll::mayAllocate;

CoredllUse coredllUse() {
    const std::lock_guard lock(coredll::mutex);
    return coredll::use;
}

extern "C" {

void* unitMalloc(std::size_t bytes) {
    void* const block = mayAllocate() ? std::malloc(bytes) : nullptr;
    if (block != nullptr) {
        coredll::addBlock(block, bytes);
    }
    return block;
}

void unitFree(void* block) {
    coredll::removeBlock(block);
    std::free(block);
}

HDC WINAPI unitCreateCompatibleDC(HDC device) {
    return mayAllocate() ? CreateCompatibleDC(device) : nullptr;
}

HBITMAP WINAPI unitCreateCompatibleBitmap(HDC device, int width, int height) {
    const HBITMAP bitmap = mayAllocate() ? CreateCompatibleBitmap(device, width, height) : nullptr;
    coredll::countBitmap(bitmap);
    return bitmap;
}

HFONT WINAPI unitCreateFontIndirectW(const LOGFONTW* font) {
    return mayAllocate() ? CreateFontIndirectW(font) : nullptr;
}

HBRUSH WINAPI unitCreateSolidBrush(COLORREF colour) {
    return mayAllocate() ? CreateSolidBrush(colour) : nullptr;
}

BOOL WINAPI unitDeleteObject(HGDIOBJ object) {
    const BOOL deleted = DeleteObject(object);
    if (deleted) {
        const std::lock_guard lock(coredll::mutex);
        if (const auto found = coredll::bitmaps.find(object); found != coredll::bitmaps.end()) {
            coredll::use.bitmapBytes -= found->second;
            coredll::bitmaps.erase(found);
        }
    }
    return deleted;
}

}  // extern "C"
