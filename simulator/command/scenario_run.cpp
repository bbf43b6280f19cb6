// Running scenarios.
#include <unistd.h>

#include "simulator/command/boot.h"
#include "simulator/command/display.h"
#include "simulator/command/expect.h"
#include "simulator/command/scenario.h"
#include "simulator/command/verbs.h"

namespace headunit {
namespace {

// Words that only look leave the mark where it is.
bool acts(const std::string& name) {
    return name != "expect" && name != "wait" && name != "shot" && name != "state" &&
           name != "fails";
}

constexpr char kSettlePatience[] = "2000";  // milliseconds; a player may wait for a late peer

// How a command reaches the player. Of the same way the first comes first.
Way wayOf(const std::vector<std::string>& words) {
    const std::string& name = words[0];
    if (name == "send") {
        return words.size() > 1 && words[1] == "--sync" ? Way::Other : Way::Message;
    }
    if (name == "key" || name == "gesture" || name == "mute" || name == "close") {
        return Way::Message;
    }
    if (name == "card") {
        return Way::Card;
    }
    return name == "touch" || name == "hold" || name == "release" ? Way::Pointer : Way::Other;
}

// A touch would overtake a message that is still in the player's queue, and a sent message or a
// fault both of them: nobody at the car is that fast.
void settle(Stage& stage, Way next) {
    std::string answer;
    if (stage.last != next && stage.last != Way::Other) {
        ask(stage.unit, {"settle", kSettlePatience}, answer);
    }
    stage.last = next;
}

// The verb's exit status. A boot within a scenario never uses the user's desktop, and ends the unit
// that runs.
int runVerb(Stage& stage, std::vector<std::string> words, std::string& why) {
    const Verb* verb = findVerb(words[0]);
    const bool isBoot = words[0] == "boot";
    words.erase(words.begin());
    if (isBoot) {
        words.push_back("--headless");
    }
    // What is named "shot.png" belongs to the run, not to the current folder.
    if (verb == findVerb("shot") && !words.empty() && words[0].find('/') == std::string::npos) {
        words[0] = (stage.unit.device.parent_path() / words[0]).string();
    }
    // So does a card that is made there, as the unit names it.
    if (words.size() > 1 && verb == findVerb("card") && words[0] == "make" && words[1][0] != '/') {
        words[1] = hostPath(stage.unit, words[1]).string();
    }
    const Quiet quiet;
    const int status = perform(*verb, stage.unit, words);
    why = status == 0 ? "" : lastError();
    return status;
}

bool runStep(Stage& stage, const Step& step, std::string& why) {
    std::vector<std::string> words = step.words;
    if (acts(words[0])) {
        settle(stage, wayOf(words));
        stage.mark = words[0] == "boot" ? 0 : tapeEnd(stage.unit);
        stage.used.clear();
    }
    if (words[0] == "boot") {
        endUnit(stage.unit);
    }
    if (words[0] == "fails") {
        words.erase(words.begin());
        const int status = runVerb(stage, words, why);
        why = status == 0 ? "it did not fail" : why;
        return status == 1;
    }
    if (const StageCommand command = findStageCommand(words[0])) {
        return command(stage, words, How::Run, why);
    }
    return runVerb(stage, words, why) == 0;
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
