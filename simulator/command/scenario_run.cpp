// Running scenarios.
#include <unistd.h>

#include "simulator/command/scenario.h"
#include "simulator/command/screen.h"

namespace headunit {
namespace {

constexpr char kSettlePatience[] = "2000";  // milliseconds; a player may wait for a late peer

// A touch would overtake a message that is still in the player's queue, and a sent message or a
// fault both of them: nobody at the car is that fast.
void settle(Stage& stage, Way next) {
    std::string answer;
    if (stage.last != next && stage.last != Way::Other) {
        ask(stage.unit, {"settle", kSettlePatience}, answer);
    }
    stage.last = next;
}

bool runStep(Stage& stage, const Step& step, std::string& why) {
    if (step.way != Way::None) {
        settle(stage, step.way);
        stage.mark = step.boots ? 0 : tapeEnd(stage.unit.tape());
        stage.used.clear();
    }
    try {
        return step.run(stage, why);
    } catch (const Failure& failure) {
        why = failure.what();
        return false;
    }
}

SectionResult runSection(Stage& stage, const Section& section) {
    SectionResult result{section.name, true, "", "", 0};
    const std::string file = scenarioLabel(stage.scenario);
    const long long start = process::nowMilliseconds();
    for (const Step& step : section.steps) {
        std::string why;
        const bool good = runStep(stage, step, why);
        const std::string head = file + ":" + std::to_string(step.line) + ": " + step.text;
        result.report += (good ? "PASS " : "FAIL ") + head + (good ? "" : "  -- " + why) + "\n";
        if (!good) {
            result.passed = false;
            result.reason = head + " -- " + why;
            break;
        }
    }
    result.seconds = static_cast<double>(process::nowMilliseconds() - start) / 1000.0;
    return result;
}

// What helps to understand a failure: the screen and the tape.
void keepEvidence(const Stage& stage, SectionResult& result) {
    std::string why;
    std::error_code error;
    std::string name = scenarioLabel(stage.scenario) + "-" + result.name;
    for (char& c : name) {
        c = c == ' ' || c == '/' ? '-' : c;
    }
    const fs::path base = fs::proximate(projectRoot() / "out/scenarios" / name, error);
    if (takePicture(stage.unit, base.string() + ".png", why)) {
        result.report += "     screen: " + base.string() + ".png\n";
    }
    fs::copy_file(stage.unit.tape(), base.string() + ".jsonl", fs::copy_options::overwrite_existing,
                  error);
    if (!error) {
        result.report += "     tape:   " + base.string() + ".jsonl\n";
    }
}

}  // namespace

std::string scenarioLabel(const fs::path& file) {
    const fs::path whole = fs::absolute(file);
    return (whole.parent_path().filename() / whole.filename()).string();
}

std::vector<SectionResult> runScenario(const fs::path& file, const std::vector<Section>& sections,
                                       const ScenarioOptions& options) {
    const fs::path work =
        projectRoot() / "out/scenarios" / (file.stem().string() + "." + std::to_string(getpid()));
    Stage stage;
    stage.unit.device = work / "device";
    stage.scenario = fs::absolute(file);
    stage.updateGolden = options.updateGolden;
    std::error_code error;
    fs::create_directories(stage.unit.device, error);
    const EndsOnInterrupt guard(stage.unit);
    std::vector<SectionResult> results;
    for (const Section& section : sections) {
        results.push_back(runSection(stage, section));
        if (!results.back().passed) {
            keepEvidence(stage, results.back());
        }
    }
    endUnit(stage.unit);
    if (options.keep) {
        results.back().report += "     kept:   " + stage.unit.device.string() + "\n";
    } else {
        fs::remove_all(work, error);
    }
    return results;
}

}  // namespace headunit
