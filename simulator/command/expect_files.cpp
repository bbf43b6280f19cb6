// Expectations about the unit's files and stored values.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "simulator/command/expect.h"
#include "simulator/command/verbs.h"
#include "simulator/tape/messages.h"

namespace headunit {
namespace {

// A value of the state by its name: a field of Movie.dat ("playState"), a key of Config.ini
// ("TRIP.AppProgram"), "connectPath", or a thread priority ("priority.NAME"). "none" when missing.
std::string stateValue(const json::Value& state, const std::string& name) {
    const json::Value* value = nullptr;
    const auto dot = name.find('.');
    if (name == "connectPath") {
        value = state.find("connectPath");
    } else if (name.starts_with("priority.")) {
        value = state.find("priorities")->find(name.substr(9));
    } else if (dot != std::string::npos) {
        const json::Value* section = state.find("config")->find(name.substr(0, dot));
        value = section == nullptr ? nullptr : section->find(name.substr(dot + 1));
    } else if (const json::Value* record = state.find("movieDat")) {
        value = record->find(name);
    }
    return value == nullptr || value->kind == json::Value::Kind::Null ? "none" : value->text;
}

// Equal as texts; or as numbers, "N~D" allowing a distance of D.
bool valueMatches(const std::string& wanted, const std::string& seen) {
    if (wanted == seen) {
        return true;
    }
    char* end = nullptr;
    const double number = std::strtod(wanted.c_str(), &end);
    if (end == wanted.c_str() || *end != '~') {
        return false;
    }
    const double distance = std::strtod(end + 1, nullptr);
    char* seenEnd = nullptr;
    const double value = std::strtod(seen.c_str(), &seenEnd);
    return seenEnd != seen.c_str() && std::fabs(value - number) <= distance;
}

bool isStateName(const std::string& name) {
    constexpr std::string_view kNames[] = {"connectPath", "playState", "volume",
                                           "fileIndex",   "position",  "endTime",
                                           "folder",      "file",      "reserved"};
    return name.find('.') != std::string::npos ||
           std::ranges::find(kNames, std::string_view(name)) != std::end(kNames);
}

bool stateCheck(const std::vector<std::string>& words) {
    for (std::size_t i = 1; i < words.size(); ++i) {
        const auto equals = words[i].find('=');
        if (equals == std::string::npos || !isStateName(words[i].substr(0, equals))) {
            return false;
        }
    }
    return true;
}

// state NAME=VALUE...
bool state(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto values = json::parse(stateJson(stage.unit));
    if (!values) {
        why = "the state cannot be read";
        return false;
    }
    for (std::size_t i = 1; i < expectation.words.size(); ++i) {
        const std::string& word = expectation.words[i];
        const std::string name = word.substr(0, word.find('='));
        const std::string seen = stateValue(*values, name);
        if (!valueMatches(word.substr(word.find('=') + 1), seen)) {
            why = name + " is " + seen;
            return false;
        }
    }
    why = "it is so";
    return true;
}

bool fileCheck(const std::vector<std::string>& words) {
    return words.size() == 2 || (words.size() == 4 && (words[2] == "text" || words[2] == "size"));
}

// file PATH [size BYTES | text CONTENT]
bool file(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    const fs::path path = hostPath(stage.unit, words[1]);
    std::error_code error;
    if (!fs::exists(path, error)) {
        why = "it does not exist";
        return false;
    }
    why = "it exists";
    if (words.size() == 2) {
        return true;
    }
    if (words[2] == "size") {
        const auto size = fs::file_size(path, error);
        why = "it has " + std::to_string(size) + " bytes";
        return std::to_string(size) == words[3];
    }
    std::ifstream stream(path, std::ios::binary);
    std::stringstream content;
    content << stream.rdbuf();
    why = "it holds " + json::quoted(content.str().substr(0, 200));
    return content.str() == words[3];
}

// running NAME
bool running(Stage& stage, const Expectation& expectation, std::string& why) {
    std::string answer;
    const bool good = ask(stage.unit, {"running", expectation.words[1]}, answer);
    why = good ? "it is " + std::string(answer == "yes" ? "" : "not ") + "running" : answer;
    return good && answer == "yes";
}

bool resultCheck(const std::vector<std::string>& words) {
    return tape::findMessage(words[2]) != nullptr && isNumber(words[1]) && isNumber(words[3]) &&
           isNumber(words[4]);
}

// result VALUE NAME WPARAM LPARAM: the player's answer to a message sent to it
bool result(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    std::string answer;
    const bool good = ask(stage.unit, {"message", "send", words[2], words[3], words[4]}, answer);
    why = good ? "the result is " + answer : answer;
    return good && answer == words[1];
}

constexpr Subject kSubjects[] = {
    {"state", 2, 20, &state, 3000, &stateCheck},
    {"file", 2, 4, &file, 2000, &fileCheck},
    {"running", 2, 2, &running, 3000, nullptr},
    {"result", 5, 5, &result, 0, &resultCheck},
};

}  // namespace

const Subject* findFileSubject(const std::string& name) {
    for (const Subject& subject : kSubjects) {
        if (name == subject.name) {
            return &subject;
        }
    }
    return nullptr;
}

}  // namespace headunit
