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

std::uint32_t windowsError(int number) {
    constexpr std::uint32_t kFileNotFound = 2, kPathNotFound = 3, kAccessDenied = 5,
                            kGeneralFailure = 31;
    switch (number) {
        case ENOENT:
            return kFileNotFound;
        case ENOTDIR:
            return kPathNotFound;
        case EACCES:
        case EPERM:
        case EISDIR:
            return kAccessDenied;
        default:
            return kGeneralFailure;
    }
}

}  // namespace

std::unique_ptr<ReadOnlyFile> openFile(const char16_t* path, std::uint32_t& error) {
    error = 0;
    const int descriptor = open(hostPath(path).c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        error = windowsError(errno);
        return nullptr;
    }
    struct stat status {};
    status.st_size = -1;
    if (fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        close(descriptor);
        error = windowsError(EISDIR);  // CreateFileW refuses a folder the same way
        return nullptr;
    }
    std::unique_ptr<ReadOnlyFile> file(new (std::nothrow) PosixFile(descriptor, status));
    if (!file) {
        close(descriptor);
        error = windowsError(ENOMEM);
    }
    return file;
}

}  // namespace platform
