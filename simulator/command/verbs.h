// The verbs of the `headunit` command. Each takes its words without the verb itself and without
// --device; the result is the exit status: 0 done, 1 failed (one line on standard error says why),
// 2 wrong use.
#pragma once

#include <string>
#include <vector>

#include "simulator/command/unit.h"

namespace headunit {

using Words = std::vector<std::string>;

// Verbs that do something to the unit are put on its tape before they do it.
enum class Does { Act, Look };

struct Verb {
    Does does;
    const char* name;
    const char* usage;  // what follows the name
    const char* help;
    int (*run)(const Unit& unit, const Words& words);
};

// Puts the verb on the tape when it acts and the unit runs, and carries it out.
int perform(const Verb& verb, const Unit& unit, const Words& words);
// The words as one line that splitWords() of scenario.h takes apart again.
std::string joinWords(const Words& words);

// Null when there is no such verb.
const Verb* findVerb(const std::string& name);
void printHelp();
// One line with the verb's usage; 2.
int wrongUse(const char* verb);

// Takes `option` out of the words; true when it was there.
bool takeFlag(Words& words, const char* option);
// Takes `option` and the word after it; false when the word is missing.
bool takeValue(Words& words, const char* option, std::string& value);
// Decimal or 0x, with sign.
bool parseNumber(const std::string& text, long long& number);

// "verbs_*.cpp"
int bootVerb(const Unit& unit, const Words& words);
int filmVerb(const Unit& unit, const Words& words);
int skinVerb(const Unit& unit, const Words& words);
int viewVerb(const Unit& unit, const Words& words);
int replayVerb(const Unit& unit, const Words& words);
int cutVerb(const Unit& unit, const Words& words);
int scenarioVerb(const Unit& unit, const Words& words);
int prepareVerb(const Unit& unit, const Words& words);
int restartVerb(const Unit& unit, const Words& words);
int startVerb(const Unit& unit, const Words& words);
int shutdownVerb(const Unit& unit, const Words& words);
int killVerb(const Unit& unit, const Words& words);
int sendVerb(const Unit& unit, const Words& words);
int keyVerb(const Unit& unit, const Words& words);
int connectVerb(const Unit& unit, const Words& words);
int closeVerb(const Unit& unit, const Words& words);
int gestureVerb(const Unit& unit, const Words& words);
int cardVerb(const Unit& unit, const Words& words);
int driveVerb(const Unit& unit, const Words& words);
int muteVerb(const Unit& unit, const Words& words);
int boxVerb(const Unit& unit, const Words& words);
int faultVerb(const Unit& unit, const Words& words);
int touchVerb(const Unit& unit, const Words& words);
int holdVerb(const Unit& unit, const Words& words);
int recordVerb(const Unit& unit, const Words& words);
int releaseVerb(const Unit& unit, const Words& words);
int pressVerb(const Unit& unit, const Words& words);
int typeVerb(const Unit& unit, const Words& words);
int shotVerb(const Unit& unit, const Words& words);
int logVerb(const Unit& unit, const Words& words);
int stateVerb(const Unit& unit, const Words& words);

// "drive --chart": what the driving check makes of every speed, as a table of characters.
int chartDriving();
// "card make DIR [FILES]".
int makeCard(const Words& words);

// The state as JSON, or nothing when it cannot be had.
std::string stateJson(const Unit& unit);

}  // namespace headunit
