#include "simulator/command/expect.h"

#include "simulator/shared/named.h"

namespace headunit {
namespace {

constexpr int kPollMilliseconds = 20;
constexpr int kAbsenceMilliseconds = 700;  // how long something must not happen

const Subject* findSubject(const std::string& name) {
    for (const auto subjects : {tapeSubjects(), screenSubjects(), fileSubjects()}) {
        if (const Subject* const found = findNamed(subjects, name)) {
            return found;
        }
    }
    return nullptr;
}

bool runExpectation(Stage& stage, const Expectation& expectation, const Subject& subject,
                    std::string& why) {
    // Met once is enough, but for what must never happen.
    const bool until = !(expectation.negated && subject.kind == Kind::Is);
    const long long end = process::nowMilliseconds() + expectation.patience;
    for (;;) {
        const bool met = subject.attempt(stage, expectation, why);
        if (met == until || process::nowMilliseconds() >= end) {
            return met != expectation.negated;
        }
        process::sleepMilliseconds(kPollMilliseconds);
    }
}

}  // namespace

StageRun parseExpect(const Words& given, const fs::path&) {
    Words words(given.begin() + 1, given.end());
    Expectation expectation;
    if (!words.empty() && words[0] == "no") {
        expectation.negated = true;
        words.erase(words.begin());
    }
    int patience = -1;
    if (words.size() > 2 && words[words.size() - 2] == "within") {
        if (!parseTime(words.back(), patience)) {
            throw Failure("\"" + words.back() + "\" is no time; write 2s or 300ms");
        }
        words.resize(words.size() - 2);
    }
    const Subject* subject = words.empty() ? nullptr : findSubject(words[0]);
    if (subject == nullptr) {
        throw Failure("nothing can be expected of \"" + (words.empty() ? "" : words[0]) + "\"");
    }
    if (words.size() < subject->fewest || words.size() > subject->most ||
        (subject->check != nullptr && !subject->check(words))) {
        throw Failure("\"expect " + words[0] + "\" does not take these words");
    }
    expectation.words = words;
    expectation.patience = patience >= 0         ? patience
                           : expectation.negated ? kAbsenceMilliseconds
                                                 : subject->patience;
    return [expectation, subject](Stage& stage, std::string& reason) {
        return runExpectation(stage, expectation, *subject, reason);
    };
}

bool isNumber(const std::string& word) {
    long long number = 0;
    return word == "*" || parseNumber(word, number);
}

}  // namespace headunit
