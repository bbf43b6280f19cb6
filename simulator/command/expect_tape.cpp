// Expectations about the tape: messages, boxes, sounds, what was printed, processes.
#include <cstdlib>

#include "simulator/command/expect.h"
#include "simulator/shared/describe.h"
#include "simulator/shared/messages.h"

namespace headunit {
namespace {

using Wanted = std::function<bool(const Json& line)>;

// Looks for a line after the mark that no earlier expectation has taken.
bool findLine(Stage& stage, const Expectation& expectation, const Wanted& wanted,
              std::string& why) {
    TapeReader reader(stage.unit, stage.mark);
    std::uint64_t at = reader.at();
    std::string nearest;
    while (const auto line = reader.next()) {
        if (!stage.used.contains(at) && wanted(line->value)) {
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

bool matches(const std::string& wanted, long long value) {
    return wanted == "*" || std::strtoll(wanted.c_str(), nullptr, 0) == value;
}

// A text given as ~part need only be contained.
bool matchesText(const std::string& wanted, const std::string& text) {
    return wanted.starts_with("~") ? text.find(wanted.substr(1)) != std::string::npos
                                   : text == wanted;
}

std::string optionOf(const Words& words, std::size_t from, const char* name) {
    for (std::size_t i = from; i + 1 < words.size(); i += 2) {
        if (words[i] == name) {
            return words[i + 1];
        }
    }
    return {};
}

bool messageCheck(const Words& words) {
    return (words[1] == "*" || tape::findMessage(words[1]) != nullptr) && isNumber(words[2]) &&
           isNumber(words[3]) && words.size() % 2 == 0;
}

// message NAME|* WPARAM LPARAM [from WHO] [to WHO] [by post|send|broadcast]
bool message(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    const std::string from = optionOf(words, 4, "from");
    const std::string to = optionOf(words, 4, "to");
    const std::string by = optionOf(words, 4, "by");
    return findLine(
        stage, expectation,
        [&](const Json& line) {
            return line.contains("message") &&
                   (words[1] == "*" || textOf(line, "message") == words[1]) &&
                   textOf(line, "from") == (from.empty() ? "Video" : from) &&
                   (to.empty() || textOf(line, "to") == to) &&
                   (by.empty() || textOf(line, "kind") == by) &&
                   matches(words[2], numberOf(line, "wParam", 0)) &&
                   matches(words[3], numberOf(line, "lParam", 0));
        },
        why);
}

bool copyDataCheck(const Words& words) {
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (!isNumber(words[i])) {
            return false;
        }
    }
    return true;
}

// copydata IDENTIFIER VALUE...
bool copyData(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    return findLine(
        stage, expectation,
        [&words](const Json& line) {
            const Json values = line.value("values", Json());
            if (textOf(line, "kind") != "copydata" || !values.is_array() ||
                !matches(words[1], numberOf(line, "identifier", -1)) ||
                values.size() != words.size() - 2) {
                return false;
            }
            for (std::size_t i = 2; i < words.size(); ++i) {
                if (!matches(words[i], values[i - 2].get<long long>())) {
                    return false;
                }
            }
            return true;
        },
        why);
}

bool boxCheck(const Words& words) {
    return words.size() % 2 == 0 || words.size() == 1;
}

// box [TEXT [style N] [timed MS] [title TEXT]]
bool box(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    const std::string style = optionOf(words, 2, "style");
    const std::string timed = optionOf(words, 2, "timed");
    const std::string title = optionOf(words, 2, "title");
    return findLine(
        stage, expectation,
        [&](const Json& line) {
            return textOf(line, "kind") == "box" && line.contains("text") &&
                   (words.size() < 2 || matchesText(words[1], textOf(line, "text"))) &&
                   (style.empty() || matches(style, numberOf(line, "style", -1))) &&
                   (timed.empty() || matches(timed, numberOf(line, "milliseconds", 0))) &&
                   (title.empty() || textOf(line, "title") == title);
        },
        why);
}

bool answerCheck(const Words& words) {
    return words[1] == "ok" || words[1] == "yes" || words[1] == "no";
}

// answer ok|yes|no
bool answer(Stage& stage, const Expectation& expectation, std::string& why) {
    return findLine(
        stage, expectation,
        [&](const Json& line) {
            return textOf(line, "kind") == "box" && textOf(line, "answer") == expectation.words[1];
        },
        why);
}

// print TEXT, debug TEXT
bool printed(Stage& stage, const Expectation& expectation, std::string& why) {
    return findLine(
        stage, expectation,
        [&](const Json& line) {
            return textOf(line, "kind") == expectation.words[0] &&
                   matchesText(expectation.words[1], textOf(line, "text"));
        },
        why);
}

bool numberCheck(const Words& words) {
    return words.size() < 2 || isNumber(words[1]);
}

// sound [NUMBER]
bool sound(Stage& stage, const Expectation& expectation, std::string& why) {
    return findLine(
        stage, expectation,
        [&](const Json& line) {
            return textOf(line, "kind") == "sound" &&
                   (expectation.words.size() < 2 ||
                    matches(expectation.words[1], numberOf(line, "sound", -1)));
        },
        why);
}

// event CODE [PARAM1 [PARAM2]]
bool event(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    return findLine(
        stage, expectation,
        [&](const Json& line) {
            return textOf(line, "kind") == "event" &&
                   matches(words[1], numberOf(line, "code", -1)) &&
                   (words.size() < 3 || matches(words[2], numberOf(line, "param1", 0))) &&
                   (words.size() < 4 || matches(words[3], numberOf(line, "param2", 0)));
        },
        why);
}

// A text as it is, a number or "*", or the values of an array in their order: "801,481,811,491".
bool matchesValue(const std::string& wanted, const Json& value) {
    if (value.is_number()) {
        return matches(wanted, value.get<long long>());
    }
    if (!value.is_array()) {
        return matchesText(wanted, plain(value));
    }
    std::size_t begin = 0;
    for (const Json& item : value) {
        const std::size_t end = wanted.find(',', begin);
        const bool isLast = &item == &value.back();
        if (isLast != (end == std::string::npos) ||
            !matchesValue(wanted.substr(begin, end - begin), item)) {
            return false;
        }
        begin = end + 1;
    }
    return !value.empty();
}

bool filterCheck(const Words& words) {
    return words.size() % 2 == 1;
}

// filter NAME WHAT [KEY VALUE]...
bool filter(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    return findLine(
        stage, expectation,
        [&](const Json& line) {
            bool met = textOf(line, "kind") == "filter" && textOf(line, "filter") == words[1] &&
                       textOf(line, "what") == words[2];
            for (std::size_t i = 3; i < words.size() && met; i += 2) {
                const auto value = line.find(words[i]);
                met = value != line.end() && matchesValue(words[i + 1], *value);
            }
            return met;
        },
        why);
}

bool processCheck(const Words& words) {
    return (words[2] == "started" || words[2] == "ended") &&
           (words.size() == 3 || (words.size() == 5 && words[3] == "exit" && isNumber(words[4])));
}

// process NAME started|ended [exit VALUE]
bool processLine(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    return findLine(
        stage, expectation,
        [&](const Json& line) {
            return textOf(line, "kind") == "process" && textOf(line, "from") == words[1] &&
                   textOf(line, "text") == words[2] &&
                   (words.size() < 5 || matches(words[4], numberOf(line, "exit", -1)));
        },
        why);
}

constexpr Subject kSubjects[] = {
    {"message", 4, 10, &message, 2000, &messageCheck, Kind::Happens},
    {"copydata", 2, 34, &copyData, 2000, &copyDataCheck, Kind::Happens},
    {"box", 1, 8, &box, 3000, &boxCheck, Kind::Happens},
    {"answer", 2, 2, &answer, 2000, &answerCheck, Kind::Happens},
    {"print", 2, 2, &printed, 2000, nullptr, Kind::Happens},
    {"debug", 2, 2, &printed, 2000, nullptr, Kind::Happens},
    {"sound", 1, 2, &sound, 1000, &numberCheck, Kind::Happens},
    {"event", 2, 4, &event, 3000, &numberCheck, Kind::Happens},
    {"filter", 3, 17, &filter, 2000, &filterCheck, Kind::Happens},
    {"process", 3, 5, &processLine, 5000, &processCheck, Kind::Happens},
};

}  // namespace

std::span<const Subject> tapeSubjects() {
    return kSubjects;
}

}  // namespace headunit
