// Enters the filters into the registry: as COM classes and, where the graph builder shall find
// them by itself, with the filter mapper.
#pragma once

#include <windows.h>

namespace filters {

bool isOwnClass(const CLSID& classId);

// Both leave the registry as it was found when they fail half-way is not promised; running
// `registerAll` again mends it. S_OK or the first failure.
HRESULT registerAll();
HRESULT unregisterAll();

}  // namespace filters
