// What a person wants to know of a file and the player's record does not hold: how large it really
// is, whether it is cut off or damaged, and by which codec its streams are really coded. The
// record itself stays as the player's probe left it. Reads little, most of it out of what the probe
// has read already. One page for each container: docs/formats/.
#pragma once

#include <cstdint>
#include <string>

#include "probe/media_info.h"
#include "probe/read/read_window.h"

namespace mediaprobe {

struct SecondLook {
    std::uint64_t fileBytes = 0;  // the whole size, beyond 32 bits, too
    std::string damage;           // what is wrong with the file; empty when nothing was seen
    // What its header says and its bytes do not bear out; of a file that nobody claims what it
    // begins like, and why it is not claimed.
    std::string note;
    // The four letters of the sample entries that an MP4 file has for its first video and sound;
    // 0 none.
    std::uint32_t videoEntry = 0;
    std::uint32_t audioEntry = 0;
    // The object type indication of a "mp4v" entry (ISO/IEC 14496-1, table 5); 0 none.
    std::uint8_t videoObjectType = 0;
};

enum class Claimed : std::uint8_t { No, Yes };

// `record` is what the probe made of `file`, `claimed` whether a recogniser claimed it.
SecondLook lookAgain(probe::ReadWindow& file, const probe::MediaRecord& record, Claimed claimed);

}  // namespace mediaprobe
