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
// How loud the film is that plays, in hundredths of a decibel (0 as recorded, -10000 silent); null
// when none plays. It asks the player, which costs time.
Json loudnessOf(const Unit& unit);
// The same for a person; with its "loudness", if it is in there.
std::string describeState(const Unit& unit, const Json& state);

}  // namespace headunit
