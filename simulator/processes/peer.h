// What the processes around the player have in common: one hidden window that other processes find
// by its title and that puts everything it is sent on the tape. Windows only.
#pragma once

#include <windows.h>

#include "simulator/shared/messages.h"

namespace peer {

struct Received {
    const tape::Message* message;
    WPARAM wParam;
    LPARAM lParam;
};

// Called on the window's thread after a message was recorded; the result is the message's.
using Reaction = LRESULT (*)(const Received& received);
// Called for the unit's own requests to this process ("HEADUNIT_REQUEST").
using Request = void (*)(WPARAM request);

struct Peer {
    const wchar_t* title;   // window title and class
    const char* name;       // the same on the tape
    Reaction react;         // may be null
    Request request;        // may be null
    DWORD answerAfter = 0;  // milliseconds before a sent message is answered
};

// Runs the message loop until WM_QUIT; the process's exit value.
int run(const Peer& peer);

// Posts a registered message to the player and puts it on the tape as from `name`.
// Without a player nothing is posted nor recorded.
void postToPlayer(const char* name, const char* message, WPARAM wParam, LPARAM lParam);

// The number after `option` on the command line, or `fallback`.
DWORD optionNumber(const wchar_t* commandLine, const wchar_t* option, DWORD fallback);

inline constexpr wchar_t kRequestMessage[] = L"HEADUNIT_REQUEST";
inline constexpr WPARAM kRequestShutdown = 1;  // process manager: ask the player to exit

}  // namespace peer
