// The library itself.
#pragma once

#include <windows.h>

namespace filters {

HINSTANCE moduleHandle();

}  // namespace filters
