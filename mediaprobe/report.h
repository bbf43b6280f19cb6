// What mediaprobe prints about one file.
#pragma once

#include <string>

#include "mediaprobe/second_look.h"
#include "probe/media_info.h"

namespace mediaprobe {

// How a page is written: plainly, or for a terminal, which gets no control character of a file's
// name or tags and, if wanted, colours.
struct Style {
    bool escapes = false;
    bool colours = false;
};

// All that is known of one file.
struct Finding {
    const std::string& path;
    probe::Result open = probe::kOk;
    const probe::MediaRecord& record;
    const SecondLook& seen;
    const char* claimedBy = nullptr;  // name of the recogniser; null when none claimed it
    std::string error = {};           // why it could not be opened; empty when it was
};

// Appends one line: "path", "open", "status", every field of the record from containerType to
// imageBitsPerPixel, then "containerName", "videoCodec", "audioCodec", "damaged" and "error", each
// text or null. docs/mediaprobe.schema.json describes it.
void appendJsonLine(std::string& out, const Finding& finding);

// Appends a few lines for people.
void appendPage(std::string& out, const Finding& finding, Style style);

}  // namespace mediaprobe
