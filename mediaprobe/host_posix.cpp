#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <thread>

#include "mediaprobe/host.h"
#include "platform/host_path.h"

namespace mediaprobe {
namespace {

bool isDots(const char* name) {
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

// What an entry counts as; Missing for what is passed over: pipes, devices, links to folders. What
// cannot be looked at is no reason for silence, and counts as a file.
EntryKind kindOfEntry(int directory, const dirent& entry) {
    if (entry.d_type == DT_REG) {
        return EntryKind::File;
    }
    if (entry.d_type == DT_DIR) {
        return EntryKind::Folder;
    }
    struct stat link {
    }, target{};
    if (fstatat(directory, entry.d_name, &link, AT_SYMLINK_NOFOLLOW) != 0 ||
        fstatat(directory, entry.d_name, &target, 0) != 0) {
        return EntryKind::File;
    }
    return S_ISDIR(link.st_mode)     ? EntryKind::Folder
           : S_ISREG(target.st_mode) ? EntryKind::File
                                     : EntryKind::Missing;
}

}  // namespace

std::vector<std::string> programArguments(int argc, char** argv) {
    return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

void prepareConsole() {
}

bool isTerminal(std::FILE* stream) {
    return isatty(fileno(stream)) == 1;
}

int coreCount() {
    const unsigned cores = std::thread::hardware_concurrency();
    return cores > 1 ? static_cast<int>(cores) : 1;
}

long readSome(std::FILE* file, std::span<char> block) {
    for (;;) {
        const ssize_t got = read(fileno(file), block.data(), block.size());
        if (got >= 0 || errno != EINTR) {
            return got;
        }
    }
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

bool endsWithSeparator(std::string_view path) {
    return path.ends_with('/');
}

bool listFolder(const std::string& path, Folder& folder) {
    folder.clear();
    DIR* directory = opendir(path.c_str());
    if (!directory) {
        folder.finish();
        return false;
    }
    errno = 0;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread walks, and this directory is its own.
    while (const dirent* entry = readdir(directory)) {
        const EntryKind kind =
            isDots(entry->d_name) ? EntryKind::Missing : kindOfEntry(dirfd(directory), *entry);
        if (kind != EntryKind::Missing) {
            folder.add(kind, entry->d_name);
        }
        errno = 0;
    }
    const bool whole = errno == 0;
    closedir(directory);
    folder.finish();
    return whole;
}

}  // namespace mediaprobe
