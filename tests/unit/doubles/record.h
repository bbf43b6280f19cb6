// What the code under test asked of its surroundings, one line each, in order. Tests compare whole
// sequences of it as text.
#pragma once

#include <string>
#include <string_view>

namespace test {

// Appends a line, formatted as printf does.
[[gnu::format(printf, 1, 2)]] void note(const char* format, ...);

// The lines since the last call, each ended by "\n".
std::string taken();

// Text for a line: UTF-16 as UTF-8; control characters as \n and \r.
std::string shown(std::u16string_view text);
std::string shown(std::string_view text);

}  // namespace test
