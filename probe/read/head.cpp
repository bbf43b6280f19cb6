#include "probe/read/head.h"

namespace probe {

const char* readHead(ReadWindow& file, std::uint64_t minimum, std::size_t count, Head& head) {
    if (!file.size(head.fileSize)) {
        return "its size cannot be told";
    }
    if (head.fileSize < minimum) {
        return "too short";
    }
    if (!file.viewAll(0, count, head.bytes)) {
        return "its head cannot be read";
    }
    return nullptr;
}

}  // namespace probe
