#include "tests/fuzz/packed.h"

#include <algorithm>

namespace fuzz {
namespace {

constexpr std::size_t kShortestRun = 8;  // below it the bytes themselves

constexpr std::size_t lengthOf(unsigned code) {
    return std::size_t{(code & 15) + 1} << (code >> 4);
}

// The largest run that is not longer.
std::uint8_t codeFor(std::size_t length) {
    unsigned best = 1;
    for (unsigned code = 2; code <= 255; ++code) {
        if (lengthOf(code) <= length && lengthOf(code) > lengthOf(best)) {
            best = code;
        }
    }
    return static_cast<std::uint8_t>(best);
}

}  // namespace

std::vector<std::uint8_t> pack(std::span<const std::uint8_t> file) {
    std::vector<std::uint8_t> input;
    for (std::size_t at = 0; at < file.size();) {
        const auto rest = file.subspan(at);
        const std::uint8_t value = rest.front();
        const auto end =
            std::ranges::find_if(rest, [value](std::uint8_t other) { return other != value; });
        const auto same = static_cast<std::size_t>(end - rest.begin());
        if (same >= kShortestRun) {
            const std::uint8_t code = codeFor(same);
            input.insert(input.end(), {kEscape, code, value});
            at += lengthOf(code);
            continue;
        }
        input.push_back(value);
        if (value == kEscape) {
            input.push_back(0);
        }
        ++at;
    }
    return input;
}

void unpack(std::span<const std::uint8_t> input, std::size_t most,
            std::vector<std::uint8_t>& file) {
    file.clear();
    for (std::size_t at = 0; at < input.size() && file.size() < most; ++at) {
        if (input[at] != kEscape) {
            file.push_back(input[at]);
            continue;
        }
        const auto rest = input.subspan(at + 1);
        if (!rest.empty() && rest[0] == 0) {
            file.push_back(kEscape);
            at += 1;
        } else if (rest.size() >= 2) {
            const std::size_t length = std::min(lengthOf(rest[0]), most - file.size());
            file.insert(file.end(), length, rest[1]);
            at += 2;
        }
    }
}

}  // namespace fuzz
