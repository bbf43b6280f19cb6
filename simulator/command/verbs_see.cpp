// What is seen of the unit: pictures, the tape, the state.
#include <cstdio>
#include <fstream>

#include "simulator/command/display.h"
#include "simulator/command/json.h"
#include "simulator/command/movie_dat.h"
#include "simulator/command/tape_reader.h"
#include "simulator/command/verbs.h"

namespace headunit {
namespace {

// {section: {key: value}} as a person would read the file: blank lines and comments left out.
std::string configJson(const Unit& unit) {
    std::ifstream file(unit.device / "ResidentFlash2/Data/Config.ini", std::ios::binary);
    std::string line;
    std::string out;
    bool open = false;
    bool first = true;
    while (std::getline(file, line)) {
        while (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        const auto equals = line.find('=');
        if (line.starts_with("[") && line.find(']') != std::string::npos) {
            out += open ? "}, " : "";
            out += json::quoted(line.substr(1, line.find(']') - 1)) + ": {";
            open = true;
            first = true;
        } else if (open && !line.starts_with(";") && equals != std::string::npos) {
            out += (first ? "" : ", ") + json::quoted(line.substr(0, equals)) + ": " +
                   json::quoted(line.substr(equals + 1));
            first = false;
        }
    }
    return "{" + out + (open ? "}}" : "}");
}

// Of a unit that is switched off there are only its files.
constexpr char kNothingRuns[] = "{\"windows\": [], \"connectPath\": null, \"priorities\": {}}";

void printMembers(const char* head, const json::Value* object) {
    std::printf("%s\n", head);
    if (object == nullptr || object->kind != json::Value::Kind::Object) {
        std::printf("  none\n");
        return;
    }
    for (const auto& [name, value] : object->members) {
        std::printf("  %-12s %s\n", name.c_str(), value.text.c_str());
    }
}

void printWindows(const json::Value* windows) {
    std::printf("Windows\n");
    for (const json::Value& window : windows->items) {
        const json::Value* visible = window.find("visible");
        const json::Value* area = window.find("rect");
        std::string place;
        for (const json::Value& edge : area->items) {
            place += (place.empty() ? "" : ", ") + edge.text;
        }
        std::printf("  %-18s %-18s %-8s (%s)\n", window.textOf("title").c_str(),
                    window.textOf("class").c_str(), visible->truth ? "visible" : "hidden",
                    place.c_str());
    }
}

void printState(const json::Value& state) {
    printWindows(state.find("windows"));
    printMembers("Movie.dat", state.find("movieDat"));
    for (const auto& [section, keys] : state.find("config")->members) {
        printMembers(("Config.ini [" + section + "]").c_str(), &keys);
    }
    const json::Value* path = state.find("connectPath");
    std::printf("Hand-over (ConnectPath)\n  %s\n",
                path->kind == json::Value::Kind::Text ? path->text.c_str() : "none");
    printMembers("Thread priorities", state.find("priorities"));
}

}  // namespace

std::string stateJson(const Unit& unit) {
    std::string live;
    if (!ask(unit, {"state"}, live)) {
        live = kNothingRuns;
    }
    const auto movieDat = readMovieDat(unit);
    live.pop_back();
    return live + ", \"movieDat\": " + (movieDat ? movieDatJson(*movieDat) : "null") +
           ", \"config\": " + configJson(unit) + "}";
}

int stateVerb(const Unit& unit, const Words& given) {
    Words words = given;
    const bool asJson = takeFlag(words, "--json");
    if (!words.empty()) {
        return wrongUse("state");
    }
    if (isCheckOnly()) {
        return 0;
    }
    std::error_code error;
    if (!fs::exists(unit.run(), error)) {
        return fail("there is no unit in " + unit.device.string() +
                    "; start one with: headunit boot");
    }
    const std::string text = stateJson(unit);
    const auto state = json::parse(text);
    if (!state) {
        return fail("the unit's answer is not understood: " + text);
    }
    if (asJson) {
        std::puts(text.c_str());
    } else {
        printState(*state);
    }
    return 0;
}

int logVerb(const Unit& unit, const Words& given) {
    Words words = given;
    const bool follow = takeFlag(words, "--follow");
    const bool asJson = takeFlag(words, "--json");
    if (!words.empty()) {
        return wrongUse("log");
    }
    std::error_code error;
    if (!fs::exists(unit.run(), error)) {
        return fail("there is no unit in " + unit.device.string() +
                    "; start one with: headunit boot");
    }
    TapeReader reader(unit);
    for (;;) {
        while (const auto line = reader.next()) {
            std::puts(asJson ? line->raw.c_str() : describe(line->value).c_str());
        }
        if (std::fflush(stdout) != 0 || !follow || !isRunning(unit)) {
            return 0;
        }
        process::sleepMilliseconds(100);
    }
}

int shotVerb(const Unit& unit, const Words& words) {
    if (words.size() != 1) {
        return wrongUse("shot");
    }
    std::string why;
    return takePicture(unit, words[0], why) ? 0 : fail(why);
}

}  // namespace headunit
