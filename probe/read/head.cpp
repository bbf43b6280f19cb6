#include "probe/read/head.h"

namespace probe {

const char* readHead(ReadWindow& file, std::uint64_t minimum, std::span<std::uint8_t> head,
                     std::uint64_t& fileSize) {
    if (!file.size(fileSize)) {
        return "its size cannot be told";
    }
    if (fileSize < minimum) {
        return "too short";
    }
    if (!file.readExact(0, head)) {
        return "its head cannot be read";
    }
    return nullptr;
}

}  // namespace probe
