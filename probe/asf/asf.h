// ASF, the container of Windows Media (Advanced Systems Format Specification 1.20.03).
#pragma once

#include <cstdint>

#include "probe/asf/header.h"
#include "probe/read/read_window.h"
#include "probe/record/media_record.h"

namespace probe {

// Claims every file of 256 bytes or more that begins with the GUID of the Header Object. Fills
// play time, sound format, video stream and, for files without video, the texts. When the header
// cannot be read only the file size is filled and `status` stays.
int AsfRecognise(MediaRecord& record, ReadWindow& file);

// Reads the header of `headerSize` bytes and copies what it tells into the record. Returns kFail
// for a header larger than the file, otherwise what AsfReadHeader returns; only after kOk was
// anything copied.
[[nodiscard]] Result AsfFillInfo(AsfReader& reader, MediaRecord& record, std::uint32_t headerSize);

}  // namespace probe
