// What the unit lets be heard: its sound device writes every sample that it is given to a file.
//
// A unit that was booted with --hear has a folder `sound` in its run folder. ALSA's file plugin
// makes a file of its own there for every sound device that is opened, named after rate, channels
// and format of the samples, in front of ALSA's null device. Wine fills up what the null device has
// swallowed at once with silence, so that the files grow three to four times as fast as the sound
// is played: they tell whether there was sound, not for how long.
#pragma once

#include "simulator/command/expect.h"

namespace headunit {

// The ALSA configuration of a unit that is listened to, below its run folder.
inline constexpr char kHearingConfiguration[] = "sound/alsa.conf";

// Before the unit starts: makes its folder for the sound ready, or takes it away. Throws.
void prepareHearing(const Unit& unit, bool hear);

// Expectations: nothing but zeros was played in the last half second; a sample that is not zero was
// played in the last 300 ms.
bool isSilent(Stage& stage, const Expectation& expectation, std::string& why);
bool isLoud(Stage& stage, const Expectation& expectation, std::string& why);

}  // namespace headunit
