#include "probe/asf.h"

#include "probe/diagnostics.h"

namespace probe {

int AsfRecognise(MediaInfo&, ReadWindow&) {
    return decline("not examined");
}

}  // namespace probe
