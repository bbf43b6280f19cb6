// MPEG audio elementary streams of all layers and versions, with or without ID3 tags.
#pragma once

#include "probe/read/read_window.h"
#include "probe/record/media_record.h"

namespace probe {

// Claims files of 1024 bytes or more whose first frame header, looked for from offset 10 over
// 2 MiB, begins a run of six frames. Fills sound format, bit rate and play time; `status` is kOk,
// or kFail when a read failed.
int MpegAudioRecognise(MediaRecord& record, ReadWindow& file);

}  // namespace probe
