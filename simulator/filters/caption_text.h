// Reads subtitle files: SAMI ("smi"), SubRip ("srt"), MicroDVD and SubViewer ("sub"), Sub Station
// Alpha v4 ("ssa"). Text is UTF-8 or UTF-16 when a byte order mark says so or the bytes are valid
// UTF-8, else code page 949 (Korean).
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace filters {

struct Caption {
    DWORD start;        // milliseconds of play time
    DWORD end;          // the first millisecond without it; kOpenEnd: until the movie ends
    std::wstring text;  // lines separated by \n, no markup
};

inline constexpr DWORD kOpenEnd = 0xFFFFFFFF;

enum class SubtitleType : DWORD { Smi = 0, Srt = 1, Sub = 2, Ssa = 3 };

// The captions of a file in order of their start; empty when it is not of this type or holds none.
std::vector<Caption> readCaptions(SubtitleType type, std::span<const std::uint8_t> file);

// The index of the caption that stands at `milliseconds`, -1 when there is none. Of several the
// one that started last.
int captionAt(const std::vector<Caption>& captions, DWORD milliseconds);

}  // namespace filters
