// The two picture functions that only Windows CE has.
#include <array>
#include <cstring>
#include <memory>
#include <new>

#include "simulator/coredll/bitmap_file.h"
#include "simulator/coredll/unit.h"

namespace {

constexpr std::size_t kFileHeaderBytes = 14;

// What lies before the rows, its colours included; null when it is not a bitmap that holds all it
// claims.
std::unique_ptr<std::uint8_t[]> readHeadOfSoundBitmap(HANDLE file, DWORD& headBytes,
                                                      DWORD& rowBytes) {
    std::array<std::uint8_t, coredll::kBitmapHeadBytes> head{};
    LARGE_INTEGER size{};
    DWORD read = 0;
    if (!GetFileSizeEx(file, &size) || !ReadFile(file, head.data(), head.size(), &read, nullptr) ||
        read != head.size() ||
        coredll::isSoundBitmap(head, static_cast<std::uint64_t>(size.QuadPart)) == 0) {
        return nullptr;
    }
    std::uint32_t rows = 0;  // where they begin
    std::memcpy(&rows, head.data() + 10, sizeof rows);
    headBytes = rows;
    rowBytes = static_cast<DWORD>(coredll::soundBitmapBytes(head) - rows);
    std::unique_ptr<std::uint8_t[]> whole(new (std::nothrow) std::uint8_t[rows]);
    if (whole) {
        std::memcpy(whole.get(), head.data(), head.size());
        const auto rest = static_cast<DWORD>(rows - head.size());
        if (rest != 0 &&
            (!ReadFile(file, whole.get() + head.size(), rest, &read, nullptr) || read != rest)) {
            whole.reset();
        }
    }
    return whole;
}

// The rows go straight into the section.
HBITMAP readSoundBitmap(HANDLE file) {
    DWORD headBytes = 0, rowBytes = 0, read = 0;
    const std::unique_ptr<std::uint8_t[]> head = readHeadOfSoundBitmap(file, headBytes, rowBytes);
    if (!head) {
        return nullptr;
    }
    const auto* const info = reinterpret_cast<const BITMAPINFO*>(head.get() + kFileHeaderBytes);
    void* pixels = nullptr;
    const HBITMAP bitmap = CreateDIBSection(nullptr, info, DIB_RGB_COLORS, &pixels, nullptr, 0);
    if (bitmap != nullptr &&
        (!ReadFile(file, pixels, rowBytes, &read, nullptr) || read != rowBytes)) {
        DeleteObject(bitmap);
        return nullptr;
    }
    return bitmap;
}

}  // namespace

extern "C" {

// The desktop's own loader reads as many rows as the header claims, without looking at what the
// file holds, so the rows are read into a section here.
HBITMAP WINAPI unitSHLoadDIBitmap(const wchar_t* path) {
    const HANDLE file = CreateFileW(coredll::hostPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE || !coredll::mayAllocate()) {
        CloseHandle(file);
        return nullptr;
    }
    const HBITMAP bitmap = readSoundBitmap(file);
    CloseHandle(file);
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
