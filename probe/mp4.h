// MP4 and 3GP.
#pragma once

#include "probe/media_info.h"
#include "probe/read_window.h"

namespace probe {

int Mp4Recognise(MediaInfo& record, ReadWindow& file);

}  // namespace probe
