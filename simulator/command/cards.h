// What is in the unit's slots, and how things of the PC get onto its cards.
//
// A slot is a folder at the unit's root. `.unit/slot-NAME` tells which folder of the PC the slot
// shows or showed last (empty: its own card), for the next `insert` and for the panel. Nothing of
// the PC's is ever reached through the unit: a card has copies that share their blocks where the
// file system can do that, else hard links, which the unit may only read and take away
// (simulator/coredll/files.cpp lets nothing be written through them), else full copies. What cannot
// be done throws.
#pragma once

#include <string>

#include "simulator/command/unit.h"
#include "simulator/shared/slots.h"

namespace headunit {

// Puts a file or folder of the PC in the place `to`, where nothing is yet.
void putFromPc(const fs::path& from, const fs::path& to);

// The folder of the PC or of the unit that is meant; empty when there is none.
fs::path folderOf(const Unit& unit, const std::string& name);

bool hasCard(const Unit& unit, const Slot& slot);
// The folder of the PC that the slot shows or showed last; empty: its own card.
std::string shownFolder(const Unit& unit, const Slot& slot);

// Takes the card out of the slot. A folder of the PC goes with what the unit took away from it; the
// slot's own card, and what was recorded anywhere, is kept below `.unit/pulled`.
void pullCard(const Unit& unit, const Slot& slot);
// Puts a folder of the PC, or with an empty path the slot's own card, into the empty slot.
void fillSlot(const Unit& unit, const Slot& slot, const fs::path& folder);

}  // namespace headunit
