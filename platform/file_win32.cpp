#include <windows.h>

#include <algorithm>
#include <new>

#include "platform/file.h"
#include "platform/wide.h"

namespace platform {
namespace {

class Win32File final : public ReadOnlyFile {
public:
    explicit Win32File(HANDLE handle) : handle_(handle) {}
    ~Win32File() override { CloseHandle(handle_); }
    Win32File(const Win32File&) = delete;
    Win32File& operator=(const Win32File&) = delete;

    bool size(std::uint64_t& bytes) override {
        DWORD high = 0;
        // 0xFFFFFFFF is a failure and the low half of a size alike, and a success leaves the last
        // error as it was.
        SetLastError(NO_ERROR);
        const DWORD low = GetFileSize(handle_, &high);
        if (low == INVALID_FILE_SIZE && GetLastError() != NO_ERROR) {
            return false;
        }
        bytes = (static_cast<std::uint64_t>(high) << 32) | low;
        return true;
    }

    bool readAt(std::uint64_t offset, std::span<std::uint8_t> buffer, std::size_t& read) override {
        read = 0;
        LONG high = static_cast<LONG>(offset >> 32);
        SetLastError(NO_ERROR);  // as in size()
        const DWORD low =
            SetFilePointer(handle_, static_cast<LONG>(offset & 0xFFFFFFFFu), &high, FILE_BEGIN);
        if (low == INVALID_SET_FILE_POINTER && GetLastError() != NO_ERROR) {
            return false;
        }
        while (read < buffer.size()) {
            constexpr std::size_t kLargestRead = 0x40000000;
            const auto wanted = static_cast<DWORD>(std::min(buffer.size() - read, kLargestRead));
            DWORD got = 0;
            if (!ReadFile(handle_, buffer.data() + read, wanted, &got, nullptr)) {
                return false;
            }
            if (got == 0) {
                break;
            }
            read += got;
        }
        return true;
    }

private:
    HANDLE handle_;
};

}  // namespace

std::unique_ptr<ReadOnlyFile> openFile(const char16_t* path, std::uint32_t& error) {
    const HANDLE handle = CreateFileW(wide(path), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        error = GetLastError();
        return nullptr;
    }
    error = ERROR_SUCCESS;
    std::unique_ptr<ReadOnlyFile> file(new (std::nothrow) Win32File(handle));
    if (!file) {
        CloseHandle(handle);
        error = ERROR_NOT_ENOUGH_MEMORY;
    }
    return file;
}

}  // namespace platform
