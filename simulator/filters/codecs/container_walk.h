// What the walks through a container share. A damaged file must not keep them busy: elements and
// depth have limits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/file.h"

namespace filters {

inline constexpr int kMostElements = 4096;
inline constexpr int kDeepest = 8;
inline constexpr std::uint64_t kNoEnd = std::uint64_t{1} << 48;

struct Range {
    std::uint64_t begin;
    std::uint64_t end;
    std::uint64_t size() const { return end - begin; }
};

inline bool readWhole(platform::ReadOnlyFile& file, std::uint64_t offset,
                      std::span<std::uint8_t> out) {
    std::size_t read = 0;
    return file.readAt(offset, out, read) && read == out.size();
}

inline std::uint32_t le32(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

inline std::uint32_t be32(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) << 24 | static_cast<std::uint32_t>(p[1]) << 16 |
           static_cast<std::uint32_t>(p[2]) << 8 | static_cast<std::uint32_t>(p[3]);
}

// As sniffVideoCodec, for a file that is known to be of this kind.
std::uint32_t mp4Codec(platform::ReadOnlyFile& file);
bool mp4LacksIndex(platform::ReadOnlyFile& file);
std::uint32_t matroskaCodec(platform::ReadOnlyFile& file);

}  // namespace filters
