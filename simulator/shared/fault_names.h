// The faults: misbehaviour of the unit around the player, on command. Each is a DWORD value under
// HKEY_CURRENT_USER\Software\HeadUnit\Faults. Portable.
#pragma once

#include <string_view>

namespace headunit {

struct Fault {
    std::string_view name;
    long long least;
    long long most;
};
inline constexpr long long kAnyCount = 0x7FFFFFFF;
// Values of coredll.dll hold from the player's next start, those of the filters from the next file,
// the others at once. 0, or a missing value: the unit behaves.
inline constexpr Fault kFaults[] = {
    // The n-th allocation fails: memory, device contexts, bitmaps, fonts, brushes.
    {"AllocationFails", 0, kAnyCount},
    // What code page 0 is, 949 on a Korean unit.
    {"CodePage", 0, 65001},
    // Power is cut when the player has sent so many messages since it started.
    {"CutAfterMessages", 1, kAnyCount},
    // Of a folder's entries, see tape/faults.h.
    {"DirectoryOrder", 0, 4},
    // The demultiplexer keeps a reference to its graph for ever.
    {"LeakReference", 0, 1},
    // Seconds; the file counts as still being recorded, and this is announced as its new length
    // after two seconds.
    {"LiveLength", 0, kAnyCount},
    // The sound streams of the file are not offered.
    {"NoAudioRenderer", 0, 1},
    // The picture of the file is not offered.
    {"NoVideoRenderer", 0, 1},
    // The audio-stream query answers VFW_E_NOT_CONNECTED.
    {"NotConnectedAudio", 0, 1},
    // The chip has no video decoder at all.
    {"NullDecoder", 0, 1},
    // Every read takes at least this long.
    {"ReadDelayMilliseconds", 0, 60000},
    // Reads fail once so many bytes were read.
    {"ReadFailAfterBytes", 0, 0xFFFFFFFF},
    // A failing HRESULT: RenderFile returns it for every recording.
    {"RenderResult", 0, 0xFFFFFFFF},
    // 1: a recording that has grown cannot be opened again; 2: and the splitter is lost over it.
    {"ReopenFails", 0, 2},
    // The player prints at its end how much it has allocated and how deep its stack was.
    {"ReportMemory", 0, 1},
    // The video renderer is there under its second name only.
    {"SecondNameOnly", 0, 1},
    // The n-th character that is read from a text file cannot be converted.
    {"UnreadableCharacter", 0, kAnyCount},
};

}  // namespace headunit
