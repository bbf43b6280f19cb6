// What the readers of subtitle files share: taking lines, numbers and times off a text, and leaving
// its markup out.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/filters/captions/caption_text.h"

namespace filters {

using View = std::u16string_view;
using Captions = std::vector<Caption>;
using Milliseconds = std::uint32_t;

// Without blanks and control characters at both ends.
View trimmed(View text);
// Capital and small letters of ASCII count as the same.
bool startsWithNoCase(View text, View start);
std::size_t findNoCase(View text, View wanted, std::size_t from);

// Takes the next line off the front, without its end and cut to kLongestLine; false at the end.
bool takeLine(View& text, View& line);
bool takeOneOf(View& text, View set);
// A decimal number of at most nine digits; `digits` (may be null) gets how many there were.
std::optional<std::uint32_t> takeNumber(View& text, int* digits = nullptr);
// "hours:minutes:seconds" with a fraction after a comma, a point or a colon.
std::optional<Milliseconds> takeClock(View& text);

void replaceAll(std::u16string& text, View from, View to);
// Text between < and > goes; a line break tag becomes one.
std::u16string withoutTags(View text);
// Text between { and } goes.
std::u16string withoutBraces(View text);

// Adds a caption unless it shows nothing or there are kMostCaptions; whether it did.
bool add(Captions& captions, Milliseconds start, Milliseconds end, View text);

Captions readSami(View file);
Captions readSubRip(View file);
Captions readMicroDvd(View file);
Captions readSubViewer(View file);
Captions readSubStationAlpha(View file);

}  // namespace filters
