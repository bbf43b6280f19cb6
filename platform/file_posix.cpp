#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <string>

#include "platform/file.h"
#include "platform/host_path.h"

namespace platform {
namespace {

class PosixFile final : public ReadOnlyFile {
public:
    PosixFile(int descriptor, const struct stat& status)
        : descriptor_(descriptor), bytes_(status.st_size) {}
    ~PosixFile() override { close(descriptor_); }
    PosixFile(const PosixFile&) = delete;
    PosixFile& operator=(const PosixFile&) = delete;

    bool size(std::uint64_t& bytes) override {
        bytes = static_cast<std::uint64_t>(bytes_);
        return bytes_ >= 0;
    }

    bool readAt(std::uint64_t offset, std::span<std::uint8_t> buffer, std::size_t& read) override {
        read = 0;
        while (read < buffer.size()) {
            const ssize_t got = pread(descriptor_, buffer.data() + read, buffer.size() - read,
                                      static_cast<off_t>(offset + read));
            if (got < 0 && errno == EINTR) {
                continue;
            }
            if (got < 0) {
                return false;
            }
            if (got == 0) {
                break;
            }
            read += static_cast<std::size_t>(got);
        }
        return true;
    }

private:
    int descriptor_;
    off_t bytes_;
};

// Whether the folder of `path` is there: Windows tells a missing file from a missing folder.
bool hasFolder(const std::string& path) {
    const std::size_t end = path.find_last_not_of('/');
    const std::size_t slash = path.rfind('/', end);
    if (end == std::string::npos || slash == std::string::npos || slash == 0) {
        return !path.empty();
    }
    struct stat status {};
    return stat(path.substr(0, slash).c_str(), &status) == 0;
}

// The Windows error number for what open() said of `path`.
std::uint32_t windowsError(int number, const std::string& path) {
    constexpr std::uint32_t kFileNotFound = 2, kPathNotFound = 3, kAccessDenied = 5,
                            kSharingViolation = 32, kGeneralFailure = 31;
    switch (number) {
        case ENOENT:
            return hasFolder(path) ? kFileNotFound : kPathNotFound;
        case ENOTDIR:
            return kPathNotFound;
        case EACCES:
        case EPERM:
        case EISDIR:
            return kAccessDenied;
        case EWOULDBLOCK:  // another program holds a lease on it
            return kSharingViolation;
        default:
            return kGeneralFailure;
    }
}

}  // namespace

std::unique_ptr<ReadOnlyFile> openFile(const char16_t* path, std::uint32_t& error) {
    error = 0;
    const std::string host = hostPath(path);
    // Without blocking: a pipe that nobody writes to would be waited for here for ever.
    const int descriptor = open(host.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        error = windowsError(errno, host);
        return nullptr;
    }
    struct stat status {};
    const int refusal = fstat(descriptor, &status) != 0                      ? errno
                        : S_ISDIR(status.st_mode)                            ? EISDIR
                        : S_ISREG(status.st_mode) || S_ISBLK(status.st_mode) ? 0
                                                                             : ENODEV;
    if (refusal != 0) {
        close(descriptor);
        error = windowsError(refusal, host);  // CreateFileW refuses a folder the same way
        return nullptr;
    }
    std::unique_ptr<ReadOnlyFile> file(new (std::nothrow) PosixFile(descriptor, status));
    if (!file) {
        close(descriptor);
        error = windowsError(ENOMEM, host);
    }
    return file;
}

}  // namespace platform
