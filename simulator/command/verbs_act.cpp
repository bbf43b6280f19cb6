// What is done to the unit while it runs: messages, keys, speed, boxes, faults.
#include <limits>

#include "simulator/command/verbs.h"
#include "simulator/shared/fault_names.h"
#include "simulator/shared/messages.h"
#include "simulator/shared/named.h"

namespace headunit {
namespace {

// The simulated unit's wParam and lParam have 64 bits, the unit's own 32.
constexpr long long kWord = std::numeric_limits<long long>::max();
constexpr long long kFastest = 400;  // km/h

struct Named {
    const char* name;
    int number;
};
constexpr Named kKeys[] = {{"prev", 5}, {"next", 6}, {"play", 7}};
constexpr Named kGestures[] = {{"prev", 1}, {"next", 2}};
// Windows' own numbers of the buttons.
constexpr Named kAnswers[] = {{"ok", 1}, {"yes", 6}, {"no", 7}};
constexpr Named kSwitch[] = {{"on", 1}, {"off", 0}};

Outcome request(const Unit& unit, const Words& words) {
    demand(unit, words);
    return {};
}

Outcome post(const Unit& unit, const char* message, int wParam) {
    return request(unit, {"message", "post", message, std::to_string(wParam), "0"});
}

// A verb that posts `message` with the number of its one word.
template <std::size_t count>
Run posting(Parser& parser, const char* names, const char* help, const char* message,
            const Named (&table)[count]) {
    const auto word = parser.word(names, help, Needed::Yes, oneOf(names));
    return [word, message, &table](const Call& call) {
        return post(call.unit, message, findNamed(table, *word)->number);
    };
}

std::string faultNames() {
    std::string names;
    for (const Fault& fault : kFaults) {
        names += (names.empty() ? "" : ", ") + std::string(fault.name);
    }
    return names;
}

// A graph event can be posted, too (simulator/filters/app_window.h), though nobody does in the car.
std::string unknownMessage(const std::string& word) {
    if (tape::findMessage(word) != nullptr || word == "HEADUNIT_GRAPH_EVENT") {
        return {};
    }
    std::string names;
    for (const tape::Message& message : tape::messages()) {
        names += (names.empty() ? "" : ", ") + std::string(message.name);
    }
    return "must be one of " + names;
}

}  // namespace

Run sendVerb(Parser& parser) {
    const auto sync = parser.flag("--sync", "send it, and print the result");
    const auto title = parser.option("--to", "TITLE", "another window than the player's");
    const auto name = parser.word("NAME", "the message's name, see docs/messages.md", Needed::Yes,
                                  unknownMessage);
    const auto first = parser.word("WPARAM", "number", Needed::Yes, between(-kWord, kWord));
    const auto second = parser.word("LPARAM", "number", Needed::Yes, between(-kWord, kWord));
    return [=](const Call& call) -> Outcome {
        const std::string answer =
            demand(call.unit, {"message", *sync ? "send" : "post", *name, *first, *second,
                               title->empty() ? "Video" : *title});
        return {true, *sync ? answer : ""};
    };
}

Run keyVerb(Parser& parser) {
    return posting(parser, "play|next|prev", "the key", "ZEL_BSP_WMUSER_IR_KEY", kKeys);
}

Run gestureVerb(Parser& parser) {
    return posting(parser, "next|prev", "the gesture", "ZEL_BSP_WMUSER_GESTURE", kGestures);
}

Run muteVerb(Parser& parser) {
    return posting(parser, "on|off", "whether the sound is muted", "BSP_WMUSER_MUTE_NOTIFICATION",
                   kSwitch);
}

Run driveVerb(Parser& parser) {
    const auto chart = parser.flag("--chart", "print when the driving check blocks the picture");
    const auto speed = parser.word("KMH|off", "whole km/h, or no signal", Needed::No,
                                   oneOf("off", between(0, kFastest)));
    return [chart, speed](const Call& call) -> Outcome {
        if (*chart) {
            return {true, drivingChart()};
        }
        if (speed->empty()) {
            return {false, "name a speed; usage: headunit drive [--chart] KMH|off", Exit::WrongUse};
        }
        return request(call.unit, {"speed", *speed});
    };
}

Run boxVerb(Parser& parser) {
    const auto button = parser.word("ok|yes|no", "the button", Needed::Yes, oneOf("ok|yes|no"));
    return [button](const Call& call) {
        return request(call.unit, {"box", std::to_string(findNamed(kAnswers, *button)->number)});
    };
}

Run faultVerb(Parser& parser) {
    const auto name = parser.word("NAME", faultNames(), Needed::Yes, [](const std::string& word) {
        return findNamed(kFaults, word) != nullptr ? std::string()
                                                   : "must be one of " + faultNames();
    });
    // Its limits are those of the fault, which stands before it.
    const auto value =
        parser.word("NUMBER|off", "its value", Needed::Yes, [name](const std::string& word) {
            const Fault* fault = findNamed(kFaults, *name);
            return oneOf("off",
                         fault == nullptr ? Check() : between(fault->least, fault->most))(word);
        });
    return [name, value](const Call& call) { return request(call.unit, {"fault", *name, *value}); };
}

Run connectVerb(Parser& parser) {
    const auto missing = parser.flag("--missing", "the folder need not be there");
    const auto folder =
        parser.word("FOLDER|off", "a folder of the unit, or nothing any more", Needed::Yes,
                    [](const std::string& word) {
                        return word.empty() ? "must be a folder or off" : std::string();
                    });
    return [missing, folder](const Call& call) -> Outcome {
        requireRunning(call.unit);
        if (*folder != "off" && !*missing) {
            requireFolder(call.unit, *folder);
        }
        return request(call.unit, {"connect", *folder == "off" ? "" : *folder});
    };
}

Run closeVerb(Parser&) {
    return [](const Call& call) { return request(call.unit, {"close"}); };
}

}  // namespace headunit
