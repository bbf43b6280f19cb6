// By which codec a file's streams are really coded, where the record only says what the player
// makes of them.
#pragma once

#include <string>

#include "mediaprobe/second_look.h"
#include "probe/media_info.h"

namespace mediaprobe {

struct Codec {
    std::string name;      // "HEVC"; empty when there is no such stream
    std::string recordAs;  // what the record calls it where that is something else: "MP4V"
};

Codec videoCodec(const probe::MediaRecord& record, const SecondLook& seen);
Codec audioCodec(const probe::MediaRecord& record, const SecondLook& seen);

}  // namespace mediaprobe
