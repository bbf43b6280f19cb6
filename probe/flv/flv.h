// Flash Video (Adobe Flash Video File Format Specification 10.1, annex E).
#pragma once

#include "probe/read/read_window.h"
#include "probe/record/media_record.h"

namespace probe {

// Claims every file of 9 bytes or more that begins with "FLV". Fills codec, picture size, frame
// time, bit rates and sound format from the script data and the first tag of each kind that the
// header announces, and the play time from the time stamp of the last tag. When a tag cannot be
// read, or an announced kind never comes, only the file size is filled and `status` stays.
int FlvRecognise(MediaRecord& record, ReadWindow& file);

}  // namespace probe
