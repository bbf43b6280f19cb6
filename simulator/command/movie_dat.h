// The player's state across restarts (settings/persisted_state.h) on the unit's resident flash.
#pragma once

#include <optional>

#include "settings/persisted_state.h"
#include "simulator/command/unit.h"
#include "simulator/shared/json.h"

namespace headunit {

// Nothing when the file is missing or is not 1072 bytes long.
std::optional<settings::PersistedState> readMovieDat(const Unit& unit);
bool writeMovieDat(const Unit& unit, const settings::PersistedState& state);

// The record as a JSON object, its fields by name.
Json movieDatJson(const settings::PersistedState& state);
bool isMovieDatField(const std::string& name);
// False when there is no such field or it does not take this value; a path is cut to its field.
bool setMovieDatField(settings::PersistedState& state, const std::string& name,
                      const std::string& value);

}  // namespace headunit
