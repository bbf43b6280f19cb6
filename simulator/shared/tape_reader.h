// Reading the unit's tape. Portable.
#pragma once

#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "simulator/shared/json.h"

namespace headunit {

struct TapeLine {
    std::string raw;  // as it stands on the tape
    Json value;       // an object, empty when it is no line of a tape
};

// Goes forward along the tape while it is being written.
class TapeReader {
public:
    // From the beginning, or (offset in bytes) from a place that at() gave.
    explicit TapeReader(std::filesystem::path tape, std::uint64_t offset = 0)
        : tape_(std::move(tape)), offset_(offset) {}

    // The next whole line; nothing when there is none yet.
    std::optional<TapeLine> next();
    [[nodiscard]] std::uint64_t at() const { return offset_; }

private:
    std::filesystem::path tape_;
    std::uint64_t offset_;
};

// End of the tape as it is now, in bytes.
std::uint64_t tapeEnd(const std::filesystem::path& tape);

}  // namespace headunit
