// Small texts out of numbers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace mediaprobe {

// As printf, cut at 255 bytes.
[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...);

// 211042 as "211,042".
std::string grouped(std::uint64_t value);
// Seconds as "0:30", "1:00:05".
std::string playTime(std::uint32_t seconds);
// Bytes as people say them: "812 bytes", "37.2 kB", "1.2 MB", "4.3 GB"; 1 kB is 1,000 bytes.
std::string roundSize(std::uint64_t bytes);
// "1.2 MB of 9.0 MB"; "1,249 of 1,250 bytes" where both would read the same. `least` stands in
// front of the whole.
std::string partOf(std::uint64_t bytes, std::uint64_t wholeBytes, const char* least = "");

// Control characters, and bytes that are no UTF-8, as "\n", "\t", "\x1b": what a file is called or
// tagged may not steer the terminal that shows it.
std::string escaped(std::string_view text);

}  // namespace mediaprobe
