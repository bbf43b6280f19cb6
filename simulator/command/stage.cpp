// The commands of the scenario language that are no verbs of `headunit`.
#include "simulator/command/stage.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>

#include "platform/text.h"
#include "simulator/command/boot.h"
#include "simulator/command/movie_dat.h"
#include "simulator/shared/named.h"

namespace headunit {
namespace {

void require(bool right, const std::string& why) {
    if (!right) {
        throw Failure(why);
    }
}

// A command on one place of the unit's files, which `act` is called with; `reason` is said when the
// system has none.
template <typename Act>
StageRun onFile(const std::string& path, const std::string& reason, Act act) {
    return [=](Stage& stage, std::string& why) {
        std::error_code error;
        const bool good = act(hostPath(stage.unit, path), error);
        why = error ? error.message() : reason;
        return good && !error;
    };
}

// wait TIME WHAT...: where nothing can be expected; the words say what the time is for.
StageRun parseWait(const Words& words, const fs::path&) {
    int milliseconds = 0;
    require(words.size() >= 3 && parseTime(words[1], milliseconds),
            "wait needs a time and what passes in it, as in: wait 2s of playing");
    return [milliseconds](Stage&, std::string&) {
        process::sleepMilliseconds(milliseconds);
        return true;
    };
}

// put FILE PATH: a sample recording, or a file that lies beside the scenario, onto the unit
StageRun parsePut(const Words& words, const fs::path& scenario) {
    require(words.size() == 3, "put needs a file and its place on the unit");
    std::error_code error;
    fs::path from = projectRoot() / "out/samples" / words[1];
    if (!fs::exists(from, error)) {
        from = fs::absolute(scenario).parent_path() / words[1];
    }
    require(fs::exists(from, error),
            "there is no " + words[1] +
                ", neither in out/samples (made by ./run or ./test) nor beside the scenario");
    return onFile(words[2], "it cannot be put there", [from](const fs::path& to, auto& failure) {
        fs::create_directories(to.parent_path(), failure);
        fs::remove(to, failure);
        failure.clear();
        // A copy: under Wine a file that has a second name, and is open by that, cannot be deleted
        // yet.
        fs::copy_file(from, to, failure);
        // What was put first is the older one, however fast they follow each other.
        static fs::file_time_type last;
        last = std::max(fs::file_time_type::clock::now(), last + std::chrono::milliseconds(1));
        if (!failure) {
            fs::last_write_time(to, last, failure);
        }
        return true;
    });
}

// file PATH TEXT: a file with this content
StageRun parseFile(const Words& words, const fs::path&) {
    require(words.size() == 3, "file needs a place on the unit and its content in quotes");
    return onFile(words[1], "the file cannot be written",
                  [text = words[2]](const fs::path& path, auto& failure) {
                      fs::create_directories(path.parent_path(), failure);
                      fs::remove(path, failure);
                      std::ofstream stream(path, std::ios::binary);
                      stream << text;
                      stream.close();
                      return !stream.fail();
                  });
}

// folder PATH
StageRun parseFolder(const Words& words, const fs::path&) {
    require(words.size() == 2, "folder needs its place on the unit");
    return onFile(words[1], "", [](const fs::path& path, auto& failure) {
        fs::create_directories(path, failure);
        return true;
    });
}

// delete PATH: a file or a folder with all that is in it
StageRun parseDelete(const Words& words, const fs::path&) {
    require(words.size() == 2, "delete needs a place on the unit");
    return onFile(words[1], "there is no " + words[1], [](const fs::path& path, auto& failure) {
        return fs::remove_all(path, failure) > 0;
    });
}

// truncate PATH BYTES
StageRun parseTruncate(const Words& words, const fs::path&) {
    long long bytes = 0;
    require(words.size() == 3 && parseNumber(words[2], bytes) && bytes >= 0,
            "truncate needs a place on the unit and a number of bytes");
    return onFile(words[1], "", [bytes](const fs::path& path, auto& failure) {
        // The unit's own files are links to those of the checkout: change a copy.
        const fs::path copy = path.string() + ".copy";
        fs::copy_file(path, copy, failure);
        if (!failure) {
            fs::resize_file(copy, static_cast<std::uintmax_t>(bytes), failure);
        }
        if (!failure) {
            fs::rename(copy, path, failure);
        }
        return true;
    });
}

// movie.dat NAME=VALUE...: the player's remembered state, the other fields at their defaults
StageRun parseMovieDat(const Words& words, const fs::path&) {
    settings::PersistedState state;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const auto equals = words[i].find('=');
        require(equals != std::string::npos && setMovieDatField(state, words[i].substr(0, equals),
                                                                words[i].substr(equals + 1)),
                "Movie.dat has no field that takes \"" + words[i] + "\"");
    }
    return [state](Stage& stage, std::string& reason) {
        makeFolder(stage.unit.device / "ResidentFlash2/Data");
        reason = "Movie.dat cannot be written";
        return writeMovieDat(stage.unit, state);
    };
}

// install: the unit's own files are put into its folder without booting, so that they can be
// changed
StageRun parseInstall(const Words& words, const fs::path&) {
    require(words.size() == 1, "install takes no words");
    return [](Stage& stage, std::string&) {
        prepareDevice(stage.unit);
        return true;
    };
}

constexpr StageCommand kCommands[] = {
    {"expect", &parseExpect, Way::None},      {"wait", &parseWait, Way::None},
    {"put", &parsePut, Way::Other},           {"file", &parseFile, Way::Other},
    {"folder", &parseFolder, Way::Other},     {"delete", &parseDelete, Way::Other},
    {"truncate", &parseTruncate, Way::Other}, {"movie.dat", &parseMovieDat, Way::Other},
    {"install", &parseInstall, Way::Other},
};

}  // namespace

const StageCommand* findStageCommand(const std::string& name) {
    return findNamed(kCommands, name);
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

}  // namespace headunit
