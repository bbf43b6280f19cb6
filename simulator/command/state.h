// Everything that can be said of a unit, running or not.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "simulator/command/unit.h"
#include "simulator/shared/json.h"

namespace headunit {

// {"windows", "connectPath", "priorities", "power", "player", "speed", "muted", "faults", "cards",
// "movieDat", "config"} as docs/head-unit.md describes them.
Json unitState(const Unit& unit);
// The same for a person.
std::string describeState(const Unit& unit, const Json& state);

}  // namespace headunit
