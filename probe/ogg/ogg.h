// Ogg with a Vorbis stream (RFC 3533; Vorbis I specification).
#pragma once

#include "probe/read/read_window.h"
#include "probe/record/media_record.h"

namespace probe {

// Claims every file of 256 bytes or more that begins with "OggS", and fills sound format, texts
// and play time when its first packet is Vorbis. Looks at the first 2048 and the last 8192 bytes,
// at no others. When it fails `status` stays.
int OggRecognise(MediaRecord& record, ReadWindow& file);

}  // namespace probe
