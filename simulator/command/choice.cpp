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
bool putOnUnit(const Unit& unit, const fs::path& path, std::string& onUnit, std::string& why) {
    std::error_code error;
    fs::path host = fs::exists(path, error) ? fs::absolute(path, error).lexically_normal()
                                            : hostPath(unit, path.string());
    if (!host.has_filename()) {
        host = host.parent_path();
    }
    if (!fs::exists(host, error)) {
        why = "there is no file " + path.string() + ", neither here nor on the unit";
        return false;
    }
    onUnit = unitPath(unit, host);
    if (!onUnit.empty()) {
        return true;
    }
    const fs::path place = unit.device / kCard / host.filename();
    onUnit = unitPath(unit, place);
    // What was put there at another start, and has changed on the PC since then, is replaced.
    const std::string placed = "put-" + host.filename().string();
    if (fs::exists(place, error)) {
        if (readRunFile(unit, placed.c_str()) != host.string()) {
            why = "the card has another " + host.filename().string() + "; take that one away first";
            return false;
        }
        fs::remove_all(place, error);
    }
    writeRunFile(unit, placed.c_str(), host.string());
    return putFromPc(host, place, why);
}

}  // namespace

bool choose(const Unit& unit, const fs::path& play, Choice& choice, std::string& why) {
    std::string onUnit;
    if (play.empty()) {
        return true;
    }
    if (!putOnUnit(unit, play, onUnit, why)) {
        return false;
    }
    std::error_code error;
    const bool isFolder = fs::is_directory(hostPath(unit, onUnit), error);
    const std::string folder = isFolder ? onUnit : onUnit.substr(0, onUnit.rfind('\\'));
    std::string answer;
    if (!ask(unit, {"listing", folder}, answer)) {
        why = answer;
        return false;
    }
    const auto paths = parseJson(answer).get<std::vector<std::string>>();
    const auto found = isFolder ? paths.begin() : std::ranges::find(paths, onUnit);
    if (found == paths.end()) {
        why = isFolder ? "there is no recording in " + play.string()
                       : "the player lists no such recording: " + play.string();
        return false;
    }
    choice.given = true;
    choice.state.playState = settings::kPlaying;
    choice.state.fileIndex = static_cast<std::int32_t>(found - paths.begin());
    setMovieDatField(choice.state, "folder", folder);
    setMovieDatField(choice.state, "file", *found);
    return true;
}

bool remember(const Unit& unit, const Choice& choice, std::string& why) {
    why = "Movie.dat cannot be written; is the disk full?";
    return !choice.given || writeMovieDat(unit, choice.state);
}

}  // namespace headunit
