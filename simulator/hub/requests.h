// What the hub is asked for and how it answers. Windows only.
#pragma once

#include <nlohmann/json.hpp>

#include "simulator/hub/hub.h"

namespace hub {

struct Answer {
    bool good = true;
    Json value = nullptr;  // of a bad one the reason
};
Answer failed(const std::string& why);
// The command has looked at its numbers; 0 for what is none.
long long numberOf(const std::string& word);

// Carries out a request. Any thread.
Answer execute(const Words& words);

// Whether the board told that the sound is muted, 1 or 0; -1 before it told anything.
int muted();

// requests_storage.cpp
Answer listing(const Words& words);
Answer connect(const Words& words);
Answer fault(const Words& words);

// requests_power.cpp
Answer startProgram(const Words& words);
Answer awaitWindow(const Words& words);
Answer cutPowerNow(const Words& words);
Answer powerOn(const Words& words);

}  // namespace hub
