// The tape's lines as a person reads them. Portable.
#pragma once

#include <string>

#include "simulator/shared/json.h"

namespace headunit {

// One line: seconds since the boot, kind, who to whom, what it means. Texts can be pasted into a
// scenario.
std::string describe(const Json& line);

}  // namespace headunit
