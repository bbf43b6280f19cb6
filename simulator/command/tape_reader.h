// Reading the unit's tape.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "simulator/command/unit.h"
#include "simulator/shared/json.h"

namespace headunit {

struct TapeLine {
    std::string raw;  // as it stands on the tape
    Json value;       // an object, or null when it is no line of a tape
};

// Goes forward along the tape while it is being written.
class TapeReader {
public:
    // From the beginning, or (offset in bytes) from a place that at() gave.
    explicit TapeReader(const Unit& unit, std::uint64_t offset = 0);

    // The next whole line; nothing when there is none yet.
    std::optional<TapeLine> next();
    [[nodiscard]] std::uint64_t at() const { return offset_; }

private:
    fs::path file_;
    std::uint64_t offset_;
};

// End of the tape as it is now, in bytes.
std::uint64_t tapeEnd(const Unit& unit);

}  // namespace headunit
