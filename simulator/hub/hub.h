// The program that runs the unit inside Wine: starts the processes of the unit as its children (so
// that all share one desktop), does what the `headunit` command asks over a loopback connection,
// and puts on the tape what only a bystander sees: broadcasts, ends of processes, the player's
// standard output. Windows only.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "simulator/shared/json.h"
#include "simulator/shared/words.h"

namespace hub {

using headunit::Json;
using headunit::Words;

inline constexpr wchar_t kPlayer[] = L"movie.exe";
inline constexpr wchar_t kPlayerTitle[] = L"Video";
inline constexpr wchar_t kFaultKey[] = L"Software\\HeadUnit\\Faults";
inline constexpr wchar_t kHandOverKey[] = L"SOFTWARE\\BLACKBOX";
inline constexpr wchar_t kPriorityKey[] = L"SOFTWARE\\Microsoft\\DirectShow\\ThreadPriority";

// UTF-8 and UTF-16.
std::wstring wide(const std::string& text);
std::string narrow(const std::wstring& text);

// What a file of the unit's run folder holds: its first line, without the line end; empty when
// there is none.
std::string runFile(const std::wstring& name);

// --- children.cpp, children_watch.cpp ---

enum class Watch {
    Ends,           // only the end of the process is recorded
    EndsAndOutput,  // its standard output too
};

struct Program {
    std::wstring name;         // on the tape
    std::wstring commandLine;  // as CreateProcessW takes it
    std::wstring folder;       // current directory
    Watch watch;
};

struct Child {
    Program program;
    HANDLE process;
    DWORD number;
};

// Starts a program; its end is recorded by a thread of its own. Returns the process number, or 0
// with the Windows error in `error`.
DWORD startChild(const Program& program, DWORD& error);
// The name under which a running child was started; empty for other processes.
std::wstring childName(DWORD process);
// Ends a child at once, as a power cut would. False when none of that name runs.
bool killChild(const std::wstring& name);
bool isRunning(const std::wstring& name);
// Ends all children at once and remembers those that the unit's power starts again: all but the
// player. Returns when they have ended.
void cutPower();
// What cutPower() remembered, in the order of the start; forgets it.
std::vector<Program> takeWithoutPower();
bool hasPower();

// Runs `work` on a thread of its own; the thread, to be closed. (Not std::thread: now and then one
// of its starts never comes back under Wine.)
HANDLE startThread(std::function<void()> work);
// Reads what a child prints until the pipe ends; the thread that does.
HANDLE startReader(const std::wstring& name, HANDLE pipe);
// Waits for the child's end, and for that of `output`, its reader, where it has one; then puts the
// end on the tape and calls `forget`.
void startWatcher(const Child& child, HANDLE output, void (*forget)(DWORD process));

// --- state.cpp ---

// Windows, hand-over, priorities and what the car around the player does, of the running unit.
Json state();
// One line about the same for the panel.
std::wstring statusLine();

// --- speed.cpp ---

// From now on the speed goes to every window once a second; the first broadcast follows at once.
void setSpeed(int kilometresPerHour);
// The signal is lost: one broadcast says so, and no more follow.
void loseSpeed();
// On the window's thread, once a second.
void speedTick();
// The speed in km/h, or kNoSignal.
inline constexpr int kNoSignal = -1;
int speed();
// Whether the tape's witness should pass over this broadcast because it is the unit's own.
bool isOwnBroadcast(UINT message);

// --- server.cpp ---

// Listens on a free loopback port, writes its number to `\.unit\port` and serves every connection
// on a thread of its own. False when no port could be had.
bool startServer();

// --- requests.cpp, see requests.h for the rest ---

void setHubWindow(HWND window);
// On the window's thread: all input that was on its way when kTakenQuestion came has been handled.
void inputTaken();

// Windows hands timers out last, after posted messages and input.
inline constexpr UINT kTakenQuestion = WM_APP + 3;
inline constexpr UINT_PTR kSpeedTimer = 1;
inline constexpr UINT_PTR kTakenTimer = 2;

}  // namespace hub
