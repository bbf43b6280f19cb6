// What mediaprobe prints about one file.
#pragma once

#include <string>

#include "probe/media_info.h"

namespace mediaprobe {

// One line: "path", "open", "status", then every field from containerType to imageBitsPerPixel.
std::string jsonLine(const std::string& path, probe::Result open, const probe::MediaRecord& record);

// A few lines for people. `claimedBy` names the recogniser that claimed the file, null when none
// did: a damaged file may be claimed and have no container in its record.
std::string page(const std::string& path, const probe::MediaRecord& record, const char* claimedBy);

// Why a file could not be opened, in words.
std::string openError(probe::Result open);

const char* containerName(std::uint32_t containerType);
// Name and tag of an audio format: "AAC (0x00FF)".
std::string audioName(std::uint32_t formatTag);
// The four letters, or their number when they are none.
std::string videoName(std::uint32_t fourCc);

}  // namespace mediaprobe
