// Expectations about the tape: messages, boxes, sounds, what was printed, processes. Each is held
// against lines of one kind, word by word against their members.
#include <algorithm>
#include <cstdlib>
#include <optional>

#include "simulator/command/expect.h"
#include "simulator/shared/describe.h"
#include "simulator/shared/messages.h"

namespace headunit {
namespace {

bool isAny(const std::string&) {
    return true;
}
bool isMessage(const std::string& word) {
    return word == "*" || tape::findMessage(word) != nullptr;
}
bool isAnswer(const std::string& word) {
    return word == "ok" || word == "yes" || word == "no";
}
bool isStartOrEnd(const std::string& word) {
    return word == "started" || word == "ended";
}

struct Member {
    const char* name;  // on the tape
    bool (*check)(const std::string& word);
    const char* option = nullptr;  // the word in front of it; null: it has its place
};

enum class Rest {
    None,
    Members,  // pairs of a member's name and its value
    Values,   // the numbers of the member "values"
};

struct Pattern {
    const char* subject;
    const char* kind;  // of the line; null: of any
    std::vector<Member> members;
    std::size_t fewest;  // words, the subject included
    int patience;        // milliseconds when the scenario says nothing
    Rest rest = Rest::None;
};

const std::vector<Pattern>& patterns() {
    static const std::vector<Pattern> kPatterns = {
        {"message",
         nullptr,
         {{"message", &isMessage},
          {"wParam", &isNumber},
          {"lParam", &isNumber},
          {"from", &isAny, "from"},
          {"to", &isAny, "to"},
          {"kind", &isAny, "by"}},
         4,
         2000},
        {"copydata", "copydata", {{"identifier", &isNumber}}, 2, 2000, Rest::Values},
        {"box",
         "box",
         {{"text", &isAny},
          {"style", &isNumber, "style"},
          {"milliseconds", &isNumber, "timed"},
          {"title", &isAny, "title"}},
         1,
         3000},
        {"answer", "box", {{"answer", &isAnswer}}, 2, 2000},
        {"print", "print", {{"text", &isAny}}, 2, 2000},
        {"debug", "debug", {{"text", &isAny}}, 2, 2000},
        {"sound", "sound", {{"sound", &isNumber}}, 1, 1000},
        {"event",
         "event",
         {{"code", &isNumber}, {"param1", &isNumber}, {"param2", &isNumber}},
         2,
         3000},
        {"filter", "filter", {{"filter", &isAny}, {"what", &isAny}}, 3, 2000, Rest::Members},
        {"process",
         "process",
         {{"from", &isAny}, {"text", &isStartOrEnd}, {"exit", &isNumber, "exit"}},
         3,
         5000},
    };
    return kPatterns;
}

const Pattern& patternOf(const Words& words) {
    return *std::ranges::find(patterns(), words[0],
                              [](const Pattern& pattern) { return std::string(pattern.subject); });
}

struct Wanted {
    std::string member;
    std::string value;
};

// The words behind the subject with the members that they are held against. Nothing when one of
// them is wrong.
std::optional<std::vector<Wanted>> readWords(const Pattern& pattern, const Words& words) {
    std::vector<Wanted> wanted;
    std::size_t at = 1;
    for (const Member& member : pattern.members) {
        if (member.option == nullptr && at < words.size()) {
            if (!member.check(words[at])) {
                return std::nullopt;
            }
            wanted.push_back({member.name, words[at++]});
        }
    }
    for (; pattern.rest == Rest::Values && at < words.size(); ++at) {
        if (!isNumber(words[at])) {
            return std::nullopt;
        }
        if (wanted.back().member != "values") {
            wanted.push_back({"values", words[at]});
        } else {
            wanted.back().value += "," + words[at];
        }
    }
    for (; at + 1 < words.size(); at += 2) {
        const auto option = std::ranges::find_if(pattern.members, [&](const Member& member) {
            return member.option != nullptr && words[at] == member.option &&
                   member.check(words[at + 1]);
        });
        if (option == pattern.members.end() && pattern.rest != Rest::Members) {
            return std::nullopt;
        }
        wanted.push_back(
            {option == pattern.members.end() ? words[at] : option->name, words[at + 1]});
    }
    return at == words.size() ? std::optional(wanted) : std::nullopt;
}

bool check(const Words& words) {
    return readWords(patternOf(words), words).has_value();
}

// A number or "*"; a text, of which "~part" need only be contained; or the values of an array in
// their order: "801,481,811,491".
bool matches(const std::string& wanted, const Json& value) {
    if (wanted == "*") {
        return true;
    }
    if (value.is_number()) {
        return std::strtoll(wanted.c_str(), nullptr, 0) == value.get<long long>();
    }
    if (!value.is_array()) {
        const std::string text = plain(value);
        return wanted.starts_with("~") ? text.find(wanted.substr(1)) != std::string::npos
                                       : text == wanted;
    }
    std::size_t begin = 0;
    for (const Json& item : value) {
        const std::size_t end = wanted.find(',', begin);
        const bool isLast = &item == &value.back();
        if (isLast != (end == std::string::npos) ||
            !matches(wanted.substr(begin, end - begin), item)) {
            return false;
        }
        begin = end + 1;
    }
    return !value.empty();
}

bool meets(const Json& line, const Pattern& pattern, const std::vector<Wanted>& wanted) {
    return (pattern.kind == nullptr || textOf(line, "kind") == pattern.kind) &&
           line.contains(pattern.members[0].name) &&
           std::ranges::all_of(wanted, [&](const Wanted& each) {
               const auto value = line.find(each.member);
               return value != line.end() && matches(each.value, *value);
           });
}

// Looks for a line after the mark that no earlier expectation has taken.
bool findLine(Stage& stage, const Expectation& expectation, std::string& why) {
    const Pattern& pattern = patternOf(expectation.words);
    std::vector<Wanted> wanted = *readWords(pattern, expectation.words);
    if (pattern.kind == nullptr &&
        std::ranges::find(wanted, "from", &Wanted::member) == wanted.end()) {
        wanted.push_back({"from", "Video"});
    }
    TapeReader reader(stage.unit.tape(), stage.mark);
    std::uint64_t at = reader.at();
    while (const auto line = reader.next()) {
        if (!stage.used.contains(at) && meets(line->value, pattern, wanted)) {
            if (!expectation.negated) {
                stage.used.insert(at);
            }
            why = "there was: " + describe(line->value);
            return true;
        }
        at = reader.at();
    }
    why = "it is not on the tape";
    return false;
}

std::vector<Subject> makeSubjects() {
    std::vector<Subject> subjects;
    for (const Pattern& pattern : patterns()) {
        subjects.push_back({pattern.subject, pattern.fewest, 34, &findLine, pattern.patience,
                            &check, Kind::Happens});
    }
    return subjects;
}

}  // namespace

std::span<const Subject> tapeSubjects() {
    static const std::vector<Subject> kSubjects = makeSubjects();
    return kSubjects;
}

}  // namespace headunit
