// The commands of the scenario language that are no verbs of `headunit`: expect, wait, and what
// prepares the unit's files.
#include "simulator/command/expect.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>

#include "platform/text.h"
#include "simulator/command/boot.h"
#include "simulator/command/movie_dat.h"
#include "simulator/command/verbs.h"

namespace headunit {
namespace {

constexpr int kPollMilliseconds = 20;
constexpr int kAbsenceMilliseconds = 700;  // how long something must not happen

using Words = std::vector<std::string>;

const Subject* findSubject(const std::string& name) {
    for (const auto find : {&findTapeSubject, &findScreenSubject, &findFileSubject}) {
        if (const Subject* subject = find(name)) {
            return subject;
        }
    }
    return nullptr;
}

bool parseExpectation(const Words& given, Expectation& expectation, const Subject*& subject,
                      std::string& why) {
    Words words(given.begin() + 1, given.end());
    if (!words.empty() && words[0] == "no") {
        expectation.negated = true;
        words.erase(words.begin());
    }
    int patience = -1;
    if (words.size() > 2 && words[words.size() - 2] == "within") {
        if (!parseTime(words.back(), patience)) {
            why = "\"" + words.back() + "\" is no time; write 2s or 300ms";
            return false;
        }
        words.resize(words.size() - 2);
    }
    subject = words.empty() ? nullptr : findSubject(words[0]);
    if (subject == nullptr) {
        why = "nothing can be expected of \"" + (words.empty() ? "" : words[0]) + "\"";
        return false;
    }
    if (words.size() < subject->fewest || words.size() > subject->most ||
        (subject->check != nullptr && !subject->check(words))) {
        why = "\"expect " + words[0] + "\" does not take these words";
        return false;
    }
    expectation.words = words;
    expectation.patience = patience >= 0         ? patience
                           : expectation.negated ? kAbsenceMilliseconds
                                                 : subject->patience;
    return true;
}

// What happens (a line on the tape, a motion) must stay away for the whole time; what is (a file, a
// window, a value) must be gone in the end.
bool runNegated(Stage& stage, const Expectation& expectation, const Subject& subject,
                std::string& why) {
    const bool isEvent =
        findTapeSubject(subject.name) != nullptr || std::string_view(subject.name) == "moving";
    const long long end = process::nowMilliseconds() + expectation.patience;
    for (;;) {
        const bool met = subject.attempt(stage, expectation, why);
        if (met == isEvent || process::nowMilliseconds() >= end) {
            return !met;
        }
        process::sleepMilliseconds(kPollMilliseconds);
    }
}

bool runExpectation(Stage& stage, const Expectation& expectation, const Subject& subject,
                    std::string& why) {
    const long long end = process::nowMilliseconds() + expectation.patience;
    while (!subject.attempt(stage, expectation, why)) {
        if (process::nowMilliseconds() >= end) {
            return false;
        }
        process::sleepMilliseconds(kPollMilliseconds);
    }
    return true;
}

bool expectCommand(Stage& stage, const Words& words, How how, std::string& why) {
    Expectation expectation;
    const Subject* subject = nullptr;
    if (!parseExpectation(words, expectation, subject, why)) {
        return false;
    }
    if (how == How::Check) {
        return true;
    }
    return expectation.negated ? runNegated(stage, expectation, *subject, why)
                               : runExpectation(stage, expectation, *subject, why);
}

// wait TIME
bool waitCommand(Stage&, const Words& words, How how, std::string& why) {
    int milliseconds = 0;
    if (words.size() != 2 || !parseTime(words[1], milliseconds)) {
        why = "wait needs a time, as in: wait 2s";
        return false;
    }
    if (how == How::Run) {
        process::sleepMilliseconds(milliseconds);
    }
    return true;
}

// put FILE PATH: a sample recording, or a file that lies beside the scenario, onto the unit
bool putCommand(Stage& stage, const Words& words, How how, std::string& why) {
    if (words.size() != 3) {
        why = "put needs a file and its place on the unit";
        return false;
    }
    std::error_code error;
    fs::path from = projectRoot() / "out/samples" / words[1];
    if (!fs::exists(from, error)) {
        from = stage.scenario.parent_path() / words[1];
    }
    if (!fs::exists(from, error)) {
        why = "there is no " + words[1] +
              ", neither in out/samples (made by ./run or ./test) nor"
              " beside the scenario";
        return false;
    }
    if (how == How::Check) {
        return true;
    }
    const fs::path to = hostPath(stage.unit, words[2]);
    fs::create_directories(to.parent_path(), error);
    fs::remove(to, error);
    error.clear();
    // A copy: under Wine a file that has a second name, and is open by that, cannot be deleted yet.
    fs::copy_file(from, to, error);
    // What was put first is the older one, however fast they follow each other.
    static fs::file_time_type last;
    last = std::max(fs::file_time_type::clock::now(), last + std::chrono::milliseconds(1));
    if (!error) {
        fs::last_write_time(to, last, error);
    }
    why = error.message();
    return !error;
}

// file PATH TEXT: a file with this content
bool fileCommand(Stage& stage, const Words& words, How how, std::string& why) {
    if (words.size() != 3) {
        why = "file needs a place on the unit and its content in quotes";
        return false;
    }
    if (how == How::Check) {
        return true;
    }
    const fs::path path = hostPath(stage.unit, words[1]);
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    fs::remove(path, error);
    std::ofstream stream(path, std::ios::binary);
    stream << words[2];
    stream.close();
    why = "the file cannot be written";
    return !stream.fail();
}

// folder PATH
bool folderCommand(Stage& stage, const Words& words, How how, std::string& why) {
    std::error_code error;
    if (words.size() != 2) {
        why = "folder needs its place on the unit";
        return false;
    }
    if (how == How::Run) {
        fs::create_directories(hostPath(stage.unit, words[1]), error);
    }
    why = error.message();
    return !error;
}

// delete PATH: a file or a folder with all that is in it
bool deleteCommand(Stage& stage, const Words& words, How how, std::string& why) {
    if (words.size() != 2) {
        why = "delete needs a place on the unit";
        return false;
    }
    std::error_code error;
    if (how == How::Run && fs::remove_all(hostPath(stage.unit, words[1]), error) == 0) {
        why = "there is no " + words[1];
        return false;
    }
    why = error.message();
    return !error;
}

// truncate PATH BYTES
bool truncateCommand(Stage& stage, const Words& words, How how, std::string& why) {
    long long bytes = 0;
    if (words.size() != 3 || !parseNumber(words[2], bytes) || bytes < 0) {
        why = "truncate needs a place on the unit and a number of bytes";
        return false;
    }
    std::error_code error;
    if (how == How::Run) {
        // The unit's own files are links to those of the checkout: change a copy.
        const fs::path path = hostPath(stage.unit, words[1]);
        const fs::path copy = path.string() + ".copy";
        fs::copy_file(path, copy, error);
        if (!error) {
            fs::resize_file(copy, static_cast<std::uintmax_t>(bytes), error);
        }
        if (!error) {
            fs::rename(copy, path, error);
        }
    }
    why = error.message();
    return !error;
}

bool setField(settings::PersistedState& state, const std::string& name, const std::string& value) {
    struct Whole {
        const char* name;
        std::int32_t settings::PersistedState::*field;
    };
    constexpr Whole kWhole[] = {{"playState", &settings::PersistedState::playState},
                                {"volume", &settings::PersistedState::volume},
                                {"fileIndex", &settings::PersistedState::fileIndex},
                                {"reserved", &settings::PersistedState::reserved}};
    for (const Whole& row : kWhole) {
        if (name == row.name) {
            state.*row.field = static_cast<std::int32_t>(std::strtoll(value.c_str(), nullptr, 0));
            return isNumber(value);
        }
    }
    if (name == "position" || name == "endTime") {
        (name == "position" ? state.position : state.endTime) = std::strtod(value.c_str(), nullptr);
        return true;
    }
    if (name != "folder" && name != "file") {
        return false;
    }
    const std::u16string text = platform::toUtf16(value);
    auto& path = name == "folder" ? state.folder : state.file;
    for (std::size_t i = 0; i < platform::kPathCapacity; ++i) {
        path[i] = i < text.size() && i + 1 < platform::kPathCapacity ? text[i] : u'\0';
    }
    return true;
}

// movie.dat NAME=VALUE...: the player's remembered state, the other fields at their defaults
bool movieDatCommand(Stage& stage, const Words& words, How how, std::string& why) {
    settings::PersistedState state;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const auto equals = words[i].find('=');
        if (equals == std::string::npos ||
            !setField(state, words[i].substr(0, equals), words[i].substr(equals + 1))) {
            why = "Movie.dat has no field that takes \"" + words[i] + "\"";
            return false;
        }
    }
    if (how == How::Check) {
        return true;
    }
    std::error_code error;
    fs::create_directories(stage.unit.device / "ResidentFlash2/Data", error);
    why = "Movie.dat cannot be written";
    return writeMovieDat(stage.unit, state);
}

// install: the unit's own files are put into its folder without booting, so that they can be
// changed
bool installCommand(Stage& stage, const Words& words, How how, std::string& why) {
    if (words.size() != 1) {
        why = "install takes no words";
        return false;
    }
    return how == How::Check || prepareDevice(stage.unit, why);
}

struct NamedCommand {
    const char* name;
    StageCommand command;
};
constexpr NamedCommand kCommands[] = {
    {"expect", &expectCommand},     {"wait", &waitCommand},          {"put", &putCommand},
    {"file", &fileCommand},         {"folder", &folderCommand},      {"delete", &deleteCommand},
    {"truncate", &truncateCommand}, {"movie.dat", &movieDatCommand}, {"install", &installCommand},
};

}  // namespace

StageCommand findStageCommand(const std::string& name) {
    for (const NamedCommand& row : kCommands) {
        if (name == row.name) {
            return row.command;
        }
    }
    return nullptr;
}

bool parseTime(const std::string& text, int& milliseconds) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    const std::string unit = end;
    if (end == text.c_str() || value < 0 || value > 3600000 || (unit != "s" && unit != "ms")) {
        return false;
    }
    milliseconds = static_cast<int>(value * (unit == "s" ? 1000 : 1));
    return true;
}

bool isNumber(const std::string& word) {
    long long number = 0;
    return word == "*" || parseNumber(word, number);
}

}  // namespace headunit
