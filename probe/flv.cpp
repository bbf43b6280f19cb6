#include "probe/flv.h"

#include "probe/diagnostics.h"

namespace probe {

int FlvRecognise(MediaInfo&, ReadWindow&) {
    return decline("not examined");
}

}  // namespace probe
