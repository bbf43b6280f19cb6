#include <algorithm>
#include <cstring>
#include <new>

#include "platform/file.h"

namespace platform {
namespace {

class MemoryFile final : public ReadOnlyFile {
public:
    explicit MemoryFile(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    bool size(std::uint64_t& bytes) override {
        bytes = bytes_.size();
        return true;
    }

    bool readAt(std::uint64_t offset, std::span<std::uint8_t> buffer, std::size_t& read) override {
        read = 0;
        if (offset < bytes_.size()) {
            read = std::min(buffer.size(), bytes_.size() - static_cast<std::size_t>(offset));
            std::memcpy(buffer.data(), bytes_.data() + offset, read);
        }
        return true;
    }

private:
    std::span<const std::uint8_t> bytes_;
};

}  // namespace

std::unique_ptr<ReadOnlyFile> openMemory(std::span<const std::uint8_t> bytes) {
    return std::unique_ptr<ReadOnlyFile>(new (std::nothrow) MemoryFile(bytes));
}

}  // namespace platform
