#include "platform/display.h"

#include <array>
#include <cstring>
#include <memory>
#include <new>

#include "platform/bitmap_file.h"
#include "platform/file.h"
#include "platform/wide.h"

namespace platform {
namespace {

constexpr std::size_t kFileHeaderBytes = 14;

// The whole file, null when it is not a bitmap that holds all it claims.
std::unique_ptr<std::uint8_t[]> readSoundBitmap(const wchar_t* path, std::size_t& bytes) {
    std::uint32_t error = 0;
    std::uint64_t size = 0;
    std::size_t read = 0;
    std::array<std::uint8_t, kBitmapHeadBytes> head{};
    const auto file = openFile(utf16(path), error);
    if (file == nullptr || !file->size(size) || !file->readAt(0, head, read) ||
        read != head.size() || isSoundBitmap(head, size) == 0) {
        return nullptr;
    }
    bytes = soundBitmapBytes(head);
    std::unique_ptr<std::uint8_t[]> contents(new (std::nothrow) std::uint8_t[bytes]);
    if (contents && file->readAt(0, {contents.get(), bytes}, read) && read == bytes) {
        return contents;
    }
    return nullptr;
}

}  // namespace

const DWORD kMainWindowStyle = WS_POPUP | WS_VISIBLE;

// The desktop's own loader reads as many rows as the header claims, without looking at what the
// file holds, so the rows are put into a section here.
HBITMAP loadBitmapFile(const wchar_t* path) {
    std::size_t bytes = 0;
    const std::unique_ptr<std::uint8_t[]> file = readSoundBitmap(path, bytes);
    if (!file) {
        return nullptr;
    }
    std::uint32_t rows = 0;  // where they begin
    std::memcpy(&rows, file.get() + 10, sizeof rows);
    const auto* const info = reinterpret_cast<const BITMAPINFO*>(file.get() + kFileHeaderBytes);
    void* pixels = nullptr;
    const HBITMAP bitmap = CreateDIBSection(nullptr, info, DIB_RGB_COLORS, &pixels, nullptr, 0);
    if (bitmap != nullptr) {
        std::memcpy(pixels, file.get() + rows, bytes - rows);
    }
    return bitmap;
}

void drawTransparent(HDC target, int x, int y, int width, int height, HDC source, COLORREF key) {
    TransparentBlt(target, x, y, width, height, source, 0, 0, width, height, key);
}

}  // namespace platform
