// Enters the filters into the registry: as COM classes and, where the graph builder shall find
// them by itself, with the filter mapper.
#pragma once

#include <windows.h>

namespace filters {

bool isOwnClass(const CLSID& classId);

// S_OK or the first failure; may be called again.
HRESULT registerAll();

}  // namespace filters
