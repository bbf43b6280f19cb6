// What a scenario can do beside the verbs of `headunit`: expect, wait, and prepare the unit's
// files.
#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "simulator/command/unit.h"
#include "simulator/command/verbs.h"
#include "simulator/shared/tape_reader.h"

namespace headunit {

// One run of a scenario.
struct Stage {
    Unit unit;
    fs::path scenario;             // its file
    std::uint64_t mark = 0;        // place on the tape before the last thing that was done
    std::set<std::uint64_t> used;  // lines of the tape that have met an expectation already
    bool updateGolden = false;
    Way last = Way::Other;
};

// Carries out one step. False with the reason, which may be thrown as well.
using StageRun = std::function<bool(Stage& stage, std::string& why)>;
// Reads a command's words, its name first. Throws Failure when they are wrong.
using StageParse = StageRun (*)(const Words& words, const fs::path& scenario);

struct StageCommand {
    const char* name;
    StageParse parse;
    Way way;  // None: it only looks
};
// Null when the scenario language has no such command of its own.
const StageCommand* findStageCommand(const std::string& name);

// "3s", "250ms" or "0.5s" in milliseconds. False when it is no time.
bool parseTime(const std::string& text, int& milliseconds);

// expect.cpp: expect [no] SUBJECT ... [within TIME]
StageRun parseExpect(const Words& words, const fs::path& scenario);

}  // namespace headunit
