// What the player is to play at its next start.
#pragma once

#include <string>

#include "settings/persisted_state.h"
#include "simulator/command/unit.h"

namespace headunit {

// What the player goes on with at its next start.
struct Choice {
    bool given = false;  // else whatever it remembers
    settings::PersistedState state;
};
// Puts what is to be played on the unit where it is not there already, and finds it in the player's
// list. The running player notices nothing. False with the reason.
bool choose(const Unit& unit, const fs::path& play, Choice& choice, std::string& why);
// Writes Movie.dat so that the player goes on with it. False with the reason.
bool remember(const Unit& unit, const Choice& choice, std::string& why);

}  // namespace headunit
