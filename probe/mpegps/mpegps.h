// MPEG-1 system streams and MPEG-2 program streams, VideoCD files included (ISO/IEC 11172-1,
// ISO/IEC 13818-1 section 2.5).
#pragma once

#include "probe/read/read_window.h"
#include "probe/record/media_record.h"

namespace probe {

// Claims files of 256 KiB or more with a pack start code in their first 256 bytes, or in their
// first 2 MiB when they are a VideoCD. Fills video, sound and play time; `status` is kOk, or kFail
// when no video sequence header was found or a read failed.
int MpegPsRecognise(MediaRecord& record, ReadWindow& file);

}  // namespace probe
