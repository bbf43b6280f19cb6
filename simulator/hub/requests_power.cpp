// Requests about the processes of the unit and its power.
#include "simulator/hub/requests.h"

namespace hub {
namespace {

constexpr int kPeerPatience = 5000;  // milliseconds

Answer notStarted(const std::string& what, DWORD error) {
    return failed("Wine could not start " + what + " (Windows error " + std::to_string(error) +
                  ")");
}

}  // namespace

// start NAME FOLDER COMMANDLINE [output]: gives the process's number
Answer startProgram(const Words& words) {
    const bool output = words.size() > 4 && words[4] == "output";
    const Program program = {wide(words[1]), wide(words[3]), wide(words[2]),
                             output ? Watch::EndsAndOutput : Watch::Ends};
    DWORD error = 0;
    const DWORD process = startChild(program, error);
    return process != 0 ? Answer{true, process} : notStarted(words[3], error);
}

// await TITLE MILLISECONDS: until there is a window of that title.
Answer awaitWindow(const Words& words) {
    const std::wstring title = wide(words[1]);
    const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(numberOf(words[2]));
    while (FindWindowW(nullptr, title.c_str()) == nullptr) {
        if (GetTickCount64() >= end) {
            return failed("no window \"" + words[1] + "\" appeared");
        }
        Sleep(10);
    }
    return {};
}

// cut: every process of the unit ends at once, as when its power is cut; this one goes on.
Answer cutPowerNow(const Words&) {
    cutPower();
    return {};
}

// power: after a cut starts what ran before, but the player. The registry starts fresh, as at every
// boot. Does nothing when the power is on.
Answer powerOn(const Words&) {
    const std::vector<Program> programs = takeWithoutPower();
    if (programs.empty()) {
        return {};
    }
    RegDeleteTreeW(HKEY_CURRENT_USER, kFaultKey);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, kHandOverKey);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, kPriorityKey);
    for (const Program& program : programs) {
        DWORD error = 0;
        if (startChild(program, error) == 0) {
            return notStarted(narrow(program.name), error);
        }
    }
    for (const Program& program : programs) {
        // A process of the unit is named after its window.
        const Answer shown =
            awaitWindow({"await", narrow(program.name), std::to_string(kPeerPatience)});
        if (!shown.good) {
            return shown;
        }
    }
    return {};
}

}  // namespace hub
