// The Wine prefix: a prepared one below out/, and a copy of it for every unit. Both throw.
#pragma once

#include <string>

#include "simulator/command/unit.h"

namespace headunit {

// Makes sure that the prepared prefix exists and knows the vendor's filters as they were last built
// (15 s the first time, 2 s after a rebuild, nothing otherwise).
void preparePrefix();

// Makes a fresh copy of it in `prefix`, with `device` as its drive H:.
void copyPrefix(const fs::path& device, const fs::path& prefix);

}  // namespace headunit
