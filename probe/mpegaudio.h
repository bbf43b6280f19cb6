// MPEG audio elementary streams of all layers and versions, with or without ID3 tags.
#pragma once

#include "probe/media_info.h"
#include "probe/read_window.h"

namespace probe {

// Claims files of 1024 bytes or more whose first frame header, looked for from offset 10 over
// 2 MiB, begins a run of six frames. Fills sound format, bit rate and play time; `status` is kOk,
// or kFail when a read failed.
int MpegAudioRecognise(MediaInfo& record, ReadWindow& file);

}  // namespace probe
