// What the numbers of a record are called, in words.
#pragma once

#include <string>

#include "probe/media_info.h"

namespace mediaprobe {

// "AVI"; null for what was not recognised.
const char* containerName(std::uint32_t containerType);
// "AAC"; null for a tag without a name here.
const char* audioName(std::uint32_t formatTag);
// The same of a four-letter code: "H.264" for "AVC1". Letters are compared without their case.
const char* videoName(std::uint32_t fourCc);

// The four letters, or their number when they are none: "AVC1", "0x00000001".
std::string codeText(std::uint32_t fourCc);
// What the code is called, else its letters: "H.264", "ABCD", "a codec without a name".
std::string videoText(std::uint32_t fourCc);
// "AAC (0x00FF)"
std::string audioText(std::uint32_t formatTag);

// Why a file could not be opened, in words.
std::string openErrorText(probe::Result open);

}  // namespace mediaprobe
