// Still images: JPEG (ITU-T T.81), GIF (89a), BMP (BITMAPINFOHEADER) and PNG (ISO/IEC 15948).
// Only the header is read; no pixel is decoded.
#pragma once

#include "probe/read/read_window.h"
#include "probe/record/media_record.h"
#include "probe/record/result.h"

namespace probe {

// Where the walk through a JPEG file is, and what its frame header said.
struct JpegReader {
    ReadWindow& file;
    std::uint64_t fileSize = 0;  // bytes
    std::uint64_t position = 0;
    std::uint32_t components = 3;
    std::uint32_t precision = 8;  // bits per sample
    std::uint32_t width = 0;      // pixels
    std::uint32_t height = 0;
};

// Claims a file of at least 64 bytes that begins as one of the four kinds. Sets fileSize for every
// file whose first 64 bytes could be read, claimed or not.
int ImageRecognise(MediaRecord& record, ReadWindow& file);

// Finds size and depth of a JPEG file. Writes `status` unless the first read fails.
Result JpegReadHeader(JpegReader& reader, MediaRecord& record);

// Walks the marker segments from reader.position to the first frame header of type SOF0 to SOF3.
// kFail when there is none before the file ends, or its last 15 bytes begin.
Result JpegFindFrame(JpegReader& reader);

}  // namespace probe
