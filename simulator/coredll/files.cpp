// Files and folders as Windows CE names and lists them.
#include <cerrno>
#include <cstdio>
#include <cwchar>

#include "simulator/coredll/settings.h"

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
    return CreateFileW(hostPath(path).c_str(), access, share, security, creation, flags, pattern);
}

BOOL WINAPI unitDeleteFileW(const wchar_t* path) {
    return DeleteFileW(hostPath(path).c_str());
}

BOOL WINAPI unitCreateDirectoryW(const wchar_t* path, SECURITY_ATTRIBUTES* security) {
    return CreateDirectoryW(hostPath(path).c_str(), security);
}

// Neither "." nor ".." is an entry; a folder that has nothing else has none.
HANDLE WINAPI unitFindFirstFileW(const wchar_t* pattern, WIN32_FIND_DATAW* entry) {
    const HANDLE find = FindFirstFileW(hostPath(pattern).c_str(), entry);
    while (find != INVALID_HANDLE_VALUE && coredll::isSelfOrParent(*entry)) {
        if (!FindNextFileW(find, entry)) {
            FindClose(find);
            SetLastError(ERROR_NO_MORE_FILES);
            return INVALID_HANDLE_VALUE;
        }
    }
    return find;
}

BOOL WINAPI unitFindNextFileW(HANDLE find, WIN32_FIND_DATAW* entry) {
    BOOL found = FALSE;
    do {
        found = FindNextFileW(find, entry);
    } while (found && coredll::isSelfOrParent(*entry));
    return found;
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
    return _wfopen(hostPath(path).c_str(), mode);
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
