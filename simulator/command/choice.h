// What the player is to play at its next start.
#pragma once

#include <optional>

#include "settings/persisted_state.h"
#include "simulator/command/unit.h"

namespace headunit {

// Puts what is to be played on the unit where it is not there already, and finds it in the player's
// list: what the player is to go on with, nothing when `play` is empty. The running player notices
// nothing. Both throw.
using Choice = std::optional<settings::PersistedState>;
Choice choose(const Unit& unit, const fs::path& play);
// Writes Movie.dat so that the player goes on with it.
void remember(const Unit& unit, const Choice& choice);

}  // namespace headunit
