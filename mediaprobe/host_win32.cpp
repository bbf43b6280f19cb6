#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <algorithm>
#include <cstdio>

#include "mediaprobe/host.h"
#include "platform/text.h"
#include "platform/wide.h"

namespace mediaprobe {

std::vector<std::string> programArguments(int, char**) {
    int count = 0;
    LPWSTR* const all = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; all && i < count; ++i) {
        arguments.push_back(platform::toUtf8(platform::utf16(all[i])));
    }
    LocalFree(all);
    return arguments;
}

void prepareOutput() {
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    _setmode(_fileno(stdin), _O_BINARY);
}

std::u16string openedName(const std::string& path) {
    return platform::toUtf16(path);
}

EntryKind kindOf(const std::string& path) {
    const DWORD attributes = GetFileAttributesW(platform::wide(platform::toUtf16(path).c_str()));
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return EntryKind::Missing;
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? EntryKind::Folder : EntryKind::File;
}

bool listFolder(const std::string& path, Folder& folder) {
    const bool ends = path.ends_with('/') || path.ends_with('\\');
    const std::string prefix = ends ? path : path + '/';
    WIN32_FIND_DATAW found = {};
    const HANDLE search =
        FindFirstFileW(platform::wide(platform::toUtf16(prefix + "*").c_str()), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    do {
        const std::string name = platform::toUtf8(platform::utf16(found.cFileName));
        if (name == "." || name == "..") {
            continue;
        }
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const bool isLink = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
        if (!isFolder) {
            folder.files.push_back(prefix + name);
        } else if (!isLink) {
            folder.folders.push_back(prefix + name);
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
    std::sort(folder.files.begin(), folder.files.end());
    std::sort(folder.folders.begin(), folder.folders.end());
    return true;
}

}  // namespace mediaprobe
