// Scenarios: plain text files that drive a unit of their own and say what must be seen.
//
// One command a line, its words as shared/words.h has them: the verbs of `headunit`, and those of
// stage.h. `section NAME` begins a part that is counted and reported by itself. A scenario is read
// whole before anything runs: what it holds then has only to be done.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/command/stage.h"

namespace headunit {

struct Step {
    int line = 0;
    std::string text;  // as written
    StageRun run;
    Way way = Way::None;  // of a verb that acts
    bool boots = false;
};

struct Section {
    std::string name;
    std::vector<Step> steps;
};

// Reads and checks a scenario. Nothing when the file cannot be read or a line is wrong; then `why`
// is "FILE:LINE: reason".
std::optional<std::vector<Section>> readScenario(const fs::path& file, std::string& why);

// "folder/name.scn": how a report names a scenario; files of the same name lie in several folders.
std::string scenarioLabel(const fs::path& file);

struct ScenarioOptions {
    bool updateGolden = false;
    bool keep = false;  // leave the unit's folder and tape
};

struct SectionResult {
    std::string name;
    bool passed = false;
    std::string report;  // PASS/FAIL lines of its steps
    std::string reason;  // of the failure
    double seconds = 0;
};

// Runs one scenario in a unit of its own, without a display.
std::vector<SectionResult> runScenario(const fs::path& file, const std::vector<Section>& sections,
                                       const ScenarioOptions& options);

}  // namespace headunit
