#include "probe/riff.h"

#include "probe/diagnostics.h"

namespace probe {

int RiffRecognise(MediaInfo&, ReadWindow&) {
    return decline("not examined");
}

}  // namespace probe
