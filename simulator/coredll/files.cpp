// Files and folders as Windows CE names and lists them; what a program of the unit writes and
// deletes is put on the tape, and a fault lists folders in another order.
#include <cerrno>
#include <cstdio>
#include <cwchar>
#include <memory>
#include <vector>

#include "simulator/coredll/settings.h"
#include "simulator/tape/faults.h"
#include "simulator/tape/tape.h"

namespace coredll {
namespace {

// "X:" of the current folder.
std::wstring unitDrive() {
    wchar_t folder[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, folder);
    return folder[0] != L'\0' && folder[1] == L':' ? std::wstring(folder, 2) : std::wstring();
}

bool isSelfOrParent(const WIN32_FIND_DATAW& entry) {
    return std::wcscmp(entry.cFileName, L".") == 0 || std::wcscmp(entry.cFileName, L"..") == 0;
}

// A success leaves the last error as it was; the desktop clears it.
class KeepLastError {
public:
    KeepLastError() : error_(GetLastError()) {}
    void restore() const { SetLastError(error_); }

private:
    DWORD error_;
};

void record(const wchar_t* what, const wchar_t* path) {
    const KeepLastError before;
    if (isProgramOfUnit()) {
        tape::Line("file").text("from", L"Video").text("text", what).text("path", path);
    }
    before.restore();
}

// A file with a second name is one of the PC's (simulator/command/cards.h): nothing is written to
// it.
bool isOfPc(const std::wstring& path) {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE file = isProgramOfUnit() ? CreateFileW(path.c_str(), 0, kShareAll, nullptr,
                                                        OPEN_EXISTING, 0, nullptr)
                                          : INVALID_HANDLE_VALUE;
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

std::wstring hostPath(const wchar_t* path) {
    const bool hasDrive = path[0] != L'\0' && path[1] == L':';
    const bool namesAMachine = path[0] == L'\\' && path[1] == L'\\';
    if (hasDrive || namesAMachine) {
        return path;
    }
    return unitDrive() + (path[0] == L'\\' ? L"" : L"\\") + path;
}

}  // namespace coredll

using coredll::hostPath;

extern "C" {

HANDLE WINAPI unitCreateFileW(const wchar_t* path, DWORD access, DWORD share,
                              SECURITY_ATTRIBUTES* security, DWORD creation, DWORD flags,
                              HANDLE pattern) {
    const std::wstring host = hostPath(path);
    const bool writes = (access & GENERIC_WRITE) != 0;
    const bool refused = writes && coredll::isOfPc(host);
    const HANDLE file =
        refused ? INVALID_HANDLE_VALUE
                : CreateFileW(host.c_str(), access, share, security, creation, flags, pattern);
    if (refused) {
        SetLastError(ERROR_WRITE_PROTECT);
    }
    if (writes) {
        coredll::record(file == INVALID_HANDLE_VALUE ? L"write refused" : L"written", path);
    }
    return file;
}

BOOL WINAPI unitDeleteFileW(const wchar_t* path) {
    const BOOL deleted = DeleteFileW(hostPath(path).c_str());
    coredll::record(deleted ? L"deleted" : L"delete refused", path);
    return deleted;
}

BOOL WINAPI unitCreateDirectoryW(const wchar_t* path, SECURITY_ATTRIBUTES* security) {
    return CreateDirectoryW(hostPath(path).c_str(), security);
}

BOOL WINAPI unitFindNextFileW(HANDLE find, WIN32_FIND_DATAW* entry) {
    if (coredll::Walk* const walk = coredll::findWalk(find)) {
        if (walk->next >= walk->entries.size()) {
            SetLastError(ERROR_NO_MORE_FILES);
            return FALSE;
        }
        *entry = walk->entries[walk->next++];
        return TRUE;
    }
    BOOL found = FALSE;
    do {
        found = FindNextFileW(find, entry);
    } while (found && coredll::isSelfOrParent(*entry));
    return found;
}

// Neither "." nor ".." is an entry; a folder that has nothing else has none.
HANDLE WINAPI unitFindFirstFileW(const wchar_t* pattern, WIN32_FIND_DATAW* entry) {
    const HANDLE find = FindFirstFileW(hostPath(pattern).c_str(), entry);
    if (find == INVALID_HANDLE_VALUE) {
        return find;
    }
    if (coredll::isSelfOrParent(*entry) && !unitFindNextFileW(find, entry)) {
        FindClose(find);
        SetLastError(ERROR_NO_MORE_FILES);
        return INVALID_HANDLE_VALUE;
    }
    if (!coredll::isProgramOfUnit() || tape::fault(L"DirectoryOrder") == 0) {
        return find;
    }
    auto walk = std::make_unique<coredll::Walk>();
    do {
        walk->entries.push_back(*entry);
    } while (unitFindNextFileW(find, entry));
    FindClose(find);
    tape::orderEntries(walk->entries);
    *entry = walk->entries[walk->next++];
    return coredll::walks.emplace_back(std::move(walk)).get();
}

BOOL WINAPI unitFindClose(HANDLE find) {
    return std::erase_if(coredll::walks, [find](const auto& walk) { return walk.get() == find; }) !=
               0 ||
           FindClose(find);
}

DWORD WINAPI unitGetFileSize(HANDLE file, DWORD* high) {
    const coredll::KeepLastError before;
    SetLastError(NO_ERROR);
    const DWORD low = GetFileSize(file, high);
    if (low != INVALID_FILE_SIZE || GetLastError() == NO_ERROR) {
        before.restore();
    }
    return low;
}

DWORD WINAPI unitSetFilePointer(HANDLE file, LONG distance, LONG* high, DWORD method) {
    const coredll::KeepLastError before;
    SetLastError(NO_ERROR);
    const DWORD low = SetFilePointer(file, distance, high, method);
    if (low != INVALID_SET_FILE_POINTER || GetLastError() == NO_ERROR) {
        before.restore();
    }
    return low;
}

std::FILE* unitWfopen(const wchar_t* path, const wchar_t* mode) {
    const std::wstring host = hostPath(path);
    const bool writes = std::wcschr(mode, L'r') == nullptr;
    std::FILE* const file = writes && coredll::isOfPc(host) ? nullptr : _wfopen(host.c_str(), mode);
    if (writes) {
        coredll::record(file == nullptr ? L"write refused" : L"written", path);
    }
    return file;
}

// What cannot be converted ends in WEOF with neither the end nor an error set in the stream.
std::wint_t unitFgetwc(std::FILE* file) {
    using coredll::Setting;
    if (coredll::setting(Setting::UnreadableCharacter) != 0) {
        coredll::countDown(Setting::UnreadableCharacter);
        if (coredll::setting(Setting::UnreadableCharacter) == 0) {
            errno = EILSEQ;
            return WEOF;
        }
    }
    return std::fgetwc(file);
}

std::FILE* unitStandardFile(int number) {
    return __acrt_iob_func(static_cast<unsigned>(number));
}

}  // extern "C"
