// The faults (shared/fault_names.h) as the unit's programs and libraries see them. Windows only.
#pragma once

#include <windows.h>

#include <vector>

namespace tape {

// The value of the fault `name`, 0 when it is not set. Any thread.
DWORD fault(const wchar_t* name);

enum class EntryOrder : DWORD {
    AsStored = 0,  // as Wine hands them out: sorted without regard to case
    Ordinal = 1,   // ascending by code unit
    Reversed = 2,  // descending by code unit
    Shuffled = 3,  // mixed up, the same way every time
    Written = 4,   // the oldest first, as a FAT card fills its folder
};

// Puts the entries of one folder into the order that the fault asks for.
void orderEntries(std::vector<WIN32_FIND_DATAW>& entries);

}  // namespace tape
