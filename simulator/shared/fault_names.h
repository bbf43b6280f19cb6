// The faults that the unit knows by name, and the values that each takes; what each does stands in
// tape/faults.h and filters/faults.h. Portable.
#pragma once

#include <string_view>

namespace headunit {

struct Fault {
    std::string_view name;
    long long least;
    long long most;
};
inline constexpr long long kAnyCount = 0x7FFFFFFF;
inline constexpr Fault kFaults[] = {
    {"AllocationFails", 0, kAnyCount},
    {"CodePage", 0, 65001},
    {"CutAfterMessages", 1, kAnyCount},
    {"DirectoryOrder", 0, 4},
    {"LeakReference", 0, 1},
    {"LiveLength", 0, kAnyCount},
    {"NoAudioRenderer", 0, 1},
    {"NoVideoRenderer", 0, 1},
    {"NotConnectedAudio", 0, 1},
    {"NullDecoder", 0, 1},
    {"ReadDelayMilliseconds", 0, 60000},
    {"ReadFailAfterBytes", 0, 0xFFFFFFFF},
    {"RenderResult", 0, 0xFFFFFFFF},
    {"ReopenFails", 0, 2},
    {"ReportMemory", 0, 1},
    {"SecondNameOnly", 0, 1},
    {"UnreadableCharacter", 0, kAnyCount},
};

// Null when the unit knows no such fault.
constexpr const Fault* findFault(std::string_view name) {
    for (const Fault& fault : kFaults) {
        if (fault.name == name) {
            return &fault;
        }
    }
    return nullptr;
}

}  // namespace headunit
