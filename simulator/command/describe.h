// The tape's lines as a person reads them. Portable.
#pragma once

#include <string>

#include "simulator/command/json.h"

namespace headunit {

// One line: seconds since the boot, kind, who to whom, what it means.
std::string describe(const json::Value& line);

}  // namespace headunit
