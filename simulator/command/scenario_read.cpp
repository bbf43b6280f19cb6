// Reading and checking scenarios.
#include <fstream>

#include "simulator/command/scenario.h"

namespace headunit {
namespace {

std::string trimmed(const std::string& line) {
    const auto first = line.find_first_not_of(" \t\r");
    const auto last = line.find_last_not_of(" \t\r");
    return first == std::string::npos ? "" : line.substr(first, last - first + 1);
}

// A name without a folder belongs to the run, not to the current folder; a card is made where the
// unit names it. A boot within a scenario never uses the user's desktop, and ends the unit that
// runs.
enum class Wanted { Good, Failing, Any };  // how the verb may end

StageRun runOf(const Deed& deed, Wanted wanted) {
    const std::string name = deed.verb->name;
    return [deed, name, wanted](Stage& stage, std::string& why) {
        Deed here = deed;
        const bool makes = name == "card" && here.words[0] == "make" && here.words[1][0] != '/';
        if (name == "boot") {
            endUnit(stage.unit);
            here.words.emplace_back("--headless");
        } else if (name == "shot" && here.words[0].find('/') == std::string::npos) {
            here.words[0] = (stage.unit.device.parent_path() / here.words[0]).string();
        } else if (makes) {
            here.words[1] = hostPath(stage.unit, here.words[1]).string();
        }
        Words line = {name};
        line.insert(line.end(), here.words.begin(), here.words.end());
        const Outcome told = perform(parseDeed(line), stage.unit);
        why = told.good && wanted == Wanted::Failing ? "it did not fail" : told.text;
        return wanted == Wanted::Any || told.good == (wanted == Wanted::Good);
    };
}

void parseVerb(const Words& words, Wanted wanted, Step& step) {
    const Verb* const verb = findVerb(words[0]);
    if (verb != nullptr && verb->scenario == Scenario::No) {
        throw Failure("\"" + words[0] + "\" cannot be used in a scenario");
    }
    const Deed deed = parseDeed(words);
    step.run = runOf(deed, wanted);
    // What fails leaves the mark where it is. Sent and answered, a message has no queue to wait in.
    const bool sent = deed.words.size() > 1 && deed.words[0] == "--sync";
    step.way = wanted == Wanted::Failing ? Way::None : (sent ? Way::Other : deed.verb->way);
    step.boots = words[0] == "boot";
}

void parseStep(const fs::path& file, Words words, Step& step) {
    if (words[0] == "fails" || words[0] == "try") {
        const std::string how = words[0];
        words.erase(words.begin());
        if (words.empty()) {
            throw Failure(how + " needs a verb");
        }
        parseVerb(words, how == "try" ? Wanted::Any : Wanted::Failing, step);
    } else if (const StageCommand* command = findStageCommand(words[0])) {
        step.way = command->way;
        step.run = command->parse(words, file);
    } else {
        parseVerb(words, Wanted::Good, step);
    }
}

// A line of the scenario, which may begin a section.
void parseLine(const fs::path& file, int number, const std::string& line,
               std::vector<Section>& sections) {
    Step step{number, trimmed(line), nullptr};
    Words words;
    if (!splitWords(step.text, words)) {
        throw Failure("a quote is not closed, or \\ is followed by an unknown letter");
    }
    if (words.empty()) {
        return;
    }
    if (words[0] == "section") {
        if (words.size() < 2) {
            throw Failure("section needs a name");
        }
        sections.push_back({trimmed(step.text.substr(words[0].size())), {}});
        return;
    }
    parseStep(file, words, step);
    if (sections.empty()) {
        sections.push_back({file.stem().string(), {}});
    }
    sections.back().steps.push_back(step);
}

}  // namespace

std::optional<std::vector<Section>> readScenario(const fs::path& file, std::string& why) {
    std::ifstream stream(file);
    if (!stream) {
        why = "there is no scenario " + file.string();
        return std::nullopt;
    }
    std::vector<Section> sections;
    std::string line;
    for (int number = 1; std::getline(stream, line); ++number) {
        try {
            parseLine(file, number, line, sections);
        } catch (const Failure& failure) {
            why = file.string() + ":" + std::to_string(number) + ": " + failure.what();
            return std::nullopt;
        }
    }
    if (sections.empty()) {
        why = file.string() + ":1: the scenario is empty";
        return std::nullopt;
    }
    return sections;
}

}  // namespace headunit
