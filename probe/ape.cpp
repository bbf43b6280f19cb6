#include "probe/ape.h"

#include "probe/diagnostics.h"

namespace probe {

int ApeRecognise(MediaInfo&, ReadWindow&) {
    return decline("not examined");
}

}  // namespace probe
