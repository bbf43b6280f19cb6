// The `headunit` command: drives the simulated head unit.
#include <cstdio>
#include <string>

#include "simulator/command/verbs.h"

namespace headunit {
namespace {

constexpr char kVersion[] = "headunit 1.0.0";

int runCommand(Words words) {
    std::string device;
    for (const std::string& word : words) {
        if (word == "--device" && &word == &words.back()) {
            fail("--device needs a folder");
            return 2;
        }
    }
    if (!takeValue(words, "--device", device)) {
        device = (projectRoot() / "out" / "device").string();
    }
    if (takeFlag(words, "--version")) {
        std::puts(kVersion);
        return 0;
    }
    if (words.empty()) {
        fail("usage: headunit VERB [--device DIR] ...; the verbs: headunit --help");
        return 2;
    }
    if (words[0] == "--help" || words[0] == "help") {
        printHelp();
        return 0;
    }
    const Verb* verb = findVerb(words[0]);
    if (verb == nullptr) {
        fail("there is no verb \"" + words[0] + "\"; see: headunit --help");
        return 2;
    }
    words.erase(words.begin());
    if (takeFlag(words, "--help")) {
        std::printf("usage: headunit %s %s\n%s\n", verb->name, verb->usage, verb->help);
        return 0;
    }
    const Unit unit = {fs::absolute(device).lexically_normal()};
    return perform(*verb, unit, words);
}

}  // namespace
}  // namespace headunit

int main(int count, char** arguments) {
    return headunit::runCommand({arguments + 1, arguments + count});
}
