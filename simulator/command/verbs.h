// The verbs of the `headunit` command: one table. Each declares its words (parser.h) and gives what
// is to be done with them; checking a scenario is parsing it.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "simulator/command/parser.h"
#include "simulator/command/unit.h"

namespace headunit {

// How a verb went.
enum class Exit { Failed = 1, WrongUse = 2 };  // of one that failed: the command's exit status
struct Outcome {
    bool good = true;
    std::string text = {};  // what it prints, or in one line why it failed
    Exit exit = Exit::Failed;
};
Outcome failed(const std::string& why);
// Of something that says why by itself.
Outcome outcome(bool good, const std::string& why);

struct Call {
    const Unit& unit;
    const Words& words;  // as given, without the verb
};
// What cannot be done may be thrown as Failure.
using Run = std::function<Outcome(const Call& call)>;

// Whether it is put on the unit's tape before it is done (a boot does so when there is one); what
// stands there is done again by `replay`.
enum class Tape { Noted, ByItself, Silent };
enum class Scenario { Yes, No };
// How what it does reaches the player; of the same way the first comes first. A card goes at once
// and is announced by a message.
enum class Way { Message, Pointer, Card, Other, None };

struct Verb {
    const char* name;
    const char* help;
    Run (*declare)(Parser& parser);
    Tape tape;
    Scenario scenario;
    Way way;
};

std::span<const Verb> verbs();
// Null when there is no such verb.
const Verb* findVerb(const std::string& name);

// A verb with its words.
struct Deed {
    const Verb* verb = nullptr;
    Words words;
    Run run;
};
// Throws Failure when the words are wrong.
Deed parseDeed(const Words& line);
// Puts it on the tape where that is so, and does it.
Outcome perform(const Deed& deed, const Unit& unit);

std::string overview();                 // what `headunit --help` prints
std::string helpOf(const Verb& verb);   // what `headunit VERB --help` prints
Words completions(const Words& words);  // what may follow on the command line

// verbs_start.cpp
Run bootVerb(Parser& parser);
Run restartVerb(Parser& parser);
Run startVerb(Parser& parser);
Run shutdownVerb(Parser& parser);
Run killVerb(Parser& parser);
Run cutVerb(Parser& parser);
Run prepareVerb(Parser& parser);
// verbs_act.cpp
Run sendVerb(Parser& parser);
Run keyVerb(Parser& parser);
Run gestureVerb(Parser& parser);
Run driveVerb(Parser& parser);
Run muteVerb(Parser& parser);
Run connectVerb(Parser& parser);
Run closeVerb(Parser& parser);
Run boxVerb(Parser& parser);
Run faultVerb(Parser& parser);
// verbs_touch.cpp
Run touchVerb(Parser& parser);
Run holdVerb(Parser& parser);
Run releaseVerb(Parser& parser);
Run pressVerb(Parser& parser);
Run typeVerb(Parser& parser);
// verbs_card.cpp, verb_record.cpp
Run cardVerb(Parser& parser);
Run recordVerb(Parser& parser);
// verbs_see.cpp, verb_view.cpp
Run shotVerb(Parser& parser);
Run filmVerb(Parser& parser);
Run logVerb(Parser& parser);
Run stateVerb(Parser& parser);
Run skinVerb(Parser& parser);
Run viewVerb(Parser& parser);
// verb_scenario.cpp, verb_replay.cpp
Run scenarioVerb(Parser& parser);
Run replayVerb(Parser& parser);

// driving_chart.cpp: what the driving check makes of every speed, as a table of characters.
std::string drivingChart();

}  // namespace headunit
