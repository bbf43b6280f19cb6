// Reads the text of subtitle files: SAMI ("smi"), SubRip ("srt"), MicroDVD and SubViewer ("sub"),
// Sub Station Alpha v4 ("ssa"). The work grows with the length of the file, whatever stands in it,
// and what a damaged file may cost is limited below. Portable; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace filters {

struct Caption {
    std::uint32_t start;  // milliseconds of play time
    std::uint32_t end;    // the first millisecond without it; kOpenEnd: until the movie ends
    std::u16string text;  // lines separated by \n, no markup; at most kLongestCaption
};

inline constexpr std::uint32_t kOpenEnd = 0xFFFFFFFF;

// Of a file: bytes, lines and captions; of a line and of a caption: UTF-16 units. Real files have
// some hundred thousand bytes and two thousand captions of at most a hundred letters. What is
// longer is cut, a file of more bytes has no captions.
inline constexpr std::size_t kLargestSubtitleFile = 4 << 20;
inline constexpr std::size_t kMostCaptions = 20'000;
inline constexpr std::size_t kLongestLine = 4096;
inline constexpr std::size_t kLongestCaption = 512;

enum class SubtitleType : std::uint32_t { Smi = 0, Srt = 1, Sub = 2, Ssa = 3 };

// The captions of a file in order of their start; empty when it is not of this type or holds none.
std::vector<Caption> readCaptions(SubtitleType type, std::u16string_view file);

// The index of the caption that stands at `milliseconds`, -1 when there is none. Of several the
// one that started last.
int captionAt(const std::vector<Caption>& captions, std::uint32_t milliseconds);

}  // namespace filters
