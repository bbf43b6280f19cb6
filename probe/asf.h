// ASF.
#pragma once

#include "probe/media_info.h"
#include "probe/read_window.h"

namespace probe {

int AsfRecognise(MediaInfo& record, ReadWindow& file);

}  // namespace probe
