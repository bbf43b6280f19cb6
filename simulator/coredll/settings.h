// The library's settings, from its own side.
#pragma once

#include "simulator/coredll/unit.h"

namespace coredll {

// When the library is loaded.
void readSettings();

// One less to wait for.
void countDown(Setting setting);

}  // namespace coredll
