#include "simulator/command/choice.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "simulator/command/cards.h"
#include "simulator/command/movie_dat.h"
#include "simulator/shared/json.h"

namespace headunit {
namespace {

constexpr char kCard[] = "SDMMCDisk";

// Where the file or folder stands on the unit; what lies outside is put onto the card first.
std::string putOnUnit(const Unit& unit, const fs::path& path) {
    std::error_code error;
    fs::path host = fs::exists(path, error) ? fs::absolute(path, error).lexically_normal()
                                            : hostPath(unit, path.string());
    if (!host.has_filename()) {
        host = host.parent_path();
    }
    if (!fs::exists(host, error)) {
        throw Failure("there is no file " + path.string() + ", neither here nor on the unit");
    }
    if (const std::string there = unitPath(unit, host); !there.empty()) {
        return there;
    }
    const fs::path place = unit.device / kCard / host.filename();
    // What was put there at another start, and has changed on the PC since then, is replaced.
    const std::string placed = "put-" + host.filename().string();
    if (fs::exists(place, error)) {
        if (readRunFile(unit, placed.c_str()) != host.string()) {
            throw Failure("the card has another " + host.filename().string() +
                          "; take that one away first");
        }
        fs::remove_all(place, error);
    }
    writeRunFile(unit, placed.c_str(), host.string());
    putFromPc(host, place);
    return unitPath(unit, place);
}

}  // namespace

Choice choose(const Unit& unit, const fs::path& play) {
    if (play.empty()) {
        return std::nullopt;
    }
    const std::string onUnit = putOnUnit(unit, play);
    std::error_code error;
    const bool isFolder = fs::is_directory(hostPath(unit, onUnit), error);
    const std::string folder = isFolder ? onUnit : onUnit.substr(0, onUnit.rfind('\\'));
    const auto paths = parseJson(demand(unit, {"listing", folder})).get<std::vector<std::string>>();
    const auto found = isFolder ? paths.begin() : std::ranges::find(paths, onUnit);
    if (found == paths.end()) {
        throw Failure(
            (isFolder ? "there is no recording in " : "the player lists no such recording: ") +
            play.string());
    }
    settings::PersistedState state;
    state.playState = settings::kPlaying;
    state.fileIndex = static_cast<std::int32_t>(found - paths.begin());
    setMovieDatField(state, "folder", folder);
    setMovieDatField(state, "file", *found);
    return state;
}

void remember(const Unit& unit, const Choice& choice) {
    if (choice && !writeMovieDat(unit, *choice)) {
        throw Failure("Movie.dat cannot be written; is the disk full?");
    }
}

}  // namespace headunit
