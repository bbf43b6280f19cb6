// Read-only access to a file by absolute offset: the one way in which the player and its media
// probe look into recordings. One implementation over the Windows file calls, one over POSIX,
// one over a block of memory (tests and fuzzing). A file is never written, never mapped.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace platform {

class ReadOnlyFile {
public:
    virtual ~ReadOnlyFile() = default;

    // Size in bytes: natively when the file was opened, on Windows at the time of the call. Returns
    // false when it cannot be told.
    [[nodiscard]] virtual bool size(std::uint64_t& bytes) = 0;

    // Reads up to buffer.size() bytes from the absolute offset. Returns false when the seek or
    // the read failed; a read that met the end of the file succeeds with `read` below the wanted
    // count, 0 included.
    [[nodiscard]] virtual bool readAt(std::uint64_t offset, std::span<std::uint8_t> buffer,
                                      std::size_t& read) = 0;
};

// Opens `path` (zero-terminated UTF-16; either kind of slash natively) for shared reading.
// Returns null when it cannot be opened, with the Windows error number in `error`
// (2 file not found, 3 path not found, 5 access denied, 32 sharing violation, else 31).
[[nodiscard]] std::unique_ptr<ReadOnlyFile> openFile(const char16_t* path, std::uint32_t& error);

// The same over bytes that the caller keeps alive.
[[nodiscard]] std::unique_ptr<ReadOnlyFile> openMemory(std::span<const std::uint8_t> bytes);

}  // namespace platform
