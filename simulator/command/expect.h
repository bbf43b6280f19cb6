// What can be expected of a unit: subjects, each with the words that it takes.
#pragma once

#include <string>
#include <vector>

#include "simulator/command/stage.h"

namespace headunit {

struct Expectation {
    Words words;  // without "expect", "no" and "within TIME"
    bool negated = false;
    int patience = 0;  // milliseconds: how long to wait for it, or how long it must not happen
};
// One attempt: true when it is met; `why` says what was seen instead.
using Attempt = bool (*)(Stage& stage, const Expectation& expectation, std::string& why);
// With "no": what happens must stay away for the whole time, what is must be gone in the end.
enum class Kind { Happens, Is };
struct Subject {
    const char* name;
    std::size_t fewest;  // words, the name included
    std::size_t most;
    Attempt attempt;
    int patience;  // milliseconds when the scenario says nothing
    // Checks the words without a unit; may be null.
    bool (*check)(const Words& words);
    Kind kind;
};
// expect_tape.cpp, expect_screen.cpp, expect_files.cpp
std::span<const Subject> tapeSubjects();
std::span<const Subject> screenSubjects();
std::span<const Subject> fileSubjects();

// A number or "*".
bool isNumber(const std::string& word);

}  // namespace headunit
