#include "probe/read/block.h"

#include <new>

namespace probe {

Result readBlock(ReadWindow& file, std::uint64_t offset, std::uint64_t size, Block& block) {
    block = {};
    std::uint64_t fileSize = 0;
    if (!file.size(fileSize)) {
        return kFail;
    }
    if (!blockFits(size, fileSize)) {
        return kOutOfMemory;
    }
    if (offset > fileSize || size > fileSize - offset) {
        return kFail;
    }
    const auto count = static_cast<std::size_t>(size);
    block.bytes.reset(new (std::nothrow) std::uint8_t[count]);
    if (!block.bytes) {
        return kOutOfMemory;
    }
    block.size = count;
    return file.readExact(offset, {block.bytes.get(), count}) ? kOk : kFail;
}

}  // namespace probe
