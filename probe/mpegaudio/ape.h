// Monkey's Audio, with its ID3 version 1 or APE tag.
#pragma once

#include "probe/read/read_window.h"
#include "probe/record/media_record.h"

namespace probe {

// Claims every file of 256 bytes or more that begins with "MAC ". Fills sound format, bit rate,
// play time and texts; `status` is kOk, or the failure that ended the parse.
int ApeRecognise(MediaRecord& record, ReadWindow& file);

}  // namespace probe
