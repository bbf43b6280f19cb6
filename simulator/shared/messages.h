// The registered window messages that pass between the unit's processes, with who sends them and
// what their values mean: for the tape, for the command and for the panel. Portable.
#pragma once

#include <span>
#include <string_view>

namespace tape {

struct Meaning {
    long long wParam;
    long long lParam;  // kAny: whatever it is
    const char* text;
};
inline constexpr long long kAny = -1;

struct Message {
    const char* name;
    const char* sender;  // who sends it in the car; the tape's "from"
    std::span<const Meaning> meanings;
};

std::span<const Message> messages();

// Null when the unit knows no message of this name.
const Message* findMessage(std::string_view name);

// What the values mean; empty when nobody knows.
const char* meaningOf(const Message& message, long long wParam, long long lParam);

// Names of the windows and of those who only send.
inline constexpr char kPlayer[] = "Video";
inline constexpr char kProcessManager[] = "Processmanager";
inline constexpr char kNavigation[] = "Orvi";
inline constexpr char kWaiting[] = "ani_waiting";
// The window in which that one shows that the driver has to wait.
inline constexpr char kWaitingSign[] = "ani_waiting.sign";
inline constexpr char kBoard[] = "board";
inline constexpr char kRecorder[] = "recorder";
inline constexpr char kSystem[] = "system";

}  // namespace tape
