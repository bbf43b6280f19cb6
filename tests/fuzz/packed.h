// Files of a megabyte as inputs of a few kilobytes: runs of one byte are written as their length. A
// change of one byte of the input changes the file at that place alone, as a fuzzer wants it.
//
//   kEscape 0            the byte kEscape itself
//   kEscape CODE VALUE   ((CODE & 15) + 1) << (CODE >> 4) times VALUE, CODE not 0
//   anything else        itself
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace fuzz {

constexpr std::uint8_t kEscape = 0xDB;

std::vector<std::uint8_t> pack(std::span<const std::uint8_t> file);

// Puts the file into `file`, whose memory is used again; of one that is larger the first `most`
// bytes. Every input is a file: an escape that the input's end cuts stands for nothing.
void unpack(std::span<const std::uint8_t> input, std::size_t most, std::vector<std::uint8_t>& file);

}  // namespace fuzz
