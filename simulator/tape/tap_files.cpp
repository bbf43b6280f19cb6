#include <cwchar>
#include <memory>
#include <vector>

#include "simulator/tape/faults.h"
#include "simulator/tape/tap.h"
#include "simulator/tape/tape.h"

namespace tap {
namespace {

void record(const wchar_t* what, const wchar_t* path) {
    tape::Line("file").text("from", L"Video").text("text", what).text("path", path);
}

// A file with a second name is one of the PC's (simulator/command/cards.h): nothing is written to
// it.
bool isOfPc(const wchar_t* path) {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE file = CreateFileW(path, 0, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    BY_HANDLE_FILE_INFORMATION status = {};
    const BOOL known = GetFileInformationByHandle(file, &status);
    CloseHandle(file);
    return known && status.nNumberOfLinks > 1 &&
           (status.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

// A folder walk whose entries were put into another order.
struct Walk {
    std::vector<WIN32_FIND_DATAW> entries;
    std::size_t next = 0;
};

// Walks that go on; the player has one thread. Handles that are not among them are the system's
// own.
std::vector<std::unique_ptr<Walk>> walks;

Walk* findWalk(HANDLE find) {
    for (const auto& walk : walks) {
        if (walk.get() == find) {
            return walk.get();
        }
    }
    return nullptr;
}

}  // namespace

HANDLE WINAPI createFile(const wchar_t* path, DWORD access, DWORD share,
                         SECURITY_ATTRIBUTES* security, DWORD creation, DWORD flags,
                         HANDLE pattern) {
    const bool refused = (access & GENERIC_WRITE) != 0 && isOfPc(path);
    const HANDLE file = refused
                            ? INVALID_HANDLE_VALUE
                            : CreateFileW(path, access, share, security, creation, flags, pattern);
    const DWORD error = refused ? ERROR_WRITE_PROTECT : GetLastError();
    if ((access & GENERIC_WRITE) != 0) {
        record(file == INVALID_HANDLE_VALUE ? L"write refused" : L"written", path);
    }
    SetLastError(error);
    return file;
}

BOOL WINAPI deleteFile(const wchar_t* path) {
    const BOOL deleted = DeleteFileW(path);
    const DWORD error = GetLastError();
    record(deleted ? L"deleted" : L"delete refused", path);
    SetLastError(error);
    return deleted;
}

std::FILE* openFile(const wchar_t* path, const wchar_t* mode) {
    const bool writes = std::wcschr(mode, L'r') == nullptr;
    std::FILE* const file = writes && isOfPc(path) ? nullptr : _wfopen(path, mode);
    if (writes) {
        record(file == nullptr ? L"write refused" : L"written", path);
    }
    return file;
}

HANDLE WINAPI findFirstFile(const wchar_t* pattern, WIN32_FIND_DATAW* entry) {
    const HANDLE find = FindFirstFileW(pattern, entry);
    if (find == INVALID_HANDLE_VALUE || tape::fault(L"DirectoryOrder") == 0) {
        return find;
    }
    auto walk = std::make_unique<Walk>();
    do {
        walk->entries.push_back(*entry);
    } while (FindNextFileW(find, entry));
    FindClose(find);
    tape::orderEntries(walk->entries);
    *entry = walk->entries[walk->next++];
    return walks.emplace_back(std::move(walk)).get();
}

BOOL WINAPI findNextFile(HANDLE find, WIN32_FIND_DATAW* entry) {
    Walk* const walk = findWalk(find);
    if (walk == nullptr) {
        return FindNextFileW(find, entry);
    }
    if (walk->next >= walk->entries.size()) {
        SetLastError(ERROR_NO_MORE_FILES);
        return FALSE;
    }
    *entry = walk->entries[walk->next++];
    return TRUE;
}

BOOL WINAPI findClose(HANDLE find) {
    const Walk* const walk = findWalk(find);
    if (walk == nullptr) {
        return FindClose(find);
    }
    std::erase_if(walks, [walk](const auto& own) { return own.get() == walk; });
    return TRUE;
}

}  // namespace tap
