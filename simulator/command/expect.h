// What a scenario can expect, wait for and prepare.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "simulator/command/tape_reader.h"
#include "simulator/command/unit.h"

namespace headunit {

// How what was done last reaches the player; a card goes at once and is announced by a message.
enum class Way { Message, Pointer, Card, Other };

// One run of a scenario.
struct Stage {
    Unit unit;
    fs::path scenario;             // its file
    std::uint64_t mark = 0;        // place on the tape before the last thing that was done
    std::set<std::uint64_t> used;  // lines of the tape that have met an expectation already
    bool updateGolden = false;
    Way last = Way::Other;
};

// Carries out `words` ("expect ...", "wait ...", "put ..." and so on). False with the reason.
// With `check` only the words themselves are looked at.
enum class How { Check, Run };
using StageCommand = bool (*)(Stage& stage, const std::vector<std::string>& words, How how,
                              std::string& why);

// Null when the scenario language has no such command of its own.
StageCommand findStageCommand(const std::string& name);

// "3s", "250ms" or "0.5s" in milliseconds. False when it is no time.
bool parseTime(const std::string& text, int& milliseconds);

// expect_tape.cpp, expect_screen.cpp, expect_files.cpp: null when they have no such subject.
struct Expectation {
    std::vector<std::string> words;  // without "expect", "no" and "within TIME"
    bool negated = false;
    int patience = 0;  // milliseconds: how long to wait for it, or how long it must not happen
};
// One attempt: true when it is met; `why` says what was seen instead.
using Attempt = bool (*)(Stage& stage, const Expectation& expectation, std::string& why);
struct Subject {
    const char* name;
    std::size_t fewest;  // words, the name included
    std::size_t most;
    Attempt attempt;
    int patience;  // milliseconds when the scenario says nothing
    // Checks the words without a unit; may be null.
    bool (*check)(const std::vector<std::string>& words);
};
const Subject* findTapeSubject(const std::string& name);
const Subject* findScreenSubject(const std::string& name);
const Subject* findFileSubject(const std::string& name);

bool isNumber(const std::string& word);

}  // namespace headunit
