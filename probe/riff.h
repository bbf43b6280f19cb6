// RIFF: AVI and WAVE.
#pragma once

#include "probe/media_info.h"
#include "probe/read_window.h"

namespace probe {

int RiffRecognise(MediaInfo& record, ReadWindow& file);

}  // namespace probe
