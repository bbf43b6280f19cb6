// The two picture functions that only Windows CE has.
#include <array>
#include <cstring>
#include <memory>
#include <new>

#include "simulator/coredll/bitmap_file.h"
#include "simulator/coredll/unit.h"

namespace {

constexpr std::size_t kFileHeaderBytes = 14;

// The whole file, null when it is not a bitmap that holds all it claims.
std::unique_ptr<std::uint8_t[]> readSoundBitmap(HANDLE file, std::size_t& bytes) {
    std::array<std::uint8_t, coredll::kBitmapHeadBytes> head{};
    LARGE_INTEGER size{};
    DWORD read = 0;
    if (!GetFileSizeEx(file, &size) || !ReadFile(file, head.data(), head.size(), &read, nullptr) ||
        read != head.size() ||
        coredll::isSoundBitmap(head, static_cast<std::uint64_t>(size.QuadPart)) == 0) {
        return nullptr;
    }
    bytes = coredll::soundBitmapBytes(head);
    std::unique_ptr<std::uint8_t[]> contents(new (std::nothrow) std::uint8_t[bytes]);
    if (contents) {
        std::memcpy(contents.get(), head.data(), head.size());
        const auto rest = static_cast<DWORD>(bytes - head.size());
        if (!ReadFile(file, contents.get() + head.size(), rest, &read, nullptr) || read != rest) {
            contents.reset();
        }
    }
    return contents;
}

HBITMAP bitmapOf(const std::uint8_t* file, std::size_t bytes) {
    std::uint32_t rows = 0;  // where they begin
    std::memcpy(&rows, file + 10, sizeof rows);
    const auto* const info = reinterpret_cast<const BITMAPINFO*>(file + kFileHeaderBytes);
    void* pixels = nullptr;
    const HBITMAP bitmap = CreateDIBSection(nullptr, info, DIB_RGB_COLORS, &pixels, nullptr, 0);
    if (bitmap != nullptr) {
        std::memcpy(pixels, file + rows, bytes - rows);
    }
    return bitmap;
}

}  // namespace

extern "C" {

// The desktop's own loader reads as many rows as the header claims, without looking at what the
// file holds, so the rows are put into a section here.
HBITMAP WINAPI unitSHLoadDIBitmap(const wchar_t* path) {
    const HANDLE file = CreateFileW(coredll::hostPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE || !coredll::mayAllocate()) {
        CloseHandle(file);
        return nullptr;
    }
    std::size_t bytes = 0;
    const std::unique_ptr<std::uint8_t[]> contents = readSoundBitmap(file, bytes);
    CloseHandle(file);
    const HBITMAP bitmap = contents ? bitmapOf(contents.get(), bytes) : nullptr;
    coredll::countBitmap(bitmap);
    return bitmap;
}

BOOL WINAPI unitTransparentImage(HDC target, LONG left, LONG top, LONG width, LONG height,
                                 HANDLE source, LONG sourceLeft, LONG sourceTop, LONG sourceWidth,
                                 LONG sourceHeight, COLORREF key) {
    return TransparentBlt(target, left, top, width, height, static_cast<HDC>(source), sourceLeft,
                          sourceTop, sourceWidth, sourceHeight, key);
}

}  // extern "C"
