// The program that runs the unit inside Wine: starts the processes of the unit as its children (so
// that all share one desktop), does what the `headunit` command asks over a loopback connection,
// and puts on the tape what only a bystander sees: broadcasts, ends of processes, the player's
// standard output. Windows only.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace hub {

// UTF-8 and UTF-16.
std::wstring wide(const std::string& text);
std::string narrow(const std::wstring& text);

// children.cpp
// -------------------------------------------------------------------------------------

enum class Watch {
    Ends,           // only the end of the process is recorded
    EndsAndOutput,  // its standard output too, and the tap library is loaded into it
};

struct Program {
    std::wstring name;         // on the tape
    std::wstring commandLine;  // as CreateProcessW takes it
    std::wstring folder;       // current directory
    Watch watch;
};

// Starts a program; its end is recorded by a thread of its own. Returns the process number, or 0
// with the Windows error in `error`.
DWORD startChild(const Program& program, DWORD& error);
// The name under which a running child was started; empty for other processes.
std::wstring childName(DWORD process);
// Ends a child at once, as a power cut would. False when none of that name runs.
bool killChild(const std::wstring& name);
bool isRunning(const std::wstring& name);
void killAllChildren();
// Ends all children at once and remembers those that the unit's power starts again: all but the
// player. Returns when they have ended.
void cutPower();
// What cutPower() remembered, in the order of the start; forgets it.
std::vector<Program> takeWithoutPower();

// state.cpp
// ----------------------------------------------------------------------------------------

// {"windows": [...], "connectPath": ..., "priorities": {...}} of the running unit.
std::string stateJson();

// speed.cpp
// ----------------------------------------------------------------------------------------

// From now on the speed goes to every window once a second; the first broadcast follows at once.
void setSpeed(int kilometresPerHour);
// The signal is lost: one broadcast says so, and no more follow.
void loseSpeed();
// On the window's thread, once a second.
void speedTick();
// Whether the tape's witness should pass over this broadcast because it is the unit's own.
bool isOwnBroadcast(UINT message);

// server.cpp
// ---------------------------------------------------------------------------------------

// Listens on a free loopback port, writes its number to `\.unit\port` and serves every connection
// on a thread of its own. False when no port could be had.
bool startServer(HWND window);

// commands.cpp
// -------------------------------------------------------------------------------------

// Carries out one request, its words separated by tabs. The answer begins "ok" or "error: ".
std::string execute(const std::string& request);
void setHubWindow(HWND window);

inline constexpr UINT kQuitMessage = WM_APP + 1;
inline constexpr UINT_PTR kSpeedTimer = 1;

}  // namespace hub
