// Words as people type them, in scenarios and on the tape. Portable.
//
// Words are separated by blanks; a word in double quotes may hold blanks and the escapes
// \n \r \t \" \\ \xHH (one byte). "#" begins a comment at the start of a line or behind a blank,
// unless a colour (#RRGGBB) follows.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace headunit {

using Words = std::vector<std::string>;

// Splits a line into its words. False on an open quote or an unknown escape.
bool splitWords(std::string_view line, Words& words);
// The words as one line that splitWords() takes apart again.
std::string joinWords(const Words& words);
// One text in quotes, as joinWords() writes it.
std::string inQuotes(std::string_view text);

// Decimal or 0x, with sign. False when it is no number or does not fit.
bool parseNumber(const std::string& text, long long& number);

}  // namespace headunit
