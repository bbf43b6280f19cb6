#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "mediaprobe/host.h"
#include "platform/host_path.h"

namespace mediaprobe {

std::vector<std::string> programArguments(int argc, char** argv) {
    return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

void prepareOutput() {
}

std::u16string openedName(const std::string& path) {
    return platform::fromHostPath(path);
}

EntryKind kindOf(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return EntryKind::Missing;
    }
    return S_ISDIR(status.st_mode) ? EntryKind::Folder : EntryKind::File;
}

bool listFolder(const std::string& path, Folder& folder) {
    DIR* directory = opendir(path.c_str());
    if (!directory) {
        return false;
    }
    const std::string prefix = path.ends_with('/') ? path : path + '/';
    errno = 0;
    while (const dirent* entry = readdir(directory)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        std::string full = prefix + name;
        struct stat link {
        }, target{};
        const bool told = lstat(full.c_str(), &link) == 0 && stat(full.c_str(), &target) == 0;
        if (told && S_ISDIR(link.st_mode)) {
            folder.folders.push_back(std::move(full));
        } else if (!told || S_ISREG(target.st_mode)) {
            // What cannot be looked at is no reason for silence: opening it will tell why.
            folder.files.push_back(std::move(full));
        }
        errno = 0;
    }
    const bool whole = errno == 0;
    closedir(directory);
    std::sort(folder.files.begin(), folder.files.end());
    std::sort(folder.folders.begin(), folder.folders.end());
    return whole;
}

}  // namespace mediaprobe
