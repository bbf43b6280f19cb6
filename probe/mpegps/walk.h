// The walk over the packs and packets at the start of an MPEG system or program stream.
#pragma once

#include <cstdint>

#include "probe/codec/mpeg_video.h"
#include "probe/mpegps/audio.h"
#include "probe/mpegps/pack.h"
#include "probe/read/read_window.h"
#include "probe/record/result.h"

namespace probe {

// A pack whose clock could be read.
struct ClockPoint {
    std::uint64_t offset = 0;      // of its start code
    std::int64_t time = kNoClock;  // units of 100 ns
};

struct MpegPsReader {
    ReadWindow& file;
    std::uint64_t end = 0;        // size of the file
    std::uint64_t firstPack = 0;  // where the walk begins
    bool isMpeg1 = false;         // an MPEG-1 pack header was read
    bool sawSystemLayer = false;  // a pack or a system header was found

    ClockPoint firstClock{};
    std::uint64_t packsReadTo = 0;  // behind the last pack start code that the walk acted on
    SequenceFinder sequence{};
    std::uint8_t videoStream = 0;   // the first one found; 0 none yet
    PacketAudio audio{};            // formatTag 0: none found yet
    PacketAudio likelyAudio{};      // taken when nothing certain comes
    std::uint8_t likelyStream = 0;  // the stream that it was found in; 0 none yet
    bool announcesNoSound = false;  // a system header lists all streams, none of them sound
    bool sawSoundPacket = false;    // of a stream that may be sound, whatever the header lists
};

// Walks from the first pack until video, sound and a clock are known, or over 2 MiB; over 256 KiB
// when no sound is announced and none comes. Bytes that belong to no packet (the frames of VideoCD
// sectors, damage) are passed over to the next start code of the system layer. Damaged headers
// print their lines. Returns kFail when a read fails.
[[nodiscard]] Result walkMpegPs(MpegPsReader& reader);

}  // namespace probe
