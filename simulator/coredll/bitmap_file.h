// Whether a bitmap file can be handed to the system's loader, which on some systems reads as many
// rows as the header claims without looking at what the file holds.
// Layout: BITMAPFILEHEADER (14 bytes) and BITMAPINFOHEADER (40) of the Windows SDK, little-endian.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace coredll {

inline constexpr std::size_t kBitmapHeadBytes = 54;

// `head`: the first 54 bytes. 1 for an uncompressed bitmap of 1 to 8192 pixels each way whose file
// of `fileBytes` holds every row and colour that the header claims, else 0.
int isSoundBitmap(std::span<const std::uint8_t, kBitmapHeadBytes> head, std::uint64_t fileBytes);

// Bytes of such a file up to the end of its last row: at most 256 MiB and a little. Only for heads
// that isSoundBitmap accepts.
std::size_t soundBitmapBytes(std::span<const std::uint8_t, kBitmapHeadBytes> head);

}  // namespace coredll
