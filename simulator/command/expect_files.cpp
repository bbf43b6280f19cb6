// Expectations about the unit's files and stored values.
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "simulator/command/expect.h"
#include "simulator/command/movie_dat.h"
#include "simulator/command/state.h"
#include "simulator/shared/messages.h"

namespace headunit {
namespace {

// A value of the state by its name: a field of Movie.dat ("playState"), a key of Config.ini
// ("TRIP.AppProgram"), "connectPath", or a thread priority ("priority.NAME"). "none" when missing.
std::string stateValue(const Json& state, const std::string& name) {
    const auto dot = name.find('.');
    const auto member = [](const Json& object, const std::string& key) {
        return object.is_object() ? plain(object.value(key, Json())) : "none";
    };
    if (name == "connectPath") {
        return member(state, name);
    }
    if (name.starts_with("priority.")) {
        return member(state["priorities"], name.substr(9));
    }
    if (dot != std::string::npos) {
        return member(state["config"].value(name.substr(0, dot), Json()), name.substr(dot + 1));
    }
    return member(state["movieDat"], name);
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
    return name.find('.') != std::string::npos || name == "connectPath" || isMovieDatField(name);
}

bool stateCheck(const Words& words) {
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
    const Json values = unitState(stage.unit);
    for (std::size_t i = 1; i < expectation.words.size(); ++i) {
        const std::string& word = expectation.words[i];
        const std::string name = word.substr(0, word.find('='));
        const std::string seen = stateValue(values, name);
        if (!valueMatches(word.substr(word.find('=') + 1), seen)) {
            why = name + " is " + seen;
            return false;
        }
    }
    why = "it is so";
    return true;
}

bool fileCheck(const Words& words) {
    return words.size() == 2 ||
           (words.size() == 4 && (words[2] == "text" || words[2] == "size" || words[2] == "same"));
}

std::string contentOf(const fs::path& path) {
    std::stringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

// file PATH [size BYTES | text CONTENT | same PATH]
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
    const std::string content = contentOf(path);
    if (words[2] == "same") {
        why = "it is another than " + words[3];
        return content == contentOf(hostPath(stage.unit, words[3]));
    }
    why = "it holds " + inQuotes(content.substr(0, 200));
    return content == words[3];
}

// running NAME
bool running(Stage& stage, const Expectation& expectation, std::string& why) {
    std::string answer;
    const bool good = ask(stage.unit, {"running", expectation.words[1]}, answer);
    why = good ? "it is " + std::string(answer == "true" ? "" : "not ") + "running" : answer;
    return good && answer == "true";
}

bool resultCheck(const Words& words) {
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
    {"state", 2, 20, &state, 3000, &stateCheck, Kind::Is},
    {"file", 2, 4, &file, 2000, &fileCheck, Kind::Is},
    {"running", 2, 2, &running, 3000, nullptr, Kind::Is},
    {"result", 5, 5, &result, 0, &resultCheck, Kind::Is},
};

}  // namespace

std::span<const Subject> fileSubjects() {
    return kSubjects;
}

}  // namespace headunit
