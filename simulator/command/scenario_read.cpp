// Reading and checking scenarios.
#include <fstream>

#include "simulator/command/expect.h"
#include "simulator/command/scenario.h"
#include "simulator/command/verbs.h"

namespace headunit {
namespace {

constexpr const char* kNotInScenarios[] = {"scenario", "log",    "prepare", "view",
                                           "film",     "replay", "skin"};

std::string trimmed(const std::string& line) {
    const auto first = line.find_first_not_of(" \t\r");
    const auto last = line.find_last_not_of(" \t\r");
    return first == std::string::npos ? "" : line.substr(first, last - first + 1);
}

// Verbs look at their words themselves; while only checking they do nothing more.
bool checkVerb(const Unit& unit, const std::vector<std::string>& words, std::string& why) {
    for (const char* name : kNotInScenarios) {
        if (words[0] == name) {
            why = "\"" + words[0] + "\" cannot be used in a scenario";
            return false;
        }
    }
    const Verb* verb = findVerb(words[0]);
    if (verb == nullptr) {
        why = "there is no verb \"" + words[0] + "\"";
        return false;
    }
    const CheckOnly check;
    if (verb->run(unit, {words.begin() + 1, words.end()}) != 0) {
        why = lastError();
        return false;
    }
    return true;
}

bool checkStep(const fs::path& file, const Step& step, std::string& why) {
    Stage stage;
    stage.unit.device = "/nonexistent";
    stage.scenario = file;
    std::vector<std::string> words = step.words;
    if (words[0] == "fails") {
        words.erase(words.begin());
        if (words.empty()) {
            why = "fails needs a verb";
            return false;
        }
        return checkVerb(stage.unit, words, why);
    }
    if (const StageCommand command = findStageCommand(words[0])) {
        return command(stage, words, How::Check, why);
    }
    return checkVerb(stage.unit, words, why);
}

}  // namespace

bool splitWords(const std::string& line, std::vector<std::string>& words) {
    std::size_t i = 0;
    while (i < line.size()) {
        if (line[i] == ' ' || line[i] == '\t') {
            ++i;
            continue;
        }
        if (line[i] == '#') {
            // Within a line only behind a blank, and not where a colour begins.
            const bool colour = i + 6 < line.size() + 0 &&
                                line.substr(i + 1, 6).find_first_not_of("0123456789abcdefABCDEF") ==
                                    std::string::npos;
            if (!colour) {
                return true;
            }
        }
        std::string word;
        bool quoted = false;
        for (; i < line.size() && (quoted || (line[i] != ' ' && line[i] != '\t')); ++i) {
            if (line[i] == '"') {
                quoted = !quoted;
            } else if (quoted && line[i] == '\\') {
                constexpr std::string_view kLetters = "nrt\"\\";
                constexpr std::string_view kMeant = "\n\r\t\"\\";
                ++i;
                const auto at = i < line.size() ? kLetters.find(line[i]) : std::string_view::npos;
                if (at == std::string_view::npos) {
                    return false;
                }
                word += kMeant[at];
            } else {
                word += line[i];
            }
        }
        if (quoted) {
            return false;
        }
        words.push_back(word);
    }
    return true;
}

std::optional<std::vector<Section>> readScenario(const fs::path& file, std::string& why) {
    std::ifstream stream(file);
    if (!stream) {
        why = "there is no scenario " + file.string();
        return std::nullopt;
    }
    std::vector<Section> sections;
    std::string line;
    for (int number = 1; std::getline(stream, line); ++number) {
        Step step{number, trimmed(line), {}};
        const auto wrong = [&](const std::string& reason) {
            why = file.string() + ":" + std::to_string(number) + ": " + reason;
            return std::nullopt;
        };
        if (!splitWords(step.text, step.words)) {
            return wrong("a quote is not closed, or \\ is followed by an unknown letter");
        }
        if (step.words.empty()) {
            continue;
        }
        if (step.words[0] == "section") {
            if (step.words.size() < 2) {
                return wrong("section needs a name");
            }
            sections.push_back({trimmed(step.text.substr(step.words[0].size())), {}});
            continue;
        }
        std::string reason;
        if (!checkStep(file, step, reason)) {
            return wrong(reason);
        }
        if (sections.empty()) {
            sections.push_back({file.stem().string(), {}});
        }
        sections.back().steps.push_back(step);
    }
    if (sections.empty()) {
        why = file.string() + ":1: the scenario is empty";
        return std::nullopt;
    }
    return sections;
}

}  // namespace headunit
