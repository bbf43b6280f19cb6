// The `headunit` command: drives the simulated head unit.
#include <cstdio>
#include <string>

#include "simulator/command/verbs.h"

namespace headunit {
namespace {

constexpr char kVersion[] = "headunit 1.0.0";

int wrongUse(const std::string& why) {
    std::fprintf(stderr, "headunit: %s\n", why.c_str());
    return 2;
}

bool takeFlag(Words& words, const char* option) {
    return std::erase(words, option) > 0;
}

// An error reaches the panel through the hub when the panel runs the command.
void tell(const Unit& unit, const Outcome& told, bool panel) {
    if (told.text.empty()) {
        return;
    }
    std::string answer;
    std::fprintf(told.good ? stdout : stderr, "%s%s\n",
                 told.good ? "" : "headunit: ", told.text.c_str());
    if (panel && !told.good) {
        ask(unit, {"refused", told.text}, answer);
    }
}

int runVerb(Words words, const std::string& device, bool panel) {
    const Verb* verb = findVerb(words[0]);
    if (verb != nullptr && takeFlag(words, "--help")) {
        std::fputs(helpOf(*verb).c_str(), stdout);
        return 0;
    }
    const Unit unit{fs::absolute(device).lexically_normal()};
    Outcome told;
    try {
        told = perform(parseDeed(words), unit);
    } catch (const Failure& failure) {
        told = {false, failure.what(), Exit::WrongUse};
    }
    tell(unit, told, panel);
    return told.good ? 0 : static_cast<int>(told.exit);
}

int runCommand(Words words) {
    std::string device = (projectRoot() / "out" / "device").string();
    const bool panel = takeFlag(words, "--tell-panel");
    constexpr std::string_view kDevice = "--device=";
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (word->starts_with(kDevice)) {
            device = word->substr(kDevice.size());
            words.erase(word);
            break;
        }
        if (*word == "--device") {
            if (word + 1 == words.end()) {
                return wrongUse("--device needs a folder");
            }
            device = *(word + 1);
            words.erase(word, word + 2);
            break;
        }
    }
    if (device.empty()) {
        return wrongUse("--device needs a folder");
    }
    if (words.empty()) {
        return wrongUse("usage: headunit VERB [--device DIR] ...; the verbs: ./headunit --help");
    }
    if (words[0] == "--version") {
        std::puts(kVersion);
        return 0;
    }
    if (words[0] == "--help" || words[0] == "help") {
        std::fputs(overview().c_str(), stdout);
        return 0;
    }
    if (words[0] == "--complete") {
        for (const std::string& word : completions({words.begin() + 1, words.end()})) {
            std::puts(word.c_str());
        }
        return 0;
    }
    return runVerb(std::move(words), device, panel);
}

}  // namespace
}  // namespace headunit

int main(int count, char** arguments) {
    return headunit::runCommand({arguments + 1, arguments + count});
}
