// Which video codec a file has, told from its own headers before anything decodes it: AVI and ASF
// as the media probe reads them, MP4 and QuickTime by their sample entries (which name more codecs
// than the probe does), Matroska by its codec identifiers.
#pragma once

#include <cstdint>

#include "platform/file.h"

namespace filters {

// The codec of the first video stream as four letters, the first in the lowest byte; 0 when the
// container is another one or holds no video. Codecs of Matroska get the letters that MP4 and AVI
// use for them. However damaged, a file costs some ten thousand short reads at most.
std::uint32_t sniffVideoCodec(platform::ReadOnlyFile& file);

// Whether the file is an MP4 or QuickTime file whose index ("moov") is missing: cut off before it
// was written, or in front of it. Nobody can play it.
bool lacksIndex(platform::ReadOnlyFile& file);

}  // namespace filters
