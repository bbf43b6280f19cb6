// FLAC (RFC 9639).
#pragma once

#include "probe/read/read_window.h"
#include "probe/record/media_record.h"

namespace probe {

// Claims every file of 256 bytes or more with "fLaC" at its start or right behind the ID3 version
// 2 tag at its start. Fills sound format, play time and the mean bit rate of the frames from the
// stream information; `status` is kOk, or kFail when the stream information is not the first
// block; container and sound format stand then too.
int FlacRecognise(MediaRecord& record, ReadWindow& file);

}  // namespace probe
