// Play time of an MPEG system or program stream from its clock references.
#pragma once

#include <cstdint>

#include "probe/mpegps/walk.h"
#include "probe/record/result.h"

namespace probe {

// The time from reader.firstClock to the last pack of the file, in units of 100 ns; 0 when there
// is no second pack. The clock may start again anywhere, as in recordings put together from
// several, and wraps every 26.5 hours. So the file is looked at in eight more places. Wherever the
// clock runs back or leaps between two of them, the pack where it does is searched by halving, and
// the gap itself counts nothing; wherever it runs much slower than it does over short stretches,
// the file is looked at more closely. A stretch that hides a new start and still keeps the pace
// goes unnoticed. Reads some 4 KiB for each look.
// Returns kFail when a read fails.
[[nodiscard]] Result measureMpegPs(MpegPsReader& reader, std::int64_t& duration);

}  // namespace probe
