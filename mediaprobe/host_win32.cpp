#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <thread>

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

void prepareConsole() {
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    _setmode(_fileno(stdin), _O_BINARY);
}

bool isTerminal(std::FILE* stream) {
    return _isatty(_fileno(stream)) != 0;
}

int coreCount() {
    const unsigned cores = std::thread::hardware_concurrency();
    return cores > 1 ? static_cast<int>(cores) : 1;
}

long readSome(std::FILE* file, std::span<char> block) {
    return _read(_fileno(file), block.data(), static_cast<unsigned>(block.size()));
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

bool endsWithSeparator(std::string_view path) {
    return path.ends_with('/') || path.ends_with('\\');
}

bool listFolder(const std::string& path, Folder& folder) {
    folder.clear();
    folder.finish();
    const std::string prefix = endsWithSeparator(path) ? path : path + '/';
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
        if (!isFolder || !isLink) {
            folder.add(isFolder ? EntryKind::Folder : EntryKind::File, name);
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
    folder.finish();
    return true;
}

}  // namespace mediaprobe
