#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "platform/folder.h"
#include "platform/host_path.h"

namespace platform {

bool walkFolder(const char16_t* folder, EntryVisitor visitor, void* context) {
    const std::string path = hostPath(folder) + "/";
    DIR* const directory = opendir(path.c_str());
    if (directory == nullptr) {
        return false;
    }
    bool any = false;
    // The stream is this call's own.
    // NOLINTNEXTLINE(concurrency-mt-unsafe)
    while (const dirent* const entry = readdir(directory)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        any = true;
        struct stat status {};
        const bool isFolder = stat((path + name).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
        if (!visitor(context, fromHostPath(name).c_str(),
                     isFolder ? EntryKind::Folder : EntryKind::File)) {
            break;
        }
    }
    closedir(directory);
    return any;
}

int pathKind(const char16_t* path) {
    struct stat status {};
    if (path[0] == u'\0' || stat(hostPath(path).c_str(), &status) != 0) {
        return 0;
    }
    return S_ISDIR(status.st_mode) ? 2 : 1;
}

bool ensureFolder(const char16_t* path) {
    constexpr mode_t kEveryone = 0777;
    return pathKind(path) == 2 || mkdir(hostPath(path).c_str(), kEveryone) == 0;
}

bool writeFile(const char16_t* path, std::span<const std::uint8_t> bytes) {
    std::FILE* const file = std::fopen(hostPath(path).c_str(), "wb");
    if (file == nullptr) {
        return false;
    }
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && written;
}

bool deleteFile(const char16_t* path) {
    return unlink(hostPath(path).c_str()) == 0;
}

}  // namespace platform
