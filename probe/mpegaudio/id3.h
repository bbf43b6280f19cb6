// ID3 tags: the length of a version 2 tag (id3.org, ID3 tag version 2.4.0, section 3.1) and the
// texts of a version 1 tag (the last 128 bytes of a file).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "probe/record/media_record.h"

namespace probe {

//   0  3  "ID3"
//   3  1  version
//   4  1  revision
//   5  1  flags; 0x10: a footer follows the tag (version 4)
//   6  4  size, seven bits in each byte; neither header nor footer counted
constexpr std::size_t kId3HeaderBytes = 10;
constexpr std::size_t kId3FooterBytes = 10;
constexpr std::size_t kId3v1Bytes = 128;

// The size field of a version 2 tag header, 0 to 2^28 - 1. `header` holds at least 10 bytes.
std::uint32_t id3TagSize(std::span<const std::uint8_t> header);

// Fills title, artist, album, year and genreIndex, each only where it is not known yet, from the
// 128 bytes of a version 1 tag ("TAG" has been seen). Texts are in the unit's own code page.
void readId3v1(std::span<const std::uint8_t, kId3v1Bytes> tag, MediaRecord& record);

}  // namespace probe
