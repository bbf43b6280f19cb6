// What the player remembers across runs: one fixed record, written to the resident flash as it
// lies in memory (1072 bytes, little-endian, no header, no checksum).
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/folder.h"

namespace settings {

inline constexpr std::int32_t kDefaultVolume = 5;
inline constexpr std::int32_t kLoudestVolume = 10;

enum PlayState : std::int32_t { kStopped = 0, kPlaying = 1, kPaused = 2 };

//  offset  size
//       0     4  playState   0 stopped, 1 playing, 2 paused
//       4     4  volume      0 to 10
//       8     4  fileIndex   index in the file list of `folder`
//      12     4  reserved    kept as read
//      16     8  position    seconds
//      24     8  endTime     seconds, duration of the file
//      32   520  folder      zero-terminated
//     552   520  file        full path, zero-terminated
struct PersistedState {
    std::int32_t playState = kStopped;
    std::int32_t volume = kDefaultVolume;
    std::int32_t fileIndex = 0;
    std::int32_t reserved = 0;
    double position = 0;
    double endTime = 0;
    char16_t folder[platform::kPathCapacity] = {};
    char16_t file[platform::kPathCapacity] = {};
};
static_assert(sizeof(PersistedState) == 1072);
static_assert(offsetof(PersistedState, position) == 16);
static_assert(offsetof(PersistedState, folder) == 32);
static_assert(offsetof(PersistedState, file) == 552);

// Reads the record, creating its folder when missing. Returns 1 when all 1072 bytes were read (a
// longer file gives its first 1072), else 0 with `state` at its defaults. The values are as
// stored; see repair().
int readPersistedState(PersistedState& state);

// Puts every value that is out of range to its default: state, volume, a negative index, a
// negative end time, a position behind the end time, and values that are not numbers. Both paths
// end with a zero. The index is checked against the list when the list is known.
void repair(PersistedState& state);

// Writes the whole record, creating its folder when missing; a failure is ignored. The caller
// does not call this while the dash camera's storage is viewed.
void writePersistedState(const PersistedState& state);

}  // namespace settings
