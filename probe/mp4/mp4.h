// ISO base media files: MP4, M4A and 3GP (ISO/IEC 14496-12, -14 and -15).
#pragma once

#include "probe/mp4/reader.h"
#include "probe/read/read_window.h"
#include "probe/record/media_record.h"
#include "probe/record/result.h"

namespace probe {

// Claims a file of at least 256 bytes whose "ftyp" box names one of the accepted brands.
int Mp4Recognise(MediaRecord& record, ReadWindow& file);

// Walks the boxes and fills the record when the walk succeeded and every sample of the audio and
// of the video track has a place in the file; leaves it alone otherwise.
Result Mp4Parse(Mp4Reader& reader, MediaRecord& record, int brandCode);

}  // namespace probe
