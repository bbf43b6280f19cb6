// Starting the unit and its player.
#pragma once

#include <string>
#include <vector>

#include "simulator/command/unit.h"

namespace headunit {

struct BootOptions {
    bool pip = false;
    bool headless = false;
    bool panel = false;                // the panel beside the screen
    bool passive = false;              // the process manager only records
    bool hear = false;                 // what is played is kept, see hearing.h
    bool noPlayer = false;             // everything but the player
    std::string connectFolder;         // the dash camera's hand-over
    std::vector<std::string> without;  // peers that are absent: processmanager, orvi, ani_waiting
    int lateMilliseconds = 0;          // peers answer sent messages that much later
    std::string words;                 // all of these as the user gave them, for the tape
    fs::path play;                     // a recording or a folder of the PC or of the unit
};

// All throw what cannot be done.

// Makes the unit's folders and programs as they are when it leaves the factory; what the user put
// there stays.
void prepareDevice(const Unit& unit);
void makeFolder(const fs::path& folder);

// Boots the unit; returns when the player has shown its first frame. After a failure nothing is
// left running.
void boot(const Unit& unit, const BootOptions& options);

// Starts the player, in half width when asked for; the number of its process.
long long launchPlayer(const Unit& unit, bool pip);
// Starts the player in a running unit and waits for its first frame.
void startPlayer(const Unit& unit, const BootOptions& options);

}  // namespace headunit
