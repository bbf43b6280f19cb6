#include "simulator/command/state.h"

#include <fstream>

#include "simulator/command/cards.h"
#include "simulator/command/movie_dat.h"

namespace headunit {
namespace {

// {section: {key: value}} as a person would read the file: blank lines and comments left out.
Json config(const Unit& unit) {
    std::ifstream file(unit.device / "ResidentFlash2/Data/Config.ini", std::ios::binary);
    Json out = Json::object();
    std::string section;
    for (std::string line; std::getline(file, line);) {
        line.erase(line.find_last_not_of('\r') + 1);
        const auto equals = line.find('=');
        if (line.starts_with("[") && line.find(']') != std::string::npos) {
            section = line.substr(1, line.find(']') - 1);
            out[section] = out.value(section, Json::object());
        } else if (!section.empty() && !line.starts_with(";") && equals != std::string::npos) {
            out[section][line.substr(0, equals)] = line.substr(equals + 1);
        }
    }
    return out;
}

// What is in each slot: null, "own" or the folder of the PC.
Json cards(const Unit& unit) {
    Json out = Json::object();
    for (const Slot& slot : kSlots) {
        const std::string folder = shownFolder(unit, slot);
        out[slot.name] = !hasCard(unit, slot) ? Json() : Json(folder.empty() ? "own" : folder);
    }
    return out;
}

std::string members(const std::string& head, const Json& object) {
    std::string text = head + "\n" + (object.is_object() && !object.empty() ? "" : "  none\n");
    for (const auto& [name, value] : object.items()) {
        text += "  " + name + std::string(name.size() < 12 ? 12 - name.size() : 0, ' ') + " " +
                plain(value) + "\n";
    }
    return text;
}

std::string windows(const Json& state) {
    std::string text = "Windows\n";
    for (const Json& window : state["windows"]) {
        std::string place;
        for (const Json& edge : window["rect"]) {
            place += " " + plain(edge);
        }
        const std::string title = textOf(window, "title");
        char line[160];
        std::snprintf(line, sizeof(line), "  %-24s %-8s%s\n",
                      (title.empty() ? textOf(window, "class") : title).c_str(),
                      window.value("visible", false) ? "visible" : "hidden", place.c_str());
        text += line;
    }
    return text;
}

std::string loudness(const Json& hundredths) {
    if (!hundredths.is_number()) {
        return "nothing plays";
    }
    const double decibels = hundredths.get<double>() / 100;
    char text[32];
    std::snprintf(text, sizeof(text), "%.1f dB", decibels);
    return decibels <= -100 ? "silent" : text;
}

// Of a unit that is switched off there are only its files.
Json switchedOff() {
    return {{"windows", Json::array()}, {"connectPath", nullptr},  {"priorities", Json::object()},
            {"power", "off"},           {"player", false},         {"speed", nullptr},
            {"muted", nullptr},         {"faults", Json::object()}};
}

}  // namespace

Json unitState(const Unit& unit) {
    std::string live;
    Json state = ask(unit, {"state"}, live) ? parseJson(live) : switchedOff();
    const auto record = readMovieDat(unit);
    state["cards"] = cards(unit);
    state["movieDat"] = record ? movieDatJson(*record) : Json();
    state["config"] = config(unit);
    return state;
}

Json loudnessOf(const Unit& unit) {
    std::string answer;
    const Json value = ask(unit, {"loudness"}, answer) ? parseJson(answer) : Json();
    return value.is_number() ? value : Json();
}

std::string describeState(const Unit& unit, const Json& state) {
    const std::string power = textOf(state, "power");
    std::string text = "Unit in " + unit.device.string() + "\n  power        " +
                       (power == "off" ? "switched off; what follows are its files" : power) + "\n";
    if (power != "off") {
        text += "  player       " + std::string(state.value("player", false) ? "runs" : "ended") +
                "\n  speed        " +
                (state["speed"].is_null() ? "no signal" : plain(state["speed"]) + " km/h") +
                "\n  sound        " + (state["muted"] == true ? "muted by the board, " : "on, ") +
                loudness(state.value("loudness", Json())) + "\n" + windows(state) +
                members("Faults", state["faults"]);
    }
    text += members("Cards", state["cards"]) + members("Movie.dat", state["movieDat"]);
    for (const auto& [section, keys] : state["config"].items()) {
        text += members("Config.ini [" + section + "]", keys);
    }
    if (power != "off") {
        text += "Hand-over (ConnectPath)\n  " + plain(state["connectPath"]) + "\n" +
                members("Thread priorities", state["priorities"]);
    }
    text.pop_back();
    return text;
}

}  // namespace headunit
