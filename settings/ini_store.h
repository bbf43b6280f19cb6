// The unit's shared settings file. It is read by a character state machine and rewritten whole,
// because other programs of the unit rely on exactly what that machine finds and misses: nothing
// is trimmed, a blank line hides the key behind it, a last line without a newline is not seen.
//
// Section names, keys and values are cut at 127 characters. All comparisons are exact and
// case-sensitive. `path` may name a file that does not exist.
#pragma once

#include <cstdint>

namespace settings {

// The integer that stands at `key` in `section`: leading white space and a sign are accepted, the
// number ends at the first non-digit, no digits give 0, values beyond 32 bits give the nearest.
// `fallback` when the file cannot be opened or the key is not found.
[[nodiscard]] std::int32_t readIniInt(const char16_t* section, const char16_t* key,
                                      std::int32_t fallback, const char16_t* path);

// Replaces the value of the key, or adds the key at the end of its section, or adds both at the
// end of the file; everything else stays as it was, and a missing file counts as empty. Returns 1,
// or 0 when the file is there and cannot be opened or read to its end (a byte 0x1A ends text mode
// before it), is larger than 1 MiB, which all leave it alone, or could not be written; the text
// that was there is then written back.
int writeIniString(const char16_t* section, const char16_t* key, const char16_t* value,
                   const char16_t* path);
int writeIniInt(const char16_t* section, const char16_t* key, std::int32_t value,
                const char16_t* path);

}  // namespace settings
