// The faults that the unit knows by name; what each does stands in faults.h beside this file and in
// simulator/filters/faults.h. Portable.
#pragma once

#include <algorithm>
#include <string_view>

namespace tape {

inline constexpr std::string_view kFaultNames[] = {
    "CutAfterMessages",      "DirectoryOrder",     "LeakReference",     "LiveLength",
    "NoAudioRenderer",       "NoVideoRenderer",    "NotConnectedAudio", "NullDecoder",
    "ReadDelayMilliseconds", "ReadFailAfterBytes", "RenderResult",      "ReopenFails",
    "SecondNameOnly",
};

constexpr bool isFaultName(std::string_view name) {
    return std::ranges::find(kFaultNames, name) != std::end(kFaultNames);
}

}  // namespace tape
