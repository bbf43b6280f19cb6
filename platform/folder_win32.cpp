#include <windows.h>

#include <array>
#include <cwchar>

#include "platform/folder.h"
#include "platform/wide.h"

namespace platform {

bool walkFolder(const char16_t* folder, EntryVisitor visitor, void* context) {
    constexpr std::size_t kPatternCapacity = kPathCapacity + 4;
    std::array<wchar_t, kPatternCapacity> pattern{};
    const std::size_t length = std::wcslen(wide(folder));
    if (length >= kPathCapacity) {
        return false;
    }
    std::wcscpy(pattern.data(), wide(folder));
    std::wcscat(pattern.data(), L"\\*.*");
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(pattern.data(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    do {
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (!visitor(context, utf16(found.cFileName),
                     isFolder ? EntryKind::Folder : EntryKind::File)) {
            break;
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
    return true;
}

int pathKind(const char16_t* path) {
    if (path[0] == u'\0') {
        return 0;
    }
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(wide(path), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return 0;
    }
    FindClose(search);
    return (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? 2 : 1;
}

bool ensureFolder(const char16_t* path) {
    return pathKind(path) == 2 || CreateDirectoryW(wide(path), nullptr) != 0;
}

bool writeFile(const char16_t* path, std::span<const std::uint8_t> bytes) {
    const HANDLE handle = CreateFileW(wide(path), GENERIC_WRITE, FILE_SHARE_WRITE, nullptr,
                                      CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return false;
    }
    DWORD written = 0;
    const BOOL done =
        WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(handle);
    return done != 0 && written == bytes.size();
}

bool deleteFile(const char16_t* path) {
    return DeleteFileW(wide(path)) != 0;
}

}  // namespace platform
