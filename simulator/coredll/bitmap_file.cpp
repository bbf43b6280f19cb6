#include "simulator/coredll/bitmap_file.h"

namespace coredll {
namespace {

//  offset  size
//       0     2  "BM"
//      10     4  where the rows begin
//      14     4  bytes of the second header, 40 and more
//      18     4  width in pixels
//      22     4  height in pixels, negative when the top row comes first
//      26     2  planes, 1
//      28     2  bits of a pixel
//      30     4  compression, 0 none, 3 none with three colour masks
//      46     4  colours of the palette, 0 as many as the bits allow
constexpr std::int64_t kFileHeaderBytes = 14;
constexpr std::int64_t kLargest = 8192;  // pixels
constexpr std::uint32_t kNotCompressed = 0, kColourMasks = 3;

std::uint32_t le32(std::span<const std::uint8_t, kBitmapHeadBytes> head, std::size_t at) {
    return static_cast<std::uint32_t>(head[at]) | static_cast<std::uint32_t>(head[at + 1]) << 8 |
           static_cast<std::uint32_t>(head[at + 2]) << 16 |
           static_cast<std::uint32_t>(head[at + 3]) << 24;
}

bool isDepth(std::uint32_t bits) {
    return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

// Bytes of the palette or the colour masks behind the headers; negative when there cannot be such.
std::int64_t colourBytes(std::uint32_t bits, std::uint32_t compression, std::uint32_t colours) {
    constexpr std::int64_t kMaskBytes = 12, kColourBytes = 4;
    if (compression == kColourMasks) {
        return bits == 16 || bits == 32 ? kMaskBytes : -1;
    }
    if (compression != kNotCompressed) {
        return -1;
    }
    const std::uint32_t most = bits <= 8 ? 1u << bits : 0;
    if (colours > 256) {
        return -1;
    }
    return kColourBytes * (colours != 0 ? colours : most);
}

// Of headers whose numbers are within their bounds but for where the rows begin.
std::uint64_t bytesOf(std::span<const std::uint8_t, kBitmapHeadBytes> head) {
    const std::int64_t width = static_cast<std::int32_t>(le32(head, 18));
    const std::int64_t height = static_cast<std::int32_t>(le32(head, 22));
    const std::int64_t bits = le32(head, 26) >> 16;
    const std::int64_t rowBytes = (width * bits + 31) / 32 * 4;
    return static_cast<std::uint64_t>(le32(head, 10) + rowBytes * (height < 0 ? -height : height));
}

}  // namespace

int isSoundBitmap(std::span<const std::uint8_t, kBitmapHeadBytes> head, std::uint64_t fileBytes) {
    const auto width = static_cast<std::int32_t>(le32(head, 18));
    const std::int64_t signedHeight = static_cast<std::int32_t>(le32(head, 22));
    const std::int64_t height = signedHeight < 0 ? -signedHeight : signedHeight;
    const std::uint32_t planesAndBits = le32(head, 26);
    const std::uint32_t bits = planesAndBits >> 16;
    const std::int64_t headers = kFileHeaderBytes + le32(head, 14);
    const std::int64_t rows = le32(head, 10);
    const std::int64_t colours = colourBytes(bits, le32(head, 30), le32(head, 46));
    if (head[0] != 'B' || head[1] != 'M' || (planesAndBits & 0xFFFF) != 1 || !isDepth(bits) ||
        headers < static_cast<std::int64_t>(kBitmapHeadBytes) || colours < 0 || width < 1 ||
        width > kLargest || height < 1 || height > kLargest || rows < headers + colours) {
        return 0;
    }
    return bytesOf(head) <= fileBytes ? 1 : 0;
}

std::size_t soundBitmapBytes(std::span<const std::uint8_t, kBitmapHeadBytes> head) {
    return static_cast<std::size_t>(bytesOf(head));
}

}  // namespace coredll
