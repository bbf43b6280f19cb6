// One simulated head unit as the command sees it: a folder that is the unit's file system (drive H:
// inside Wine), with everything that belongs to a run of it in the sub-folder `.unit`.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/command/process.h"

namespace headunit {

namespace fs = std::filesystem;

// Thrown where something cannot be done; what() tells the user why, in one line.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The checkout that this program was built in; found from the program's own place.
const fs::path& projectRoot();

struct Unit {
    fs::path device;  // absolute

    [[nodiscard]] fs::path run() const { return device / ".unit"; }
    [[nodiscard]] fs::path prefix() const { return run() / "prefix"; }
    [[nodiscard]] fs::path tape() const { return run() / "log.jsonl"; }
    // Name of the desktop window, different for every folder.
    [[nodiscard]] std::string desktopName() const;
};

// What a run of the unit leaves in `.unit`, one small text file a value; empty when it is missing.
std::string readRunFile(const Unit& unit, const char* name);
void writeRunFile(const Unit& unit, const char* name, const std::string& value);

// Environment in which Wine's programs run for the prefix, on the given display.
std::vector<std::string> wineEnvironment(const fs::path& prefix, const std::string& display);
std::string wineLoader();

// A connection to a port of the loopback interface, to be closed; -1 when nobody listens there.
int connectTo(int port);
// Asks the hub (simulator/hub/server.cpp). True when it did what was asked; `answer` is what it
// gives, texts as they are and everything else as JSON, or the reason.
bool ask(const Unit& unit, const std::vector<std::string>& words, std::string& answer);
// The same for what must be done: gives the answer, or throws the reason.
std::string demand(const Unit& unit, const std::vector<std::string>& words);
// What is said when none answers.
std::string noUnit(const Unit& unit);
// A command for this unit that can be pasted: "./headunit kill --device DIR", without DIR where it
// is the usual one.
std::string commandFor(const Unit& unit, const std::string& words);
// A secret that only this user can read, for the hub that is started next.
void writeToken(const Unit& unit);

// Whether the unit's hub answers.
bool isRunning(const Unit& unit);
// Throws noUnit() when it does not.
void requireRunning(const Unit& unit);

// The process whose number stands in the run file `name` (Xvfb, the servers of a view): 0 when
// there is none, when it has ended, or when the number is somebody else's by now.
pid_t helperProcess(const Unit& unit, const char* name);
void endHelper(const Unit& unit, const char* name);

// Ends everything that belongs to the unit, whatever state it is in.
void endUnit(const Unit& unit);

// While one of these lives, an interrupt (SIGINT, SIGTERM, SIGHUP) ends the unit before it ends
// this command, so that nothing is left running.
class EndsOnInterrupt {
public:
    explicit EndsOnInterrupt(const Unit& unit);
    ~EndsOnInterrupt();
    EndsOnInterrupt(const EndsOnInterrupt&) = delete;
    EndsOnInterrupt& operator=(const EndsOnInterrupt&) = delete;
};

// `path` below the unit's folder as the unit names it ("\SDMMCDisk\a.avi"); empty when it is
// outside.
std::string unitPath(const Unit& unit, const fs::path& path);
// The other way round; takes paths with or without a leading backslash.
fs::path hostPath(const Unit& unit, std::string_view path);
// Throws unless the folder is there, so that the dash camera can hand it over.
void requireFolder(const Unit& unit, const std::string& folder);

}  // namespace headunit
