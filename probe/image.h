// Still images.
#pragma once

#include "probe/media_info.h"
#include "probe/read_window.h"

namespace probe {

int ImageRecognise(MediaInfo& record, ReadWindow& file);

}  // namespace probe
