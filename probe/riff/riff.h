// RIFF files (Microsoft "Multimedia Programming Interface and Data Specifications 1.0"): AVI with
// its OpenDML extensions 1.02, and WAVE.
#pragma once

#include "probe/read/read_window.h"
#include "probe/record/media_record.h"
#include "probe/record/result.h"

namespace probe {

// Claims every file of at least 256 bytes that begins "RIFF" with the form "AVI ", whatever its
// parser comes to (a failed parse leaves only the size fields), and a "WAVE" whose format could be
// found.
int RiffRecognise(MediaRecord& record, ReadWindow& file);

// Fills the record from the "fmt " chunk of a WAVE file of `fileSize` bytes. kFail when the file
// is below 2,048 bytes or no "fmt " begins at offsets 12 to 2,023.
Result ParseWave(ReadWindow& file, std::uint64_t fileSize, MediaRecord& record);

}  // namespace probe
