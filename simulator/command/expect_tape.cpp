// Expectations about the tape: messages, boxes, sounds, what was printed, processes.
#include <cstdlib>

#include "simulator/command/expect.h"
#include "simulator/command/verbs.h"
#include "simulator/tape/messages.h"

namespace headunit {
namespace {

using Wanted = std::function<bool(const json::Value& line)>;

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

std::string optionOf(const std::vector<std::string>& words, std::size_t from, const char* name) {
    for (std::size_t i = from; i + 1 < words.size(); i += 2) {
        if (words[i] == name) {
            return words[i + 1];
        }
    }
    return {};
}

bool messageCheck(const std::vector<std::string>& words) {
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
        [&](const json::Value& line) {
            return line.find("message") != nullptr &&
                   (words[1] == "*" || line.textOf("message") == words[1]) &&
                   line.textOf("from") == (from.empty() ? "Video" : from) &&
                   (to.empty() || line.textOf("to") == to) &&
                   (by.empty() || line.textOf("kind") == by) &&
                   matches(words[2], line.numberOf("wParam", 0)) &&
                   matches(words[3], line.numberOf("lParam", 0));
        },
        why);
}

bool copyDataCheck(const std::vector<std::string>& words) {
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
        [&words](const json::Value& line) {
            const json::Value* values = line.find("values");
            if (line.textOf("kind") != "copydata" || values == nullptr ||
                !matches(words[1], line.numberOf("identifier", -1)) ||
                values->items.size() != words.size() - 2) {
                return false;
            }
            for (std::size_t i = 2; i < words.size(); ++i) {
                if (!matches(words[i], static_cast<long long>(values->items[i - 2].number))) {
                    return false;
                }
            }
            return true;
        },
        why);
}

bool boxCheck(const std::vector<std::string>& words) {
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
        [&](const json::Value& line) {
            return line.textOf("kind") == "box" && line.find("text") != nullptr &&
                   (words.size() < 2 || matchesText(words[1], line.textOf("text"))) &&
                   (style.empty() || matches(style, line.numberOf("style", -1))) &&
                   (timed.empty() || matches(timed, line.numberOf("milliseconds", 0))) &&
                   (title.empty() || line.textOf("title") == title);
        },
        why);
}

bool answerCheck(const std::vector<std::string>& words) {
    return words[1] == "ok" || words[1] == "yes" || words[1] == "no";
}

// answer ok|yes|no
bool answer(Stage& stage, const Expectation& expectation, std::string& why) {
    return findLine(
        stage, expectation,
        [&](const json::Value& line) {
            return line.textOf("kind") == "box" && line.textOf("answer") == expectation.words[1];
        },
        why);
}

// print TEXT, debug TEXT
bool printed(Stage& stage, const Expectation& expectation, std::string& why) {
    return findLine(
        stage, expectation,
        [&](const json::Value& line) {
            return line.textOf("kind") == expectation.words[0] &&
                   matchesText(expectation.words[1], line.textOf("text"));
        },
        why);
}

bool numberCheck(const std::vector<std::string>& words) {
    return words.size() < 2 || isNumber(words[1]);
}

// sound [NUMBER]
bool sound(Stage& stage, const Expectation& expectation, std::string& why) {
    return findLine(
        stage, expectation,
        [&](const json::Value& line) {
            return line.textOf("kind") == "sound" &&
                   (expectation.words.size() < 2 ||
                    matches(expectation.words[1], line.numberOf("sound", -1)));
        },
        why);
}

// event CODE [PARAM1 [PARAM2]]
bool event(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    return findLine(
        stage, expectation,
        [&](const json::Value& line) {
            return line.textOf("kind") == "event" && matches(words[1], line.numberOf("code", -1)) &&
                   (words.size() < 3 || matches(words[2], line.numberOf("param1", 0))) &&
                   (words.size() < 4 || matches(words[3], line.numberOf("param2", 0)));
        },
        why);
}

// A text as it is, a number or "*", or the values of an array in their order: "801,481,811,491".
bool matchesValue(const std::string& wanted, const json::Value& value) {
    if (value.kind == json::Value::Kind::Number) {
        return matches(wanted, static_cast<long long>(value.number));
    }
    if (value.kind != json::Value::Kind::Array) {
        return matchesText(wanted, value.text);
    }
    std::size_t begin = 0;
    for (const json::Value& item : value.items) {
        const std::size_t end = wanted.find(',', begin);
        const bool isLast = &item == &value.items.back();
        if (isLast != (end == std::string::npos) ||
            !matchesValue(wanted.substr(begin, end - begin), item)) {
            return false;
        }
        begin = end + 1;
    }
    return !value.items.empty();
}

bool filterCheck(const std::vector<std::string>& words) {
    return words.size() % 2 == 1;
}

// filter NAME WHAT [KEY VALUE]...
bool filter(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    return findLine(
        stage, expectation,
        [&](const json::Value& line) {
            bool met = line.textOf("kind") == "filter" && line.textOf("filter") == words[1] &&
                       line.textOf("what") == words[2];
            for (std::size_t i = 3; i < words.size() && met; i += 2) {
                const json::Value* value = line.find(words[i]);
                met = value != nullptr && matchesValue(words[i + 1], *value);
            }
            return met;
        },
        why);
}

bool processCheck(const std::vector<std::string>& words) {
    return (words[2] == "started" || words[2] == "ended") &&
           (words.size() == 3 || (words.size() == 5 && words[3] == "exit" && isNumber(words[4])));
}

// process NAME started|ended [exit VALUE]
bool processLine(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    return findLine(
        stage, expectation,
        [&](const json::Value& line) {
            return line.textOf("kind") == "process" && line.textOf("from") == words[1] &&
                   line.textOf("text") == words[2] &&
                   (words.size() < 5 || matches(words[4], line.numberOf("exit", -1)));
        },
        why);
}

constexpr Subject kSubjects[] = {
    {"message", 4, 10, &message, 2000, &messageCheck},
    {"copydata", 2, 34, &copyData, 2000, &copyDataCheck},
    {"box", 1, 8, &box, 3000, &boxCheck},
    {"answer", 2, 2, &answer, 2000, &answerCheck},
    {"print", 2, 2, &printed, 2000, nullptr},
    {"debug", 2, 2, &printed, 2000, nullptr},
    {"sound", 1, 2, &sound, 1000, &numberCheck},
    {"event", 2, 4, &event, 3000, &numberCheck},
    {"filter", 3, 17, &filter, 2000, &filterCheck},
    {"process", 3, 5, &processLine, 5000, &processCheck},
};

}  // namespace

const Subject* findTapeSubject(const std::string& name) {
    for (const Subject& subject : kSubjects) {
        if (name == subject.name) {
            return &subject;
        }
    }
    return nullptr;
}

}  // namespace headunit
