#include "probe/mpegps.h"

#include "probe/diagnostics.h"

namespace probe {

int MpegPsRecognise(MediaInfo&, ReadWindow&) {
    return decline("not examined");
}

}  // namespace probe
